// WholeFile: a file that is there whole or not at all.

#pragma once

#include <functional>
#include <ostream>
#include <string>

namespace kal::host {

// Writes the file under a name of its own beside its place, which it then takes: what stood there
// stays until then. A device is written as it is. Returns why it can't be written, "" when it was.
[[nodiscard]] std::string WriteWholeFile(const std::string& path,
                                         const std::function<void(std::ostream&)>& write);

}  // namespace kal::host
