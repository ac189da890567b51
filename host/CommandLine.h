// CommandLine: what the program kalcogcheck does with its arguments.

#pragma once

#include <istream>
#include <ostream>

namespace kal::host {

inline constexpr int kExitAllTrue = 0;
inline constexpr int kExitSomeFalse = 1;
inline constexpr int kExitTrouble = 2;  // an entry that could not be checked, or a wrong call

struct Terminals {
  bool out = false;
  bool err = false;
  bool colours = false;  // wanted, where standard output is a terminal
};

// Runs one command and answers its exit status. Findings go to out, all else to err.
[[nodiscard]] int Run(int argc, const char* const* argv, std::istream& in, std::ostream& out,
                      std::ostream& err, const Terminals& terminals = {});

}  // namespace kal::host
