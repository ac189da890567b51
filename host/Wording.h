// How words stand on a terminal.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/Wording.h"

namespace kal::host {

struct ReportStyle {
  Language language = Language::Italian;
  bool colours = false;
};

inline constexpr std::string_view kRed = "\x1b[31m";
inline constexpr std::string_view kGreen = "\x1b[32m";
inline constexpr std::string_view kYellow = "\x1b[33m";
inline constexpr std::string_view kBold = "\x1b[1m";

// How answers of one kind are called and coloured.
struct AnswerWording {
  Wording one;
  Wording many;
  std::string_view colour;
};

// "3 entries: 1 free, 2 blocked": the noun, and how often each kind of answer was given, by the
// places of their words in that list.
template <class Tally, class Wordings>
[[nodiscard]] std::string Summary(const Tally& tally, const Wordings& wordings,
                                  const AnswerWording& noun, Language language) {
  std::size_t all = 0;
  std::string parts;
  const auto called = [language](const AnswerWording& wording, std::size_t count) {
    return std::to_string(count) + ' ' + (count == 1 ? wording.one : wording.many).In(language);
  };
  for (std::size_t kind = 0; kind < tally.size(); ++kind) {
    all += tally[kind];
    if (tally[kind] != 0) {
      parts += (parts.empty() ? ": " : ", ") + called(wordings[kind], tally[kind]);
    }
  }
  return called(noun, all) + parts + '\n';
}

// The same for programs: {"summary":{"entries":3,"free":1,"blocked":2},"status":1}, with the keys
// in the place of the words.
template <class Tally, class Keys>
[[nodiscard]] std::string SummaryJson(const std::string& noun, const Tally& tally, const Keys& keys,
                                      int status) {
  std::size_t all = 0;
  std::string parts;
  for (std::size_t kind = 0; kind < tally.size(); ++kind) {
    all += tally[kind];
    parts += ",\"" + std::string(keys[kind]) + "\":" + std::to_string(tally[kind]);
  }
  return R"({"summary":{")" + noun + "\":" + std::to_string(all) + parts +
         "},\"status\":" + std::to_string(status) + "}";
}

// The text with "?" for control characters, those that turn the direction of writing, and bytes
// that are no UTF-8: one from outside must not steer the terminal.
[[nodiscard]] std::string Printable(std::string_view text);

// The text without the line ends behind it, which some messages bring along.
[[nodiscard]] std::string_view WithoutLineEnd(std::string_view text);

// The text in that colour where the style has colours.
[[nodiscard]] std::string Painted(const std::string& text, std::string_view colour,
                                  const ReportStyle& style);

// The text as lines of at most 100 characters, broken at blanks: the first indented by so many
// blanks, those that go on by four more. Each ends with a line end. A word that is longer than a
// line is cut.
[[nodiscard]] std::string Wrapped(std::string_view text, std::size_t indent);

}  // namespace kal::host
