// modKalCommonErrorCodes: the coded messages that the checks can give.
//
// A coded message is known by its number alone; its text, in the user's language, belongs to the
// status component. A few messages are literal texts of the component's own: they stand in
// modCommonCostanti. What else there is to say about either stands in messages/.

#pragma once

#include <cstdint>
#include <string_view>

namespace kal {

enum class MessageCode : std::int32_t {
#define KAL_MESSAGE(number, name, ...) name = (number),
#include "messages/Messages.h"
};

// "" for a number that is none of them.
[[nodiscard]] constexpr std::string_view NameOf(MessageCode code) {
  switch (code) {
#define KAL_MESSAGE(number, name, ...) \
  case MessageCode::name:              \
    return #name;
#include "messages/Messages.h"
  }
  return "";
}

}  // namespace kal
