// ExplainPages: what users are told about each message.

#pragma once

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

}  // namespace kal::host
