// Trimmed: a text without the blanks around it, which are spaces and tabs.

#pragma once

#include <string_view>

namespace kal {

[[nodiscard]] constexpr std::string_view Trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t";
  const auto first = text.find_first_not_of(kBlanks);
  return first == text.npos ? std::string_view()
                            : text.substr(first, text.find_last_not_of(kBlanks) + 1 - first);
}

}  // namespace kal
