// Catalogue: the lines of Messages.h as data, for those who tell people about messages.

#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "frame/modKalCommonErrorCodes.h"
#include "platform/Wording.h"

namespace kal {

struct Message {
  std::optional<MessageCode> code;  // nothing for a literal text
  std::string_view name;            // of the code or of the literal text, without its "k"
  std::string_view check;           // the operation that finds it
  std::string_view set;             // of whose rows it speaks; "" for the whole entry
  std::string_view sample;          // of host/samples/, without ".json"; "" where there is none
  Wording text;                     // a text that is never translated is the same in both
  Wording when;
  Wording remedy;
  Wording protects;
};

// Every coded message, ascending, then every literal one.
[[nodiscard]] std::span<const Message> Catalogue();
// nullptr when there is none of that name.
[[nodiscard]] const Message* FindMessage(std::string_view name);
// The texts that the component asks to be translated, with their translations.
[[nodiscard]] std::span<const Wording> Dictionary();

}  // namespace kal
