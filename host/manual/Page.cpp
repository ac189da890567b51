#include "host/manual/Page.h"

#include <string_view>

#include "cmake/Version.h"
#include "host/CommandApp.h"

namespace kal::host {
namespace {

constexpr Wording kWhatItIs{
    "controlla registrazioni di prima nota prima che si salvino, modifichino o cancellino",
    "checks Italian journal entries before they are saved, modified or deleted"};

constexpr Wording kDescription[] = {
    {"Il programma legge registrazioni di prima nota come oggetti JSON, le controlla sui dati di "
     "un'azienda e dice che cosa blocca ognuna e che cosa l'utente deve confermare. I dati "
     "dell'azienda si leggono soltanto.",
     "The program reads journal entries (\"prima nota\") as JSON objects, checks them against the "
     "books of a company, and says what blocks each of them and what the user must confirm. The "
     "books are only read."},
    {"Le risposte vanno sullo standard output nell'ordine delle registrazioni, e ognuna appena è "
     "pronta: un programma può tenere aperto kalcogcheck check --json -, scrivere una riga e "
     "leggerne una. Tutto il resto va sullo standard error.",
     "Answers go to standard output in the order of the entries, each as soon as it is there: a "
     "program may keep kalcogcheck check --json - running, write a line and read a line. All else "
     "goes to standard error."},
    {"Testi e messaggi sono in italiano; con --lang en in inglese.",
     "Texts and messages are in Italian; with --lang en in English."},
};

struct Item {
  Wording name;
  Wording says;
};

constexpr Item kFiles[] = {
    {{"registrazioni", "entries"},
     {"Un oggetto JSON, o JSON Lines: un oggetto per riga, con l'operazione, i suoi argomenti e i "
      "recordset della registrazione.",
      "One JSON object, or JSON Lines: an object a line, with the operation, its arguments and the "
      "record sets of the entry."}},
    {{"azienda", "company"},
     {"Un file SQLite, o un database PostgreSQL indicato con un URI postgresql://.",
      "A file of SQLite's, or a PostgreSQL database named by a postgresql:// URI."}},
    {{"decisioni registrate", "recorded decisions"},
     {"JSON Lines, scritte da check --record: ognuna con tutto ciò che è stato chiesto "
      "all'azienda.",
      "JSON Lines, written by check --record: each with everything that was asked of the "
      "company."}},
    {{"segnalazioni accettate", "accepted findings"},
     {"JSON Lines in ordine, scritte da check --write-baseline.",
      "JSON Lines, sorted, written by check --write-baseline."}},
};

struct Example {
  Wording says;
  std::string_view command;
  int status;
};

// In this order, in an empty folder.
constexpr Example kExamples[] = {
    {{"Crea un'azienda con dati di esempio", "Make a company with sample data"},
     "kalcogcheck init prova.db --sample",
     0},
    {{"Controlla se l'azienda è sana", "See whether the company is sound"},
     "kalcogcheck verify prova.db",
     0},
    {{"Il libro giornale di gennaio è già stampato? Sì",
      "Has the journal of January been printed already? Yes"},
     "echo '{\"operation\": \"LibroGiornaleStampato\", \"arguments\": [\"2024-01-31\"]}' |\n"
     "    kalcogcheck check --company prova.db -",
     0},
    {{"E quello di dicembre? No, detto come JSON", "And that of December? No, said as JSON"},
     "echo '{\"operation\": \"LibroGiornaleStampato\", \"arguments\": [\"2024-12-31\"]}' |\n"
     "    kalcogcheck check --company prova.db --json -",
     1},
    {{"Registra una decisione con tutto ciò che è stato chiesto",
      "Write a decision down with everything that was asked"},
     "echo '{\"operation\": \"LeggiIdPrimaNota\", \"arguments\": [1, 1]}' |\n"
     "    kalcogcheck check --company prova.db --record decisioni.jsonl -",
     0},
    {{"La rifà, senza l'azienda", "Decide it again, without the company"},
     "kalcogcheck replay decisioni.jsonl",
     0},
    {{"Che cosa vuol dire un messaggio", "What a message means"}, "kalcogcheck explain 10520", 0},
};

// The text with what means something to man(7) taken literally.
std::string Literal(std::string_view text) {
  std::string literal;
  bool atStart = true;
  for (const char c : text) {
    if (atStart && (c == '.' || c == '\'')) {
      literal += "\\&";
    }
    atStart = c == '\n';
    switch (c) {
      case '\\':
        literal += "\\e";
        break;
      case '-':
        literal += "\\-";
        break;
      case '\'':
        literal += "\\(aq";
        break;
      case '`':
        literal += "\\(ga";
        break;
      case '^':
        literal += "\\(ha";
        break;
      case '~':
        literal += "\\(ti";
        break;
      default:
        literal += c;
    }
  }
  return literal;
}

std::string Bold(std::string_view text) { return "\\fB" + Literal(text) + "\\fR"; }
std::string Italic(std::string_view text) { return "\\fI" + Literal(text) + "\\fR"; }

class Writer {
 public:
  explicit Writer(Language language) : language_(language) {}

  void Section(const Wording& name) { Begin(".SH", name.In(language_)); }
  void Subsection(const std::string& name) { Begin(".SS", name); }
  void Paragraph(const std::string& text) {
    page_ += begins_ ? "" : ".PP\n";  // a heading begins one itself
    Raw(text + "\n");
  }
  // Both are written in the language of man(7).
  void Item(const std::string& name, const std::string& text) {
    Raw(".TP\n" + name + "\n" + text + "\n");
  }
  void Lines(const std::string& text) { Raw(".PP\n.EX\n" + text + "\n.EE\n"); }
  void Raw(const std::string& lines) {
    page_ += lines;
    begins_ = false;
  }
  [[nodiscard]] std::string In(const Wording& words) const { return words.In(language_); }
  [[nodiscard]] const std::string& Page() const { return page_; }

 private:
  void Begin(const char* macro, const std::string& name) {
    page_ += std::string(macro) + " \"" + Literal(name) + "\"\n";
    begins_ = true;
  }

  std::string page_;
  bool begins_ = false;
  Language language_;
};

// "[OPTIONS] FILE..."
std::string ArgumentsOf(const CommandSurface& command, const Writer& page) {
  std::string text = "[" + Italic(page.In({"OPZIONI", "OPTIONS"})) + "]";
  for (const OptionSurface& option : command.options) {
    if (option.isArgument) {
      const std::string name = Italic(option.takes) + (option.isRepeated ? "..." : "");
      text += " " + (option.isRequired ? name : "[" + name + "]");
    }
  }
  return text;
}

void WriteOption(const OptionSurface& option, Writer& page) {
  std::string heading;
  for (const std::string& name : option.names) {
    heading += (heading.empty() ? "" : ", ") + (option.isArgument ? Italic(name) : Bold(name));
  }
  if (!option.isArgument && !option.takes.empty()) {
    heading += " " + Italic(option.takes);
  }
  std::string text = Literal(option.says) + ".";
  if (!option.usual.empty()) {
    text += " " + page.In({"Se manca: ", "If left out: "}) + Literal(option.usual) + ".";
  }
  if (option.isRequired && !option.isArgument) {
    text += " " + page.In({"Obbligatorio.", "Required."});
  }
  for (const std::string& other : option.with) {
    text += " " + page.In({"Va con ", "Goes with "}) + Bold(other) + ".";
  }
  for (const std::string& other : option.without) {
    text += " " + page.In({"Non va con ", "Does not go with "}) + Bold(other) + ".";
  }
  page.Item(heading, text);
}

void WriteCommands(const ProgramSurface& surface, Writer& page) {
  page.Section({"COMANDI", "COMMANDS"});
  for (const CommandSurface& command : surface.commands) {
    page.Subsection(std::string(kProgram) + " " + command.name);
    page.Paragraph(Literal(command.says) + ".");
    for (const bool arguments : {true, false}) {
      for (const OptionSurface& option : command.options) {
        if (option.isArgument == arguments) {
          WriteOption(option, page);
        }
      }
    }
  }
  page.Section({"OPZIONI", "OPTIONS"});
  for (const OptionSurface& option : surface.program.options) {
    WriteOption(option, page);
  }
}

void WriteExitStatus(Writer& page) {
  page.Section({"STATO D'USCITA", "EXIT STATUS"});
  std::string_view of;
  for (const ExitStatus& exit : kExitStatuses) {
    if (exit.commands.english != of) {
      of = exit.commands.english;
      page.Paragraph(page.In({"Di ", "Of "}) + Bold(of) + ":");
    }
    page.Item(Bold(std::to_string(exit.status)), Literal(page.In(exit.meaning)));
  }
}

void WriteExamples(Writer& page) {
  page.Section({"ESEMPI", "EXAMPLES"});
  for (const Example& example : kExamples) {
    page.Paragraph(Literal(page.In(example.says)) + " (" +
                   page.In({"stato d\\(aquscita ", "exit status "}) +
                   std::to_string(example.status) + "):");
    page.Lines(Literal(example.command));
  }
}

}  // namespace

std::string ManualPage(const ProgramSurface& surface, Language language) {
  Writer page(language);
  page.Raw(".TH KALCOGCHECK 1 \"\" \"KalCOGCheck " KAL_VERSION "\" \"" +
           page.In({"Comandi dell\\(aqutente", "User commands"}) + "\"\n");
  page.Section({"NOME", "NAME"});
  page.Raw(std::string(kProgram) + " \\- " + Literal(page.In(kWhatItIs)) + "\n");
  page.Section({"SINTASSI", "SYNOPSIS"});
  for (const CommandSurface& command : surface.commands) {
    page.Raw((&command == surface.commands.data() ? "" : ".br\n") +
             Bold(std::string(kProgram) + " " + command.name) + " " + ArgumentsOf(command, page) +
             "\n");
  }
  page.Section({"DESCRIZIONE", "DESCRIPTION"});
  for (const Wording& paragraph : kDescription) {
    page.Paragraph(Literal(page.In(paragraph)));
  }
  WriteCommands(surface, page);
  WriteExitStatus(page);
  page.Section({"FILE", "FILES"});
  for (const Item& item : kFiles) {
    page.Item(Literal(page.In(item.name)), Literal(page.In(item.says)));
  }
  WriteExamples(page);
  page.Section({"VEDERE ANCHE", "SEE ALSO"});
  page.Raw(Bold("jq") + "(1), " + Bold("sqlite3") + "(1), " + Bold("psql") + "(1)\n");
  page.Paragraph(Literal(page.In(
      {"I documenti del programma: entry.md (il JSON di registrazioni e risposte), recording.md, "
       "server.md, messages.md.",
       "The program's papers: entry.md (the JSON of entries and answers), recording.md, server.md, "
       "messages.md."})));
  return page.Page();
}

}  // namespace kal::host
