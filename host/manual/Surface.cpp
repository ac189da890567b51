#include "host/manual/Surface.h"

// The optimizer sees a null pointer that cannot be in the library's own string splitting.
#pragma GCC diagnostic ignored "-Wnull-dereference"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <set>
#include <sstream>
#include <stdexcept>

#include "host/CommandApp.h"

namespace kal::host {
namespace {

std::string Spoken(const std::string& says, const std::string& of) {
  if (says.empty()) {
    throw std::logic_error("nothing is said of " + of);
  }
  return says;
}

std::vector<std::string> Names(const std::set<CLI::Option*>& options) {
  std::vector<std::string> names;
  names.reserve(options.size());
  for (const CLI::Option* const option : options) {
    names.push_back(option->get_name());
  }
  std::ranges::sort(names);  // the set is in the order of addresses
  return names;
}

OptionSurface Read(const CLI::Option& option) {
  const bool isArgument = option.get_positional();
  const std::string names = option.get_name(isArgument, true);
  return {.names = Parts(names, ','),
          .takes = isArgument                       ? names
                   : option.get_expected_max() == 0 ? ""
                                                    : option.get_type_name(),
          .usual = option.get_default_str(),
          .says = Spoken(option.get_description(), names),
          .isArgument = isArgument,
          .isRequired = option.get_required(),
          .isRepeated = option.get_expected_max() > 1,
          .with = Names(option.get_needs()),
          .without = Names(option.get_excludes())};
}

CommandSurface Read(const CLI::App& app) {
  CommandSurface command{app.get_name(), Spoken(app.get_description(), app.get_name()), {}};
  for (const CLI::Option* const option : app.get_options()) {
    command.options.push_back(Read(*option));
  }
  return command;
}

}  // namespace

ProgramSurface ReadSurface(Language language) {
  CLI::App app;
  Options options;
  DescribeCommands(app, options, language);
  ProgramSurface surface{Read(app), {}};
  for (const CLI::App* const command : app.get_subcommands({})) {
    surface.commands.push_back(Read(*command));
  }
  return surface;
}

std::vector<std::string> Parts(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::istringstream rest(text);
  for (std::string part; std::getline(rest, part, separator);) {
    parts.push_back(part);
  }
  return parts;
}

}  // namespace kal::host
