// Surface: the commands and options of the program as data, read from the parser that it has.

#pragma once

#include <string>
#include <vector>

#include "platform/Wording.h"

namespace kal::host {

struct OptionSurface {
  std::vector<std::string> names;  // with their dashes; of an argument its one name
  std::string takes;               // the name of its value; "" for a flag
  std::string usual;               // the value where it is left out; "" for none
  std::string says;
  bool isArgument = false;
  bool isRequired = false;
  bool isRepeated = false;
  std::vector<std::string> with;     // what must stand beside it
  std::vector<std::string> without;  // what must not
};

struct CommandSurface {
  std::string name;
  std::string says;
  std::vector<OptionSurface> options;
};

struct ProgramSurface {
  CommandSurface program;
  std::vector<CommandSurface> commands;
};

// In the order in which they are described. Throws std::logic_error where something is said of
// none.
[[nodiscard]] ProgramSurface ReadSurface(Language language);

// The parts between the separators.
[[nodiscard]] std::vector<std::string> Parts(const std::string& text, char separator);

}  // namespace kal::host
