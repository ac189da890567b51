// Wording: the same words for people in both languages.

#pragma once

#include <string>
#include <string_view>

namespace kal {

enum class Language { Italian, English };

struct Wording {
  std::string_view italian;
  std::string_view english;

  [[nodiscard]] std::string In(Language language) const {
    return std::string(language == Language::Italian ? italian : english);
  }
  [[nodiscard]] constexpr bool IsEmpty() const { return italian.empty(); }
};

}  // namespace kal
