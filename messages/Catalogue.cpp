#include "messages/Catalogue.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>

namespace kal {
namespace {

// Of a check or a theme.
struct Protected {
  std::string_view name;
  Wording words;
};

constexpr Protected kProtected[] = {
#define KAL_CHECK(name, italian, english) {name, {italian, english}},
#define KAL_THEME(name, italian, english) {name, {italian, english}},
#include "messages/Messages.h"
};

constexpr Wording ProtectedBy(std::string_view check, std::string_view theme) {
  const auto* const found =
      std::ranges::find(kProtected, theme.empty() ? check : theme, &Protected::name);
  return found == std::end(kProtected) ? Wording{} : found->words;
}

// A literal text without a translation stays as it is in every language.
constexpr Message Row(std::optional<MessageCode> code, std::string_view name,
                      std::string_view check, std::string_view theme, std::string_view set,
                      std::string_view sample, std::string_view italian, std::string_view english,
                      std::string_view whenItalian, std::string_view whenEnglish,
                      std::string_view remedyItalian, std::string_view remedyEnglish) {
  return {.code = code,
          .name = name,
          .check = check,
          .set = set,
          .sample = sample,
          .text = {italian, !code && english.empty() ? italian : english},
          .when = {whenItalian, whenEnglish},
          .remedy = {remedyItalian, remedyEnglish},
          .protects = ProtectedBy(check, theme)};
}

constexpr Message kCatalogue[] = {
#define KAL_MESSAGE(number, name, ...) Row(MessageCode::name, #name, __VA_ARGS__),
#define KAL_LITERAL(name, ...) Row(std::nullopt, #name, __VA_ARGS__),
#include "messages/Messages.h"
};

constexpr Wording kOwnTexts[] = {
#define KAL_WORD(name, text, translation) {text, translation},
#define KAL_LITERAL(name, check, theme, set, sample, text, translation, ...) {text, translation},
#include "messages/Messages.h"
};

constexpr bool IsTranslated(const Wording& words) { return !words.english.empty(); }

constexpr auto kDictionary = [] {
  std::array<Wording, std::ranges::count_if(kOwnTexts, IsTranslated)> dictionary;
  std::ranges::copy_if(kOwnTexts, dictionary.begin(), IsTranslated);
  return dictionary;
}();

constexpr bool IsComplete(const Wording& words) {
  return !words.italian.empty() && !words.english.empty();
}

constexpr std::size_t ParametersOf(std::string_view text) {
  std::size_t count = 0;
  for (std::size_t at = 0; (at = text.find("%s", at)) != std::string_view::npos; at += 2) {
    ++count;
  }
  return count;
}

constexpr bool AscendsTo(const Message& first, const Message& second) {
  return !second.code || (first.code && *first.code < *second.code);
}

static_assert(std::ranges::adjacent_find(kCatalogue, std::not_fn(AscendsTo)) ==
                  std::end(kCatalogue),
              "the codes ascend, each once, and the literal messages follow them");
static_assert(std::ranges::all_of(kCatalogue,
                                  [](const Message& message) {
                                    return IsComplete(message.text) && IsComplete(message.when) &&
                                           IsComplete(message.remedy);
                                  }),
              "every message has all its texts in both languages");
static_assert(std::ranges::all_of(kCatalogue, IsComplete, &Message::protects),
              "every check that a message names, or else its theme, says what it protects");
static_assert(std::ranges::all_of(kCatalogue,
                                  [](const Message& message) {
                                    return ParametersOf(message.text.italian) ==
                                           ParametersOf(message.text.english);
                                  }),
              "a text takes the same parameters in both languages");

}  // namespace

std::span<const Message> Catalogue() { return kCatalogue; }

const Message* FindMessage(std::string_view name) {
  const auto* const found = std::ranges::find(kCatalogue, name, &Message::name);
  return found == std::end(kCatalogue) ? nullptr : found;
}

std::span<const Wording> Dictionary() { return kDictionary; }

}  // namespace kal
