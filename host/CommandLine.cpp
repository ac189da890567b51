#include "host/CommandLine.h"

// The optimizer sees a null pointer that cannot be in the library's own string splitting.
#pragma GCC diagnostic ignored "-Wnull-dereference"

#include <CLI/CLI.hpp>
#include <new>
#include <string_view>

#include "host/CommandApp.h"
#include "host/Commands.h"
#include "host/WrongCall.h"

namespace kal::host {
namespace {

// Finds the language wherever it is asked for, because help and what is wrong with a call are said
// in it, too.
void TakeLanguage(int argc, const char* const* argv, Options& options) {
  for (int i = 1; i < argc; ++i) {
    std::string_view word = argv[i];
    if (word == "--lang" && i + 1 < argc) {
      word = argv[i + 1];
    } else if (word.starts_with("--lang=")) {
      word.remove_prefix(std::string_view("--lang=").size());
    } else {
      continue;
    }
    if (word == "it" || word == "en") {
      options.language = word;
    }
  }
}

int RunCommand(int argc, const char* const* argv, const Streams& streams, Options& options) {
  TakeLanguage(argc, argv, options);
  CLI::App app;
  DescribeCommands(app, options, LanguageOf(options));
  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& asked) {
    app.exit(asked, streams.out, streams.err);
    return streams.out.flush() ? kExitAllTrue : ComplainOfOutput(streams, options);
  } catch (const CLI::ParseError& error) {
    return Complain(streams, options, WrongCall(error, app));
  }
  if (app.got_subcommand("explain")) {
    return Explain(options, streams);
  }
  if (app.got_subcommand("verify")) {
    return Verify(options, streams);
  }
  if (app.got_subcommand("replay")) {
    return ReplayAll(options, streams);
  }
  return app.got_subcommand("init") ? Init(options, streams) : Check(options, streams);
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
