#include "host/CommandLine.h"

// The optimizer sees a null pointer that cannot be in the library's own string splitting.
#pragma GCC diagnostic ignored "-Wnull-dereference"

#include <CLI/CLI.hpp>
#include <algorithm>
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
#include "host/EntryFile.h"
#include "host/ExplainPages.h"
#include "host/FlawReport.h"
#include "host/Input.h"
#include "host/Interrupt.h"
#include "host/Progress.h"
#include "host/RecordingFile.h"
#include "host/RecordingText.h"
#include "host/Replay.h"
#include "host/Report.h"
#include "host/Runner.h"
#include "host/Workers.h"

namespace kal::host {
namespace {

constexpr const char* kVersion = "kalcogcheck " KAL_VERSION;
constexpr unsigned kMostJobs = 256;

struct Options {
  std::string newCompany;
  bool withSample = false;
  std::string company;
  bool json = false;
  bool explain = false;
  std::string page;  // of explain: a code or a name
  bool listPages = false;
  std::string language = "it";
  std::string recording;  // of check: the file to write
  unsigned jobs = std::max(1U, std::thread::hardware_concurrency());
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

int Complain(const Streams& streams, const std::string& message) {
  streams.err << "kalcogcheck: " << message << std::endl;
  return kExitTrouble;
}

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
        input_(options.files, streams.in),
        progress_(streams.err, streams.terminals.err, input_.Size()) {}
  Answering(const Answering&) = delete;
  Answering& operator=(const Answering&) = delete;
  virtual ~Answering() = default;

 protected:
  // Called on the workers' threads, at the same time for several entries.
  [[nodiscard]] virtual Answered Answer(std::size_t worker, const EntryText& text) = 0;
  // What else becomes of the next answers, before they are written.
  virtual void Note(std::span<const Answered> answers) = 0;

  // Ends early when standard output takes no more.
  void AnswerAll() {
    for (std::size_t i = 0; i < kEntriesBeforeWorkers || options_.jobs == 1; ++i) {
      const std::optional<Asked> asked = input_.Next();
      if (!asked) {
        return;
      }
      Answered answer = Answer(0, asked->entry);
      answer.bytesRead = asked->bytesRead;
      if (!Deliver({&answer, 1})) {
        return;
      }
    }
    Workers(
        options_.jobs, [this] { return input_.NextFew(); },
        [this](std::size_t worker, const EntryText& text) { return Answer(worker, text); },
        [this](std::span<const Answered> answers) { return Deliver(answers); })
        .Run();
  }

  // What stands behind all answers, and the exit status of a run that came to this one.
  int End(const std::string& summary, int status) {
    if (!options_.json) {
      const Writing answer;
      (void)Write(summary);
    }
    progress_.Hide();
    return streams_.out ? status : Complain(streams_, "standard output can't be written");
  }

  const Options& options_;
  const Streams& streams_;
  ReportStyle style_;
  Input<File> input_;
  Progress progress_;

 private:
  // False when standard output takes no more.
  bool Deliver(std::span<const Answered> answers) {
    std::string text;
    for (const Answered& answer : answers) {
      text += answer.text;
    }
    bool written = false;
    {
      const Writing answer;
      Note(answers);
      written = Write(text);
    }
    for (const Answered& answer : answers) {
      progress_.Step(answer.bytesRead);
    }
    return written;
  }

  // At once, so that a program that feeds entries one by one reads the answer to each.
  bool Write(const std::string& text) {
    if (streams_.terminals.out) {
      progress_.Hide();
    }
    return static_cast<bool>(streams_.out << text << std::flush);
  }
};

// One run of check.
class CheckRun final : public Answering<EntryFile> {
 public:
  CheckRun(const Options& options, const Streams& streams)
      : Answering(options, streams), workers_(options.jobs) {
    workers_.front().Open(options);
  }

  int Check() {
    if (!options_.recording.empty()) {
      recording_.emplace(options_.recording);
      ComplainOfRecording();
    }
    AnswerAll();
    const bool allTrue = std::ranges::all_of(tally_, [](const auto& given) {
      return given.first == Verdict::Free || given.first == Verdict::Yes;
    });
    const int status = tally_.contains(Verdict::Unchecked) || recordingFailed_ ? kExitTrouble
                       : allTrue                                               ? kExitAllTrue
                                                                               : kExitSomeFalse;
    return End(ToSummary(tally_, style_.language), status);
  }

 private:
  // What a worker has for itself.
  struct Worker {
    company::Company& Open(const Options& options) {
      if (!company) {
        company.emplace(options.company, options.language);
      }
      return *company;
    }

    std::optional<company::Company> company;
    records::Conversation conversation;  // of the entry that is checked; kept for its memory
  };

  Answered Answer(std::size_t worker, const EntryText& text) override {
    company::Company& company = workers_[worker].Open(options_);
    const Detail detail = options_.explain ? Detail::FindingsAndSteps : Detail::Findings;
    if (!recording_) {
      const Outcome outcome = CheckEntry(company, text, detail);
      return {Place(outcome), Shown(outcome)};
    }
    records::Conversation& conversation = workers_[worker].conversation;
    conversation.clear();
    const Outcome outcome = CheckEntry(company, text, detail, &conversation);
    const std::string result = ToJson(outcome);
    Answered answer{Place(outcome), options_.json ? result + '\n' : Shown(outcome)};
    if (outcome.isDecided) {
      AppendRecording(answer.recording, text.text, conversation, result);
    }
    return answer;
  }

  [[nodiscard]] static std::size_t Place(const Outcome& outcome) {
    return static_cast<std::size_t>(VerdictOf(outcome));
  }
  [[nodiscard]] std::string Shown(const Outcome& outcome) const {
    if (options_.json) {
      return ToJson(outcome) + '\n';
    }
    return options_.explain ? ToExplanation(outcome, style_) : ToBlock(outcome, style_);
  }

  // What was answered is recorded: the recording comes first.
  void Note(std::span<const Answered> answers) override {
    std::string lines;
    for (const Answered& answer : answers) {
      ++tally_[static_cast<Verdict>(answer.verdict)];
      lines += answer.recording;
    }
    if (recording_) {
      recording_->Write(lines);
      ComplainOfRecording();
    }
  }

  // Once; the answers go on.
  void ComplainOfRecording() {
    if (!recordingFailed_ && !recording_->Error().empty()) {
      recordingFailed_ = true;
      progress_.Hide();
      Complain(streams_, recording_->Error());
    }
  }

  std::vector<Worker> workers_;  // each used on its own thread alone
  std::optional<RecordingTarget> recording_;
  bool recordingFailed_ = false;
  Tally tally_;
};

// One run of replay.
class ReplayRun final : public Answering<RecordingFile> {
 public:
  using Answering::Answering;

  int Replay() {
    AnswerAll();
    const int status = tally_.contains(Again::Unreadable)  ? kExitTrouble
                       : tally_.contains(Again::Different) ? kExitSomeFalse
                                                           : kExitAllTrue;
    return End(ToSummary(tally_, style_.language), status);
  }

 private:
  Answered Answer(std::size_t /*worker*/, const EntryText& text) override {
    const Replayed replayed = host::Replay(text);
    return {static_cast<std::size_t>(replayed.again),
            options_.json ? ToJson(replayed) + '\n' : ToBlock(replayed, style_)};
  }
  void Note(std::span<const Answered> answers) override {
    for (const Answered& answer : answers) {
      ++tally_[static_cast<Again>(answer.verdict)];
    }
  }

  ReplayTally tally_;
};

int Init(const Options& options, const Streams& streams) {
  try {
    company::CreateCompany(options.newCompany, options.withSample);
  } catch (const RunTimeError& error) {
    return Complain(streams,
                    "can't make the company " + options.newCompany + ": " + error.Description());
  }
  streams.out << "made " << options.newCompany << ": " << company::Tables().size()
              << " tables, message texts in Italian and English"
              << (options.withSample ? ", sample data" : "") << std::endl;
  return streams.out ? kExitAllTrue : Complain(streams, "standard output can't be written");
}

int Check(const Options& options, const Streams& streams) {
  for (const std::string& file : options.files) {
    if (IsSameFile(options.recording, file)) {
      return Complain(streams, "the recording would take the place of " + file);
    }
  }
  if (IsSameFile(options.recording, options.company)) {
    return Complain(streams, "the recording would take the place of " + options.company);
  }
  std::optional<CheckRun> run;
  try {
    run.emplace(options, streams);
  } catch (const RunTimeError& error) {
    return Complain(streams,
                    "can't open the company " + options.company + ": " + error.Description());
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
    return Complain(streams,
                    "can't verify the company " + options.company + ": " + error.Description());
  }
  streams.out << (flaws == 0 ? Wording{"nessun difetto", "no flaws"}.In(language)
                             : Wording{"difetti: ", "flaws: "}.In(language) + std::to_string(flaws))
              << std::endl;
  if (!streams.out) {
    return Complain(streams, "standard output can't be written");
  }
  return flaws == 0 ? kExitAllTrue : kExitSomeFalse;
}

void AddLanguage(CLI::App& command, Options& options) {
  command.add_option("--lang", options.language, "Language of messages and text, it or en")
      ->check(CLI::IsMember({"it", "en"}));
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
      return Complain(streams, (options.page.empty() ? "explain takes a code or a name"
                                                     : "there is no message " + options.page) +
                                   "; explain --list shows them all");
    }
    text = ToText(*page, LanguageOf(options));
  }
  streams.out << text << std::flush;
  return streams.out ? kExitAllTrue : Complain(streams, "standard output can't be written");
}

}  // namespace

int Run(int argc, const char* const* argv, std::istream& in, std::ostream& out, std::ostream& err,
        const Terminals& terminals) {
  const Streams streams{in, out, err, terminals};
  Options options;
  CLI::App app("May these journal entries be saved, modified or deleted?", "kalcogcheck");
  app.set_version_flag("--version", kVersion);
  app.require_subcommand(1);
  app.footer(
      "Exit status: 0 every entry answered True, 1 at least one False, 2 at least one could not "
      "be checked or the call was wrong. Of replay: 0 all as recorded, 1 at least one different, "
      "2 at least one could not be read.");

  CLI::App* const init = app.add_subcommand("init", "Make an embedded company");
  init->add_option("COMPANY", options.newCompany, "The file to make")->required();
  init->add_flag("--sample", options.withSample, "With sample data");

  CLI::App* const check = app.add_subcommand("check", "Run entries against a company");
  check->add_option("--company", options.company, "The company's file")->required();
  CLI::Option* const json =
      check->add_flag("--json", options.json, "One JSON object an entry instead of text");
  check->add_flag("--explain", options.explain, "How each decision came about, check by check")
      ->excludes(json);
  AddLanguage(*check, options);
  AddJobs(*check, options, "Entries");
  check->add_option("--record", options.recording,
                    "Write every decision down here, to be replayed; holds company data");
  check->add_option("FILE", options.files, "JSON or JSON Lines; - is standard input")->required();

  CLI::App* const verify =
      app.add_subcommand("verify", "Is the company itself sound: tables, types, texts, keys");
  verify->add_option("COMPANY", options.company, "The company's file")->required();
  AddLanguage(*verify, options);

  CLI::App* const replay =
      app.add_subcommand("replay", "Decide recorded entries again, without a company");
  replay->add_flag("--json", options.json, "One JSON object an entry instead of text");
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
    return app.exit(error, out, err) == 0 ? kExitAllTrue : kExitTrouble;
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

}  // namespace kal::host
