// ExplainPages: what users are told about each message, and the order of the checks.

#pragma once

#include <span>
#include <string>
#include <string_view>

#include "messages/Catalogue.h"
#include "platform/Wording.h"

namespace kal::host {

// By number or name; nullptr when there is none.
[[nodiscard]] const Message* FindPage(std::string_view codeOrName);
[[nodiscard]] std::string ToText(const Message& message, Language language);
// One line for each message: code, name, check, sample.
[[nodiscard]] std::string PageList();

// A check that an operation calls itself, and when it does; empty where it always does.
struct OrderedCheck {
  std::string_view name;
  Wording applies;
};
// The checks of an operation in the order in which they are first called; none where it has no
// order of its own.
[[nodiscard]] std::span<const OrderedCheck> OrderOf(std::string_view operation);

}  // namespace kal::host
