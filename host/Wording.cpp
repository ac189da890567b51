#include "host/Wording.h"

#include <algorithm>

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

}  // namespace

std::string Printable(std::string_view text) {
  std::string shown(text);
  for (char& c : shown) {
    const auto byte = static_cast<unsigned char>(c);
    c = byte < 0x20U || byte == 0x7FU ? '?' : c;
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
