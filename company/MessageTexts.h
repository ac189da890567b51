// MessageTexts: the texts of the coded messages and the translations of the literal ones, as
// every new company starts with them.

#pragma once

#include <span>
#include <string_view>

#include "frame/modKalCommonErrorCodes.h"

namespace kal::company {

struct MessageText {
  MessageCode code;
  std::string_view italian;
  std::string_view english;
};

struct Translation {
  std::string_view italian;  // the text as the component asks for it
  std::string_view english;
};

// One for every message code, ascending.
[[nodiscard]] std::span<const MessageText> MessageTexts();
[[nodiscard]] std::span<const Translation> Translations();

}  // namespace kal::company
