#include "platform/Quoted.h"

#include <cstddef>

namespace kal {
namespace {

bool IsContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; }

}  // namespace

std::string Quoted(std::string_view text) {
  constexpr std::size_t kLongest = 60;
  if (text.size() <= kLongest) {
    return '"' + std::string(text) + '"';
  }
  std::size_t length = kLongest;
  while (length > 0 && IsContinuation(text[length])) {
    --length;
  }
  return '"' + std::string(text.substr(0, length)) + "...\"";
}

}  // namespace kal
