// Completion: what the shells need to complete a call of the program.

#pragma once

#include <string>

#include "host/manual/Surface.h"

namespace kal::host {

[[nodiscard]] std::string BashCompletion(const ProgramSurface& surface);
// What the options do is shown in Italian where the user's messages are.
[[nodiscard]] std::string ZshCompletion(const ProgramSurface& italian,
                                        const ProgramSurface& english);

}  // namespace kal::host
