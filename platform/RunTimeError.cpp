#include "platform/RunTimeError.h"

#include <string>

namespace kal {

void Raise(RunTime number, std::string_view description, std::string_view source) {
  throw RunTimeError(static_cast<std::int32_t>(number), std::string(source),
                     std::string(description));
}

}  // namespace kal
