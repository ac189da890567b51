#include "host/Wording.h"

#include <algorithm>
#include <cstdlib>

#include "host/Utf8.h"

namespace kal::host {
namespace {

constexpr std::size_t kTerminalWidth = 100;
constexpr std::size_t kGoOnIndent = 4;
constexpr std::string_view kPlain = "\x1b[0m";

bool StartsCharacter(char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }

// How many bytes the first characters of a UTF-8 text take.
std::size_t BytesOf(std::string_view text, std::size_t characters) {
  std::size_t bytes = 0;
  for (; bytes < text.size(); ++bytes) {
    if (StartsCharacter(text[bytes]) && characters-- == 0) {
      break;
    }
  }
  return bytes;
}

// Whether the character moves the cursor, changes colours or turns the direction of writing.
bool Steers(std::string_view character) {
  const auto byte = static_cast<unsigned char>(character.front());
  if (character.size() == 1) {
    return byte < 0x20U || byte == 0x7FU;
  }
  const auto last = static_cast<unsigned char>(character.back());
  const bool control = byte == 0xC2U && last < 0xA0U;  // U+0080 to U+009F
  const std::string_view front = character.substr(0, 2);
  return control || character == "\u061C" ||
         (front == "\xE2\x80" && ((last >= 0x8EU && last <= 0x8FU) ||    // U+200E, U+200F
                                  (last >= 0xA8U && last <= 0xAEU))) ||  // U+2028 to U+202E
         (front == "\xE2\x81" && last >= 0xA6U && last <= 0xA9U);        // U+2066 to U+2069
}

// Most texts are.
bool IsPlain(char c) { return c >= ' ' && c <= '~'; }

}  // namespace

std::string Printable(std::string_view text) {
  const auto plain =
      static_cast<std::size_t>(std::ranges::find_if_not(text, IsPlain) - text.begin());
  std::string shown(text.substr(0, plain));
  text.remove_prefix(plain);
  while (!text.empty()) {
    const int length = CharacterLength(text);
    const auto bytes = static_cast<std::size_t>(std::abs(length));
    const std::string_view character = text.substr(0, bytes);
    shown += length < 0 || Steers(character) ? "?" : character;
    text.remove_prefix(bytes);
  }
  return shown;
}

std::string_view WithoutLineEnd(std::string_view text) {
  return text.substr(0, text.find_last_not_of("\r\n") + 1);
}

std::string Painted(const std::string& text, std::string_view colour, const ReportStyle& style) {
  if (!style.colours || colour.empty()) {
    return text;
  }
  return std::string(colour) + text + std::string(kPlain);
}

std::string Wrapped(std::string_view text, std::size_t indent) {
  // Steps that lie very deep still leave room for words.
  indent = std::min(indent, kTerminalWidth / 2);
  std::string lines;
  do {
    const std::size_t whole = BytesOf(text, kTerminalWidth - indent);
    std::size_t end = whole;
    if (whole < text.size()) {
      const std::size_t blank = text.rfind(' ', whole);
      end = blank == std::string_view::npos || blank == 0 ? whole : blank;
    }
    lines += std::string(indent, ' ');
    lines += text.substr(0, end);
    lines += '\n';
    text.remove_prefix(end);
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    indent += lines.find('\n') + 1 == lines.size() ? kGoOnIndent : 0;
  } while (!text.empty());
  return lines;
}

}  // namespace kal::host
