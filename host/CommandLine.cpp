#include "host/CommandLine.h"

// The optimizer sees a null pointer that cannot be in the library's own string splitting.
#pragma GCC diagnostic ignored "-Wnull-dereference"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <functional>
#include <new>
#include <numeric>
#include <optional>
#include <span>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "cmake/Version.h"
#include "company/Company.h"
#include "company/Schema.h"
#include "company/Verify.h"
#include "company/postgres/ServerCompany.h"
#include "host/EntryFile.h"
#include "host/ExplainPages.h"
#include "host/FlawReport.h"
#include "host/Input.h"
#include "host/Interrupt.h"
#include "host/Limits.h"
#include "host/Progress.h"
#include "host/RecordingFile.h"
#include "host/RecordingText.h"
#include "host/Replay.h"
#include "host/Report.h"
#include "host/Runner.h"
#include "host/Said.h"
#include "host/TryTwice.h"
#include "host/Workers.h"

namespace kal::host {
namespace {

constexpr const char* kVersion = "kalcogcheck " KAL_VERSION;
constexpr unsigned kMostJobs = 256;

struct Options {
  std::string newCompany;
  bool withSample = false;
  std::string rowsFrom;  // of init: the file of a company, "" for none
  std::string company;
  bool json = false;
  bool explain = false;
  std::string page;  // of explain: a code or a name
  bool listPages = false;
  std::string language = "it";
  std::string recording;  // of check: the file to write
  bool onlyProblems = false;
  std::string failOn = "warning";
  unsigned jobs = std::max(1U, std::thread::hardware_concurrency());
  bool summary = false;
  Limits limits;
  std::vector<std::string> files;
};

struct Streams {
  std::istream& in;
  std::ostream& out;
  std::ostream& err;
  const Terminals& terminals;
};

Language LanguageOf(const Options& options) {
  return options.language == "en" ? Language::English : Language::Italian;
}

int Complain(const Streams& streams, const Options& options, const Said& message) {
  streams.err << "kalcogcheck: " << message.In(LanguageOf(options)) << std::endl;
  return kExitTrouble;
}

int ComplainOfOutput(const Streams& streams, const Options& options) {
  return Complain(streams, options,
                  Say({"non si può scrivere sull'uscita", "standard output can't be written"}));
}

Said OutOfMemory() { return Say({"memoria esaurita", "out of memory"}); }

// So many entries are answered one by one, each before the next is read, before more workers than
// one are worth their start.
constexpr std::size_t kEntriesBeforeWorkers = 64;

// One run of a command that answers entries: those of its files, in their order, on all workers.
template <class File>
class Answering {
 public:
  Answering(const Options& options, const Streams& streams)
      : options_(options),
        streams_(streams),
        style_{LanguageOf(options), streams.terminals.out && streams.terminals.colours},
        input_(options.files, options.limits, streams.in),
        progress_(streams.err, streams.terminals.err, input_.Size()) {}
  Answering(const Answering&) = delete;
  Answering& operator=(const Answering&) = delete;
  virtual ~Answering() = default;

 protected:
  // Called on the workers' threads, at the same time for several entries. Memory may run out.
  [[nodiscard]] virtual Answered Answer(std::size_t worker, const EntryText& text) = 0;
  // What the entries of one turn of reading have in common begins and ends here.
  virtual void BeginTurn(std::size_t /*worker*/, std::span<const Asked> /*entries*/) {}
  virtual void EndTurn(std::size_t worker) = 0;
  // How many workers are ready, at least one, when that many are wanted.
  [[nodiscard]] virtual std::size_t Ready(std::size_t workers) = 0;
  // What else becomes of the next answers, before they are written.
  virtual void Note(std::span<const Answered> answers) = 0;

  // Ends early when standard output takes no more.
  void AnswerAll() {
    for (std::size_t answered = 0; answered < kEntriesBeforeWorkers || options_.jobs == 1;) {
      const std::vector<Asked> few = NextFew();
      answered += few.size();
      if (few.empty() || !AnswerFew(few)) {
        return;
      }
    }
    Workers(
        Ready(options_.jobs), [this] { return NextFew(); },
        [this](std::size_t worker, std::span<const Asked> entries) { BeginTurn(worker, entries); },
        [this](std::size_t worker, const EntryText& text) { return Answer(worker, text); },
        [this](std::size_t worker) { EndTurn(worker); },
        [this](std::span<const Answered> answers) { return Deliver(answers); })
        .Run();
  }

  // What stands behind all answers, and the exit status of a run that came to this one.
  int End(const std::string& summary, int status) {
    if (!options_.json || options_.summary) {
      const Writing answer;
      (void)Write(summary);
    }
    progress_.Hide();
    if (!streams_.out) {
      return ComplainOfOutput(streams_, options_);
    }
    if (!isAsked_) {
      (void)Complain(streams_, options_,
                     Say({"in ingresso non c'è nulla", "there is nothing in the input"}));
    }
    return status;
  }

  const Options& options_;
  const Streams& streams_;
  ReportStyle style_;
  Input<File> input_;
  Progress progress_;

 private:
  std::vector<Asked> NextFew() {
    std::vector<Asked> few = input_.NextFew();
    isAsked_ = isAsked_ || !few.empty();
    return few;
  }

  // False when standard output takes no more. Where one entry fails, those before it are answered.
  bool AnswerFew(const std::vector<Asked>& few) {
    std::vector<Answered> answers;
    TryTwice([&] { answers.reserve(few.size()); });
    try {
      BeginTurn(0, few);
      for (const Asked& asked : few) {
        answers.push_back(Answer(0, asked.entry));
        answers.back().bytesRead = asked.bytesRead;
      }
    } catch (...) {
      EndTurn(0);
      (void)Deliver(answers);
      throw;
    }
    EndTurn(0);
    return Deliver(answers);
  }

  // False when standard output takes no more.
  bool Deliver(std::span<const Answered> answers) {
    bool written = false;
    {
      const Writing answer;
      Note(answers);
      written = Write(answers);
    }
    for (const Answered& answer : answers) {
      progress_.Step(answer.bytesRead);
    }
    return written;
  }

  // All together where there is room for that.
  bool Write(std::span<const Answered> answers) {
    try {
      text_.clear();
      for (const Answered& answer : answers) {
        text_ += answer.text;
      }
    } catch (const std::bad_alloc&) {
      return std::ranges::all_of(answers,
                                 [this](const Answered& answer) { return Write(answer.text); });
    }
    return Write(text_);
  }

  // At once, so that a program that feeds entries one by one reads the answer to each.
  bool Write(const std::string& text) {
    if (streams_.terminals.out) {
      progress_.Hide();
    }
    return static_cast<bool>(streams_.out << text << std::flush);
  }

  bool isAsked_ = false;  // whether there was any entry
  std::string text_;      // what is written; kept for its memory
};

// One run of check.
class CheckRun final : public Answering<EntryFile> {
 public:
  CheckRun(const Options& options, const Streams& streams)
      : Answering(options, streams), workers_(options.jobs) {
    workers_.front().company.emplace(options.company, options.language);
  }

  int Check() {
    if (!options_.recording.empty()) {
      recording_.emplace(options_.recording);
      ComplainOfRecording();
    }
    AnswerAll();
    bool allPass = true;
    for (std::size_t place = 0; place < tally_.size(); ++place) {
      const auto verdict = static_cast<Verdict>(place);
      const bool passes =
          IsTrue(verdict) || (verdict == Verdict::ToConfirm && options_.failOn == "error");
      allPass = allPass && (passes || tally_[place] == 0);
    }
    const bool allChecked = tally_[static_cast<std::size_t>(Verdict::Unchecked)] == 0;
    const int status = !allChecked || recordingFailed_ ? kExitTrouble
                       : allPass                       ? kExitAllTrue
                                                       : kExitSomeFalse;
    return End(options_.json ? ToJson(tally_, status) + '\n' : ToSummary(tally_, style_.language),
               status);
  }

 private:
  // What a worker has for itself.
  struct Worker {
    std::optional<company::Company> company;
    std::span<const Asked> ahead;  // of the turn, from the entry that is checked on
    // One state of the books for what was read in one turn.
    std::optional<company::Company::Reading> books;
    records::Conversation conversation;  // of the entry that is checked; kept for its memory
  };

  Answered Answer(std::size_t worker, const EntryText& text) override {
    try {
      return Checked(workers_[worker], text);
    } catch (const std::bad_alloc&) {
      workers_[worker].books.reset();
      Outcome outcome;
      outcome.place = text.place;
      return Told(WithoutMemory(std::move(outcome)));
    }
  }

  Answered Checked(Worker& own, const EntryText& text) {
    company::Company& company = *own.company;
    HoldBooks(own);
    const Detail detail = options_.explain ? Detail::FindingsAndSteps : Detail::Findings;
    if (!recording_) {
      Outcome outcome = CheckEntry(company, text, detail, nullptr, options_.limits);
      LetBooksGo(own, outcome);
      return Told(std::move(outcome));
    }
    records::Conversation& conversation = own.conversation;
    conversation.clear();
    Outcome outcome = CheckEntry(company, text, detail, &conversation, options_.limits);
    LetBooksGo(own, outcome);
    std::string recording;
    if (outcome.isDecided) {
      AppendRecording(recording, text.text, conversation, ToJson(outcome));
    }
    Answered answer = Told(std::move(outcome));
    if (answer.isWhole) {
      answer.recording = std::move(recording);
    }
    return answer;
  }

  void BeginTurn(std::size_t worker, std::span<const Asked> entries) override {
    workers_[worker].ahead = entries;
  }
  // The answer, or, where there is no room to write it, that there was none.
  [[nodiscard]] Answered Told(Outcome outcome) const {
    try {
      return {Place(outcome), Shown(outcome)};
    } catch (const std::bad_alloc&) {
      outcome = WithoutMemory(std::move(outcome));
      return {.verdict = Place(outcome), .text = Shown(outcome), .isWhole = false};
    }
  }

  // Books that can't be read are an error of the entry, which tries by itself.
  void HoldBooks(Worker& own) const {
    if (!own.books) {
      try {
        EntryRehearsal rehearsal(*own.company, own.ahead, options_.limits);
        own.books.emplace(*own.company, own.company->WantsRehearsal()
                                            ? company::Rehearsal(std::ref(rehearsal))
                                            : company::Rehearsal());
      } catch (const RunTimeError&) {
        own.books.reset();
      }
    }
  }
  // After an error the database may have let the state go.
  static void LetBooksGo(Worker& own, const Outcome& outcome) {
    own.ahead = own.ahead.subspan(1);
    if (outcome.error) {
      own.books.reset();
    }
  }
  void EndTurn(std::size_t worker) override { workers_[worker].books.reset(); }

  // Each worker has the company for itself. It is opened at once for all: the name may mean another
  // file later. Where it can't be, those that have it do the work.
  [[nodiscard]] std::size_t Ready(std::size_t workers) override {
    for (std::size_t ready = 1; ready < workers; ++ready) {
      Said why;
      try {
        if (workers_[ready]
                .company.emplace(options_.company, options_.language)
                .IsSameAs(*workers_.front().company)) {
          continue;
        }
        why = Say({"un altro file ha preso il suo nome", "another file has its name"});
      } catch (const RunTimeError& error) {
        why = Say({"%", "%"}, {error.Description()});
      } catch (const std::bad_alloc&) {
        why = OutOfMemory();
      }
      progress_.Hide();
      (void)Complain(streams_, options_,
                     Say({"lavorano in % su %: di più non riescono ad aprire l'azienda: %",
                          "% of % workers could open the company: %"},
                         {std::to_string(ready), std::to_string(workers), why}));
      return ready;
    }
    return workers;
  }

  [[nodiscard]] static std::size_t Place(const Outcome& outcome) {
    return static_cast<std::size_t>(VerdictOf(outcome));
  }
  [[nodiscard]] static bool IsTrue(Verdict verdict) {
    return verdict == Verdict::Free || verdict == Verdict::Yes;
  }
  [[nodiscard]] std::string Shown(const Outcome& outcome) const {
    if (options_.onlyProblems && IsTrue(VerdictOf(outcome))) {
      return {};
    }
    if (options_.json) {
      return ToJson(outcome, style_.language, PlaceToo::Yes) + '\n';
    }
    return options_.explain ? ToExplanation(outcome, style_) : ToBlock(outcome, style_);
  }

  // What was answered is recorded: the recording comes first.
  void Note(std::span<const Answered> answers) override {
    for (const Answered& answer : answers) {
      ++tally_[answer.verdict];
    }
    if (recording_) {
      recording_->Write(answers);
      ComplainOfRecording();
    }
  }

  // Once; the answers go on.
  void ComplainOfRecording() {
    if (!recordingFailed_ && !recording_->Error().IsEmpty()) {
      recordingFailed_ = true;
      progress_.Hide();
      Complain(streams_, options_, recording_->Error());
    }
  }

  std::vector<Worker> workers_;  // each used on its own thread alone
  std::optional<RecordingTarget> recording_;
  bool recordingFailed_ = false;
  Tally tally_{};
};

// One run of replay.
class ReplayRun final : public Answering<RecordingFile> {
 public:
  using Answering::Answering;

  int Replay() {
    AnswerAll();
    const auto came = [this](Again again) { return tally_[static_cast<std::size_t>(again)] != 0; };
    const int status = came(Again::Unreadable)  ? kExitTrouble
                       : came(Again::Different) ? kExitSomeFalse
                                                : kExitAllTrue;
    return End(options_.json ? ToJson(tally_, status) + '\n' : ToSummary(tally_, style_.language),
               status);
  }

 private:
  Answered Answer(std::size_t /*worker*/, const EntryText& text) override {
    const auto told = [this](const Replayed& replayed) -> Answered {
      return {static_cast<std::size_t>(replayed.again),
              options_.json ? ToJson(replayed, style_.language) + '\n' : ToBlock(replayed, style_)};
    };
    try {
      return told(host::Replay(text, options_.limits));
    } catch (const std::bad_alloc&) {
      return told(host::Replay({.place = text.place, .foundMemory = false}));
    }
  }
  void EndTurn(std::size_t /*worker*/) override {}
  [[nodiscard]] std::size_t Ready(std::size_t workers) override { return workers; }
  void Note(std::span<const Answered> answers) override {
    for (const Answered& answer : answers) {
      ++tally_[answer.verdict];
    }
  }

  ReplayTally tally_{};
};

std::string MadeLine(const std::string& company, const Options& options) {
  return "made " + company + ": " + std::to_string(company::Tables().size()) +
         " tables, message texts in Italian and English" +
         (options.withSample ? ", sample data" : "") +
         (options.rowsFrom.empty() ? "" : ", the rows of " + options.rowsFrom) + "\n";
}

// Ctrl-C ends it in the middle: the server takes back what was not whole.
int InitOnServer(const Options& options, const Streams& streams) {
  try {
    const company::MadeOnServer made =
        options.rowsFrom.empty()
            ? company::CreateServerCompany(options.newCompany, options.withSample)
            : company::CopyToServer(options.rowsFrom, options.newCompany);
    streams.out << MadeLine(made.name, options)
                << "a user who checks needs these rights and no others:\n"
                << made.grants << std::flush;
  } catch (const RunTimeError& error) {
    return Complain(streams, options,
                    Say({"non si può creare l'azienda %: %", "can't make the company %: %"},
                        {company::ShownName(options.newCompany), error.Description()}));
  }
  return streams.out ? kExitAllTrue : ComplainOfOutput(streams, options);
}

int Init(const Options& options, const Streams& streams) {
  if (company::IsOnServer(options.newCompany)) {
    return InitOnServer(options, streams);
  }
  if (!options.rowsFrom.empty()) {
    return Complain(streams, options,
                    Say({"--from serve per un'azienda su un server; un file si copia come un file",
                         "--from is for a company on a server; a file is copied as a file"},
                        {}));
  }
  try {
    const Unstoppable made;
    company::CreateCompany(options.newCompany, options.withSample);
  } catch (const RunTimeError& error) {
    return Complain(streams, options,
                    Say({"non si può creare l'azienda %: %", "can't make the company %: %"},
                        {options.newCompany, error.Description()}));
  }
  streams.out << MadeLine(options.newCompany, options) << std::flush;
  return streams.out ? kExitAllTrue : ComplainOfOutput(streams, options);
}

Said TakesPlaceOf(const std::string& file) {
  return Say({"le decisioni scritte prenderebbero il posto di %",
              "the recording would take the place of %"},
             {file});
}

int Check(const Options& options, const Streams& streams) {
  for (const std::string& file : options.files) {
    if (IsSameFile(options.recording, file)) {
      return Complain(streams, options, TakesPlaceOf(file));
    }
  }
  if (IsSameFile(options.recording, options.company)) {
    return Complain(streams, options, TakesPlaceOf(options.company));
  }
  std::optional<CheckRun> run;
  try {
    run.emplace(options, streams);
  } catch (const RunTimeError& error) {
    return Complain(streams, options,
                    Say({"non si può aprire l'azienda %: %", "can't open the company %: %"},
                        {company::ShownName(options.company), error.Description()}));
  }
  return run->Check();
}

int Verify(const Options& options, const Streams& streams) {
  const Language language = LanguageOf(options);
  std::size_t flaws = 0;
  try {
    company::Verify(options.company, [&](const company::Flaw& flaw) {
      ++flaws;
      streams.out << ToText(flaw, language) << std::flush;
    });
  } catch (const RunTimeError& error) {
    return Complain(streams, options,
                    Say({"non si può verificare l'azienda %: %", "can't verify the company %: %"},
                        {company::ShownName(options.company), error.Description()}));
  }
  streams.out << (flaws == 0 ? Wording{"nessun difetto", "no flaws"}.In(language)
                             : Wording{"difetti: ", "flaws: "}.In(language) + std::to_string(flaws))
              << std::endl;
  if (!streams.out) {
    return ComplainOfOutput(streams, options);
  }
  return flaws == 0 ? kExitAllTrue : kExitSomeFalse;
}

void AddLanguage(CLI::App& command, Options& options) {
  command.add_option("--lang", options.language, "Language of messages and text, it or en")
      ->check(CLI::IsMember({"it", "en"}));
}

void AddLimits(CLI::App& command, Limits& limits) {
  command
      .add_option(kBytesOption, limits.bytes, "Bytes of a line, or of an entry over several lines")
      ->capture_default_str()
      ->check(CLI::PositiveNumber);
  command.add_option(kRowsOption, limits.rows, "Rows of a record set")
      ->capture_default_str()
      ->check(CLI::PositiveNumber);
  command.add_option(kValuesOption, limits.json.values, "JSON values of an entry")
      ->capture_default_str()
      ->check(CLI::PositiveNumber);
  command.add_option(kKeysOption, limits.json.keys, "Keys of an object")
      ->capture_default_str()
      ->check(CLI::PositiveNumber);
  command.add_option(kDepthOption, limits.json.depth, "JSON values inside each other")
      ->capture_default_str()
      ->check(CLI::Range(std::size_t{1}, kMostDepth));
}

void AddSummary(CLI::App& command, Options& options, CLI::Option* json) {
  command
      .add_flag("--summary", options.summary, "With --json: a last line that counts the answers")
      ->needs(json);
}

void AddJobs(CLI::App& command, Options& options, const std::string& noun) {
  command
      .add_option("--jobs", options.jobs, noun + " checked at the same time; all cores if left out")
      ->check(CLI::Range(1U, kMostJobs));
}

int Explain(const Options& options, const Streams& streams) {
  std::string text = PageList();
  if (!options.listPages) {
    const Message* const page = FindPage(options.page);
    if (page == nullptr) {
      return Complain(
          streams, options,
          Say({"%; explain --list li mostra tutti", "%; explain --list shows them all"},
              {options.page.empty()
                   ? Say({"explain vuole un codice o un nome", "explain takes a code or a name"})
                   : Say({"non c'è un messaggio %", "there is no message %"}, {options.page})}));
    }
    text = ToText(*page, LanguageOf(options));
  }
  streams.out << text << std::flush;
  return streams.out ? kExitAllTrue : ComplainOfOutput(streams, options);
}

// How many letters must be added, taken away or changed to make one word of the other.
std::size_t Distance(std::string_view one, std::string_view other) {
  std::vector<std::size_t> row(other.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < one.size(); ++i) {
    std::size_t corner = std::exchange(row[0], i + 1);
    for (std::size_t j = 0; j < other.size(); ++j) {
      const std::size_t changed = corner + (one[i] == other[j] ? 0 : 1);
      corner = row[j + 1];
      row[j + 1] = std::min({changed, row[j] + 1, row[j + 1] + 1});
    }
  }
  return row.back();
}

// The command that a word that is none comes near to; "" where it is one, or near to none.
std::string MeantBy(std::string_view word, const CLI::App& app) {
  constexpr std::size_t kNear = 2;
  std::string meant;
  std::size_t least = kNear + 1;
  for (const CLI::App* const command : app.get_subcommands({})) {
    const std::size_t distance = Distance(word, command->get_name());
    if (distance == 0) {
      return "";
    }
    if (distance < least) {
      least = distance;
      meant = command->get_name();
    }
  }
  return meant;
}

int RunCommand(int argc, const char* const* argv, const Streams& streams, Options& options) {
  CLI::App app("May these journal entries be saved, modified or deleted?", "kalcogcheck");
  app.set_version_flag("--version", kVersion);
  app.require_subcommand(1);
  app.footer(
      "Exit status: 0 every entry answered True, 1 at least one False, 2 at least one could not "
      "be checked or the call was wrong. Of verify: 0 sound, 1 at least one flaw, 2 it could not "
      "be read. Of replay: 0 all as recorded, 1 at least one different, "
      "2 at least one could not be read.");

  CLI::App* const init = app.add_subcommand("init", "Make a company");
  init->add_option("COMPANY", options.newCompany,
                   "The file to make, or the postgresql:// URI of a database")
      ->required();
  CLI::Option* const sample = init->add_flag("--sample", options.withSample, "With sample data");
  init->add_option("--from", options.rowsFrom,
                   "The file of a company whose rows are copied to the server")
      ->excludes(sample);

  CLI::App* const check = app.add_subcommand("check", "Run entries against a company");
  check->add_option("--company", options.company, "The company's file")->required();
  CLI::Option* const json =
      check->add_flag("--json", options.json, "One JSON object an entry instead of text");
  check->add_flag("--explain", options.explain, "How each decision came about, check by check")
      ->excludes(json);
  AddSummary(*check, options, json);
  AddLimits(*check, options.limits);
  AddLanguage(*check, options);
  AddJobs(*check, options, "Entries");
  check->add_option("--record", options.recording,
                    "Write every decision down here, to be replayed; holds company data");
  check->add_flag("--only-problems", options.onlyProblems,
                  "Leave out the entries that answered True");
  check
      ->add_option("--fail-on", options.failOn,
                   "The least that makes the exit status 1: error, or warning if left out")
      ->check(CLI::IsMember({"error", "warning"}));
  check->add_option("FILE", options.files, "JSON or JSON Lines; - is standard input")->required();

  CLI::App* const verify =
      app.add_subcommand("verify", "Is the company itself sound: tables, types, texts, keys");
  verify->add_option("COMPANY", options.company, "The company's file")->required();
  AddLanguage(*verify, options);

  CLI::App* const replay =
      app.add_subcommand("replay", "Decide recorded entries again, without a company");
  AddSummary(*replay, options,
             replay->add_flag("--json", options.json, "One JSON object an entry instead of text"));
  AddLimits(*replay, options.limits);
  AddLanguage(*replay, options);
  AddJobs(*replay, options, "Decisions");
  replay->add_option("FILE", options.files, "What check --record wrote; - is standard input")
      ->required();

  CLI::App* const explain = app.add_subcommand("explain", "What a message means and what to do");
  CLI::Option* const list =
      explain->add_flag("--list", options.listPages, "Every message, its check and an example");
  explain->add_option("CODE", options.page, "A code or name of the list")->excludes(list);
  AddLanguage(*explain, options);

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (const std::string meant = argc > 1 ? MeantBy(argv[1], app) : ""; !meant.empty()) {
      return Complain(
          streams, options,
          Say({"non c'è un comando %; forse %?", "there is no command %; did you mean %?"},
              {argv[1], meant}));
    }
    const bool asked = app.exit(error, streams.out, streams.err) == 0;
    if (asked && !streams.out.flush()) {
      return ComplainOfOutput(streams, options);
    }
    return asked ? kExitAllTrue : kExitTrouble;
  }
  if (explain->parsed()) {
    return Explain(options, streams);
  }
  if (verify->parsed()) {
    return Verify(options, streams);
  }
  if (replay->parsed()) {
    return ReplayRun(options, streams).Replay();
  }
  return init->parsed() ? Init(options, streams) : Check(options, streams);
}

}  // namespace

int Run(int argc, const char* const* argv, std::istream& in, std::ostream& out, std::ostream& err,
        const Terminals& terminals) {
  const Streams streams{in, out, err, terminals};
  Options options;
  try {
    return RunCommand(argc, argv, streams, options);
  } catch (const std::bad_alloc&) {
    return Complain(streams, options, OutOfMemory());
  }
}

}  // namespace kal::host
