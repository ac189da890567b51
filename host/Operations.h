// Operations: what an entry can ask of the checker, by name.

#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "checker/KalCOGCheck.h"
#include "platform/Variant.h"

namespace kal::host {

// The types of an operation's arguments; a date may also be the empty text or Null.
enum class ArgumentKind { Flag, Short, Long, Text, Day };

using OperationResult = std::variant<bool, std::int32_t>;

struct Operation {
  std::string_view name;
  bool isCheck;  // a verdict on the entry with findings; otherwise a lookup that only answers
  std::span<const ArgumentKind> arguments;
  // Takes one variant of the right type for each argument.
  OperationResult (*call)(KalCOGCheck&, std::span<const Variant>);
};

// In interface order.
[[nodiscard]] std::span<const Operation> Operations();
// nullptr when there is none of that name, letter case included.
[[nodiscard]] const Operation* FindOperation(std::string_view name);

}  // namespace kal::host
