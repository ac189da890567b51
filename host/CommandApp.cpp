#include "host/CommandApp.h"

// The optimizer sees a null pointer that cannot be in the library's own string splitting.
#pragma GCC diagnostic ignored "-Wnull-dereference"

#include <CLI/CLI.hpp>
#include <charconv>
#include <cstddef>
#include <limits>
#include <string>
#include <string_view>
#include <system_error>

#include "host/Limits.h"
#include "host/Said.h"
#include "host/Version.h"
#include "host/Wording.h"

namespace kal::host {
namespace {

constexpr unsigned kMostJobs = 256;
constexpr Wording kWhichCompany{"L'azienda: il suo file, o l'URI postgresql:// del suo database",
                                "The company: its file, or the postgresql:// URI of its database"};

// A whole number from 1 to that, or what is wrong with the text.
template <class Number>
CLI::Validator UpTo(Number most, Language language) {
  return {[most, language](std::string& text) {
            Number number = 0;
            const char* const end = text.data() + text.size();
            const auto [stop, error] = std::from_chars(text.data(), end, number);
            const bool isNumber = error == std::errc() && stop == end;
            // Written anew: a zero in front is no sign of another base.
            if (isNumber && number >= 1 && number <= most) {
              text = std::to_string(number);
              return std::string();
            }
            return Say({"% non è un numero intero da 1 a %", "% is no whole number from 1 to %"},
                       {text, std::to_string(most)})
                .In(language);
          },
          ""};
}

// One of the words between the "|" of these, or what is wrong with the text.
CLI::Validator OneOf(std::string_view words, Language language) {
  return {[words = "|" + std::string(words) + "|", language](std::string& text) {
            const bool is = words.find("|" + text + "|") != std::string::npos &&
                            text.find('|') == std::string::npos;
            return is ? std::string()
                      : Say({"% non è tra %", "% is none of %"},
                            {text, std::string_view(words).substr(1, words.size() - 2)})
                            .In(language);
          },
          ""};
}

void AddHelp(CLI::App& app, Language language) {
  app.set_help_flag("-h,--help", Wording{"Mostra questo aiuto", "Show this help"}.In(language));
}

// A command, or the program itself, described in one language.
class Command {
 public:
  Command(CLI::App& app, Language language) : app_(app), language_(language) {}

  [[nodiscard]] Command Sub(const char* name, const Wording& says) {
    CLI::App& app = *app_.add_subcommand(name, says.In(language_));
    AddHelp(app, language_);  // anew: the one that it was born with knows no group
    return {app, language_};
  }
  // What stands without a name of an option before it is called by what it takes.
  template <class Value>
  void Argument(const char* name, Value& target, const Wording& says) {
    (void)Takes(name, "", target, says)->required();
  }
  template <class Value>
  CLI::Option* Takes(const char* name, const char* value, Value& target, const Wording& says) {
    return app_.add_option(name, target, says.In(language_))->type_name(value);
  }
  void TakesOneOf(const char* name, const char* words, std::string& target, const Wording& says) {
    (void)Takes(name, words, target, says)->check(OneOf(words, language_));
  }
  template <class Number>
  CLI::Option* TakesNumber(const char* name, Number& target, const Wording& says,
                           Number most = std::numeric_limits<Number>::max()) {
    return Takes(name, "N", target, says)->transform(UpTo(most, language_));
  }
  CLI::Option* Flag(const char* name, bool& target, const Wording& says) {
    return app_.add_flag(name, target, says.In(language_))->disable_flag_override();
  }

 private:
  CLI::App& app_;
  Language language_;
};

void AddLanguage(Command command, Options& options) {
  command.TakesOneOf("--lang", "it|en", options.language,
                     {"Lingua dei messaggi, dei testi e di questo aiuto; it se manca",
                      "Language of messages, texts and this help; it if left out"});
}

void AddLimits(Command command, Limits& limits) {
  (void)command
      .TakesNumber(kBytesOption, limits.bytes,
                   {"Byte di una riga, o di una registrazione su più righe",
                    "Bytes of a line, or of an entry over several lines"})
      ->capture_default_str();
  (void)command
      .TakesNumber(kRowsOption, limits.rows, {"Righe di un recordset", "Rows of a record set"})
      ->capture_default_str();
  (void)command
      .TakesNumber(kValuesOption, limits.json.values,
                   {"Valori JSON di una registrazione", "JSON values of an entry"})
      ->capture_default_str();
  (void)command
      .TakesNumber(kKeysOption, limits.json.keys, {"Chiavi di un oggetto", "Keys of an object"})
      ->capture_default_str();
  (void)command
      .TakesNumber(kDepthOption, limits.json.depth,
                   {"Valori JSON l'uno dentro l'altro", "JSON values inside each other"},
                   kMostDepth)
      ->capture_default_str();
}

// --json and what goes with it.
CLI::Option* AddJson(Command command, Options& options, const Wording& says) {
  CLI::Option* const json = command.Flag("--json", options.json, says);
  command
      .Flag("--summary", options.summary,
            {"Un'ultima riga che conta le risposte", "A last line that counts the answers"})
      ->needs(json);
  return json;
}

void DescribeInit(Command init, Options& options) {
  init.Argument(kCompany, options.newCompany,
                {"Il file da creare, o l'URI postgresql:// di un database",
                 "The file to make, or the postgresql:// URI of a database"});
  CLI::Option* const sample =
      init.Flag("--sample", options.withSample, {"Con dati di esempio", "With sample data"});
  init.Takes("--from", kFile, options.rowsFrom,
             {"Il file di un'azienda le cui righe si copiano sul server",
              "The file of a company whose rows are copied to the server"})
      ->excludes(sample);
  AddLanguage(init, options);
}

void DescribeCheck(Command check, Options& options) {
  check.Takes("--company", kCompany, options.company, kWhichCompany)->required();
  CLI::Option* const json = AddJson(check, options,
                                    {"Un oggetto JSON per ogni registrazione al posto del testo",
                                     "One JSON object an entry instead of text"});
  check
      .Flag("--explain", options.explain,
            {"Come si è arrivati a ogni decisione, controllo per controllo",
             "How each decision came about, check by check"})
      ->excludes(json);
  AddLimits(check, options.limits);
  AddLanguage(check, options);
  check.TakesNumber("--jobs", options.jobs,
                    {"Registrazioni controllate insieme; tanti quanti i processori se manca",
                     "Entries checked at the same time; all cores if left out"},
                    kMostJobs);
  check.Takes("--record", kFile, options.recording,
              {"Scrive qui ogni decisione, da rifare con replay; contiene dati dell'azienda",
               "Write every decision down here, to be replayed; holds company data"});
  check.Takes("--report", kFile, options.report,
              {"Scrive qui i risultati come una pagina HTML; contiene dati dell'azienda",
               "Write the run down here as one HTML page to look at; holds company data"});
  check.Takes("--baseline", kFile, options.baseline,
              {"Segnalazioni accettate in precedenza, che non contano più",
               "Findings accepted earlier, which count no longer"});
  check.Takes("--write-baseline", kFile, options.newBaseline,
              {"Scrive qui le segnalazioni di oggi, accettate da ora in poi",
               "Write the findings of this run down here, to be accepted from now on"});
  check.Flag("--only-problems", options.onlyProblems,
             {"Tralascia le registrazioni che hanno risposto True",
              "Leave out the entries that answered True"});
  check.TakesOneOf("--fail-on", "error|warning", options.failOn,
                   {"Il minimo che porta lo stato d'uscita a 1; warning se manca",
                    "The least that makes the exit status 1; warning if left out"});
  check.Argument(
      kFile, options.files,
      {"JSON o JSON Lines; - è lo standard input", "JSON or JSON Lines; - is standard input"});
}

void DescribeVerify(Command verify, Options& options) {
  verify.Argument(kCompany, options.company, kWhichCompany);
  AddLanguage(verify, options);
}

void DescribeReplay(Command replay, Options& options) {
  AddJson(replay, options,
          {"Un oggetto JSON per ogni decisione al posto del testo",
           "One JSON object a decision instead of text"});
  AddLimits(replay, options.limits);
  AddLanguage(replay, options);
  replay.TakesNumber("--jobs", options.jobs,
                     {"Decisioni controllate insieme; tante quanti i processori se manca",
                      "Decisions checked at the same time; all cores if left out"},
                     kMostJobs);
  replay.Argument(kFile, options.files,
                  {"Quello che ha scritto check --record; - è lo standard input",
                   "What check --record wrote; - is standard input"});
}

void DescribeExplain(Command explain, Options& options) {
  CLI::Option* const list = explain.Flag(
      "--list", options.listPages,
      {"Ogni messaggio, il suo controllo e un esempio", "Every message, its check and an example"});
  explain
      .Takes(kCode, "", options.page,
             {"Un codice o un nome dell'elenco", "A code or name of the list"})
      ->excludes(list);
  AddLanguage(explain, options);
}

// The library's own words.
void Translate(CLI::App& app, Language language) {
  const struct {
    const char* label;
    Wording words;
  } labels[] = {
      {"Usage", {"Uso", "Usage"}},
      {"OPTIONS", {"OPZIONI", "OPTIONS"}},
      {"SUBCOMMAND", {"COMANDO", "COMMAND"}},
      {"Positionals", {"Argomenti", "Arguments"}},
      {"REQUIRED", {"(obbligatorio)", "(required)"}},
      {"Needs", {"con", "with"}},
      {"Excludes", {"non con", "not with"}},
  };
  for (const auto& [label, words] : labels) {
    app.get_formatter()->label(label, words.In(language));
  }
  app.option_defaults()->group(Wording{"Opzioni", "Options"}.In(language));
  app.group(Wording{"Comandi", "Commands"}.In(language));
}

std::string StatusLines(Language language) {
  std::string text = Wording{"Stato d'uscita:", "Exit status:"}.In(language);
  std::string_view of;
  for (const ExitStatus& exit : kExitStatuses) {
    if (exit.commands.english != of) {
      of = exit.commands.english;
      text += Say({". Di %:", ". Of %:"}, {exit.commands}).In(language);
    } else if (exit.status != 0) {
      text += ",";
    }
    text += " " + std::to_string(exit.status) + " " + exit.meaning.In(language);
  }
  return Wrapped(text + ".", 0);
}

}  // namespace

void DescribeCommands(CLI::App& app, Options& options, Language language) {
  Translate(app, language);
  app.name(kProgram);
  app.description(
      Wording{"Queste registrazioni di prima nota si possono salvare, modificare, cancellare?",
              "May these journal entries be saved, modified or deleted?"}
          .In(language));
  AddHelp(app, language);
  app.set_version_flag("--version", VersionText(),
                       Wording{"Mostra la versione", "Show the version"}.In(language));
  app.require_subcommand(1);
  Command program(app, language);
  AddLanguage(program, options);
  DescribeInit(program.Sub("init", {"Crea un'azienda", "Make a company"}), options);
  DescribeCheck(program.Sub("check", {"Controlla registrazioni su un'azienda",
                                      "Run entries against a company"}),
                options);
  DescribeVerify(program.Sub("verify", {"L'azienda stessa è sana? Tabelle, tipi, testi, chiavi",
                                        "Is the company itself sound: tables, types, texts, keys"}),
                 options);
  DescribeReplay(program.Sub("replay", {"Rifà decisioni registrate, senza un'azienda",
                                        "Decide recorded entries again, without a company"}),
                 options);
  DescribeExplain(program.Sub("explain", {"Che cosa vuol dire un messaggio e che cosa fare",
                                          "What a message means and what to do"}),
                  options);
  app.footer(StatusLines(language));
}

}  // namespace kal::host
