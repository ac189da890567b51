// Utf8: where characters end in a text that may be no text.

#pragma once

#include <cstddef>
#include <string_view>

namespace kal::host {

// The length of the character in UTF-8 that the text starts with. Where there is none it is the
// length, negated, of what could have begun one: at least one byte.
[[nodiscard]] inline int CharacterLength(std::string_view text) {
  const auto byte = [&](std::size_t place) { return static_cast<unsigned char>(text[place]); };
  const unsigned lead = byte(0);
  if (lead < 0x80) {
    return 1;
  }
  if (lead < 0xC2 || lead > 0xF4) {
    return -1;
  }
  const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  // The second byte has bounds of its own where the character would be one that has a shorter form,
  // a surrogate, or beyond the last.
  unsigned least = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
  unsigned most = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
  for (std::size_t place = 1; place < length; ++place) {
    if (place >= text.size() || byte(place) < least || byte(place) > most) {
      return -static_cast<int>(place);
    }
    least = 0x80;
    most = 0xBF;
  }
  return static_cast<int>(length);
}

}  // namespace kal::host
