// Version: which version of the program this is.

#pragma once

#include <string>

namespace kal::host {

// "kalcogcheck 5.05.0017 (0a1b2c3)": with the commit that it was built from, where it was one; a
// "+" behind it says that the sources were changed since.
[[nodiscard]] std::string VersionText();

}  // namespace kal::host
