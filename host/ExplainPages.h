// ExplainPages: what users are told about each message and each check, in both languages.

#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "frame/modKalCommonErrorCodes.h"
#include "host/Wording.h"

namespace kal::host {

struct MessagePage {
  std::string_view name;   // of the code, or of the literal text without its "k"
  std::string_view check;  // the operation that finds it
  std::string_view lines;  // the record set of whose rows it speaks; "" for the whole entry
  // An entry of host/samples/, without ".json", that gives it; "" where the sample company can't.
  std::string_view sample;
  Wording when;
  Wording remedy;
  Wording protects{};  // empty where the check's own says it
};

// Every code, ascending, then every literal text.
[[nodiscard]] std::span<const MessagePage> MessagePages();
// The page of a name that has one.
[[nodiscard]] const MessagePage& PageOf(std::string_view name);
// By number or name; nullptr when there is none.
[[nodiscard]] const MessagePage* FindPage(std::string_view codeOrName);
// Nothing for a literal text.
[[nodiscard]] std::optional<MessageCode> CodeOf(const MessagePage& page);

// A check that an operation calls itself, and when it does; empty where it always does.
struct OrderedCheck {
  std::string_view name;
  Wording applies;
};
// The checks of an operation in the order in which they are first called; none where it has no
// order of its own.
[[nodiscard]] std::span<const OrderedCheck> OrderOf(std::string_view operation);

[[nodiscard]] std::string ToText(const MessagePage& page, Language language);
// One line for each page: code, name, check, sample.
[[nodiscard]] std::string PageList();

}  // namespace kal::host
