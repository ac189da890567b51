// LetterCase: how names of fields, tables and members are compared, whatever their letter case.
//
// Names are ASCII; other bytes count as they are. Filters, which compare texts of any language,
// fold further letters by rules of their own on top of this.

#pragma once

#include <algorithm>
#include <string_view>

namespace kal {

[[nodiscard]] constexpr char FoldedAscii(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

[[nodiscard]] constexpr bool SameName(std::string_view left, std::string_view right) {
  return std::ranges::equal(
      left, right, [](char a, char b) { return a == b || FoldedAscii(a) == FoldedAscii(b); });
}

}  // namespace kal
