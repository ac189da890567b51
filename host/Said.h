// Said: a sentence about something, in both languages.

#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "platform/Wording.h"

namespace kal::host {

struct Said {
  std::string italian{};
  std::string english{};

  [[nodiscard]] bool IsEmpty() const { return english.empty(); }
  [[nodiscard]] const std::string& In(Language language) const {
    return language == Language::Italian ? italian : english;
  }
};

// What takes a place in a sentence: the same in both languages, or not.
struct SaidPart : Wording {
  // NOLINTNEXTLINE(google-explicit-constructor): parts are written as what they are.
  SaidPart(std::string_view same) : Wording{same, same} {}
  SaidPart(const std::string& same) : SaidPart(std::string_view(same)) {}  // NOLINT
  SaidPart(const char* same) : SaidPart(std::string_view(same)) {}         // NOLINT
  SaidPart(const Wording& words) : Wording(words) {}                       // NOLINT
  SaidPart(const Said& said) : Wording{said.italian, said.english} {}      // NOLINT
};

// The sentence with each "%" replaced by the next part, in their order.
[[nodiscard]] Said Say(const Wording& words, std::initializer_list<SaidPart> parts = {});

}  // namespace kal::host
