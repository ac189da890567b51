#include "host/CommandLine.h"

// The optimizer sees a null pointer that cannot be in the library's own string splitting.
#pragma GCC diagnostic ignored "-Wnull-dereference"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstddef>
#include <new>
#include <numeric>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cmake/Version.h"
#include "host/Commands.h"
#include "host/Limits.h"
#include "host/Said.h"

namespace kal::host {
namespace {

constexpr const char* kVersion = "kalcogcheck " KAL_VERSION;
constexpr unsigned kMostJobs = 256;

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
  check->add_option("--report", options.report,
                    "Write the run down here as one HTML page to look at; holds company data");
  check->add_option("--baseline", options.baseline,
                    "Findings accepted earlier, which count no longer");
  check->add_option("--write-baseline", options.newBaseline,
                    "Write the findings of this run down here, to be accepted from now on");
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
    return ReplayAll(options, streams);
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
