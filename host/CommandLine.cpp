#include "host/CommandLine.h"

// The optimizer sees a null pointer that cannot be in the library's own string splitting.
#pragma GCC diagnostic ignored "-Wnull-dereference"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
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
#include "host/Interrupt.h"
#include "host/Progress.h"
#include "host/Report.h"
#include "host/Runner.h"
#include "host/Workers.h"

namespace kal::host {
namespace {

constexpr const char* kVersion = "kalcogcheck " KAL_VERSION;
constexpr std::string_view kStandardInput = "-";
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

// Bytes of all files; 0 when one of them has no size, as a pipe has none.
std::uintmax_t SizeOf(const std::vector<std::string>& files) {
  std::uintmax_t total = 0;
  for (const std::string& file : files) {
    std::error_code none;
    const std::uintmax_t size = std::filesystem::file_size(file, none);
    if (file == kStandardInput || none) {
      return 0;
    }
    total += size;
  }
  return total;
}

// The entries of all files, one after the other.
class Input {
 public:
  Input(const std::vector<std::string>& files, std::istream& standardInput)
      : files_(files), standardInput_(standardInput), size_(SizeOf(files)) {}

  // Bytes of all files; 0 when it is not known.
  [[nodiscard]] std::uintmax_t Size() const { return size_; }

  // Nothing at the end.
  std::optional<Asked> Next() {
    for (;;) {
      if (entries_) {
        if (std::optional<EntryText> entry = entries_->Next()) {
          return Asked{*std::move(entry), bytesBefore_ + entries_->BytesRead()};
        }
        bytesBefore_ += entries_->BytesRead();
        entries_.reset();
      }
      if (opened_ == files_.size()) {
        return std::nullopt;
      }
      const std::string& file = files_[opened_++];
      if (file == kStandardInput) {
        entries_.emplace(standardInput_, "standard input");
        continue;
      }
      stream_ = std::ifstream(file, std::ios::binary);
      if (!stream_) {
        const std::string why = std::string("the file can't be opened: ") + std::strerror(errno);
        return Asked{{"", file, why}, bytesBefore_};
      }
      entries_.emplace(stream_, file);
    }
  }

  // The next entry and, from files of known size, some more: whoever feeds entries one by one
  // waits for each answer.
  std::vector<Asked> NextFew() {
    constexpr std::size_t kBytes = 1U << 15U;
    std::vector<Asked> few;
    for (std::size_t bytes = 0; bytes < kBytes; bytes += few.back().entry.text.size()) {
      std::optional<Asked> next = Next();
      if (!next) {
        break;
      }
      few.push_back(*std::move(next));
      if (size_ == 0) {
        break;
      }
    }
    return few;
  }

 private:
  const std::vector<std::string>& files_;
  std::istream& standardInput_;
  std::uintmax_t size_;
  std::size_t opened_ = 0;
  std::uintmax_t bytesBefore_ = 0;
  std::ifstream stream_;
  std::optional<EntryFile> entries_;
};

// So many entries are checked one by one, each answered before the next is read, before more
// workers than one are worth their start.
constexpr std::size_t kEntriesBeforeWorkers = 64;

// One run of check.
class CheckRun {
 public:
  CheckRun(const Options& options, const Streams& streams)
      : options_(options),
        streams_(streams),
        company_(std::make_unique<company::Company>(options.company, options.language)),
        style_{LanguageOf(options), streams.terminals.out && streams.terminals.colours},
        input_(options.files, streams.in),
        progress_(streams.err, streams.terminals.err, input_.Size()) {}

  int Run() {
    CheckAll();
    if (!options_.json) {
      (void)Write(ToSummary(tally_, style_.language));
    }
    progress_.Hide();
    if (!streams_.out) {
      return Complain(streams_, "standard output can't be written");
    }
    if (tally_.contains(Verdict::Unchecked)) {
      return kExitTrouble;
    }
    const bool allTrue = std::ranges::all_of(tally_, [](const auto& given) {
      return given.first == Verdict::Free || given.first == Verdict::Yes;
    });
    return allTrue ? kExitAllTrue : kExitSomeFalse;
  }

 private:
  // Ends early when standard output takes no more.
  void CheckAll() {
    for (std::size_t i = 0; i < kEntriesBeforeWorkers || options_.jobs == 1; ++i) {
      const std::optional<Asked> asked = input_.Next();
      if (!asked) {
        return;
      }
      Answered answer = CheckOne(*company_, asked->entry);
      answer.bytesRead = asked->bytesRead;
      if (!Deliver({&answer, 1})) {
        return;
      }
    }
    std::vector<std::unique_ptr<company::Company>> companies;
    companies.push_back(std::move(company_));
    while (companies.size() < options_.jobs) {
      companies.push_back(std::make_unique<company::Company>(options_.company, options_.language));
    }
    Workers(
        std::move(companies), [this] { return input_.NextFew(); },
        [this](company::Company& company, const EntryText& text) {
          return CheckOne(company, text);
        },
        [this](std::span<const Answered> answers) { return Deliver(answers); })
        .Run();
  }

  [[nodiscard]] Answered CheckOne(company::Company& company, const EntryText& text) const {
    if (options_.json) {
      const Outcome outcome = CheckEntry(company, text, Detail::Findings);
      return {VerdictOf(outcome), ToJson(outcome) + '\n'};
    }
    if (options_.explain) {
      const Outcome outcome = CheckEntry(company, text, Detail::FindingsAndSteps);
      return {VerdictOf(outcome), ToExplanation(outcome, style_)};
    }
    const Outcome outcome = CheckEntry(company, text, Detail::Findings);
    return {VerdictOf(outcome), ToBlock(outcome, style_)};
  }

  // False when standard output takes no more.
  bool Deliver(std::span<const Answered> answers) {
    std::string text;
    for (const Answered& answer : answers) {
      ++tally_[answer.verdict];
      text += answer.text;
    }
    const bool written = Write(text);
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
    const Writing answer;
    return static_cast<bool>(streams_.out << text << std::flush);
  }

  const Options& options_;
  const Streams& streams_;
  std::unique_ptr<company::Company> company_;  // the workers', once there are some
  ReportStyle style_;
  Input input_;
  Progress progress_;
  Tally tally_;
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
  std::optional<CheckRun> run;
  try {
    run.emplace(options, streams);
  } catch (const RunTimeError& error) {
    return Complain(streams,
                    "can't open the company " + options.company + ": " + error.Description());
  }
  return run->Run();
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
      "be checked or the call was wrong.");

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
  check
      ->add_option("--jobs", options.jobs,
                   "Entries checked at the same time; all cores if left out")
      ->check(CLI::Range(1U, kMostJobs));
  check->add_option("FILE", options.files, "JSON or JSON Lines; - is standard input")->required();

  CLI::App* const verify =
      app.add_subcommand("verify", "Is the company itself sound: tables, types, texts, keys");
  verify->add_option("COMPANY", options.company, "The company's file")->required();
  AddLanguage(*verify, options);

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
  return init->parsed() ? Init(options, streams) : Check(options, streams);
}

}  // namespace kal::host
