// Quoted: a text of any length as error descriptions show it.

#pragma once

#include <string>
#include <string_view>

namespace kal {

// The text between double quotes; of a long one the first 60 bytes or so, whole UTF-8 characters,
// and "...".
[[nodiscard]] std::string Quoted(std::string_view text);

}  // namespace kal
