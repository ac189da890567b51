#include "host/WrongCall.h"

// The optimizer sees a null pointer that cannot be in the library's own string splitting.
#pragma GCC diagnostic ignored "-Wnull-dereference"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstddef>
#include <numeric>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kal::host {
namespace {

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

Said Misplaced(const std::string& word) {
  return Say({"% non va qui", "% does not belong here"}, {word});
}

// Where no command was found, what stands in its place.
Said NoCommand(const CLI::App& app) {
  const std::vector<std::string> words = app.remaining();
  if (words.empty()) {
    return Say({"manca il comando", "the command is missing"});
  }
  if (words.front().starts_with('-')) {
    return Misplaced(words.front());
  }
  const std::string meant = MeantBy(words.front(), app);
  return meant.empty()
             ? Say({"non c'è un comando %", "there is no command %"}, {words.front()})
             : Say({"non c'è un comando %; forse %?", "there is no command %; did you mean %?"},
                   {words.front(), meant});
}

// What the library checks last: options that must be there, and how they go together.
Said WrongTogether(const CLI::App& command) {
  for (const CLI::Option* const option : command.get_options()) {
    if (option->get_required() && option->count() == 0) {
      return Say({"manca %", "% is missing"}, {option->get_name()});
    }
    if (option->count() == 0) {
      continue;
    }
    for (const CLI::Option* const other : option->get_needs()) {
      if (other->count() == 0) {
        return Say({"% vuole anche %", "% takes % as well"},
                   {option->get_name(), other->get_name()});
      }
    }
    for (const CLI::Option* const other : option->get_excludes()) {
      if (other->count() != 0) {
        return Say({"% non va insieme a %", "% does not go with %"},
                   {option->get_name(), other->get_name()});
      }
    }
  }
  return {};
}

Said Wrong(const CLI::ParseError& error, const CLI::App& app) {
  const std::vector<CLI::App*> parsed = app.get_subcommands();
  if (parsed.empty() && dynamic_cast<const CLI::RequiredError*>(&error) != nullptr) {
    return NoCommand(app);
  }
  if (dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr) {
    const std::vector<std::string> words = app.remaining(true);
    return Misplaced(words.empty() ? "" : words.front());
  }
  if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr) {
    // The library's sentence begins with the option's name, that of a flag without its dashes.
    const std::string_view sentence = error.what();
    const std::string name(sentence.substr(0, sentence.find_first_of(": ")));
    if (!name.starts_with('-')) {
      return Say({"% non vuole un valore", "% takes no value"}, {"--" + name});
    }
    const auto repeated = [&name](const CLI::App& command) {
      const CLI::Option* const option = command.get_option_no_throw(name);
      return option != nullptr && option->count() > 1;
    };
    return repeated(app) || (!parsed.empty() && repeated(*parsed.front()))
               ? Say({"% si dice una volta sola", "% is said once"}, {name})
               : Say({"% vuole un valore", "% takes a value"}, {name});
  }
  if (dynamic_cast<const CLI::ValidationError*>(&error) != nullptr) {
    return Say({"%", "%"}, {error.what()});  // in the app's language already
  }
  if (Said said = parsed.empty() ? Said() : WrongTogether(*parsed.front()); !said.IsEmpty()) {
    return said;
  }
  return Say({"un valore non si capisce (%)", "a value is not understood (%)"}, {error.what()});
}

}  // namespace

Said WrongCall(const CLI::ParseError& error, const CLI::App& app) {
  const std::vector<CLI::App*> parsed = app.get_subcommands();
  const std::string command = parsed.empty() ? "" : " " + parsed.front()->get_name();
  return Say({"% (si veda kalcogcheck% --help)", "% (see kalcogcheck% --help)"},
             {Wrong(error, app), command});
}

}  // namespace kal::host
