#include <simdjson.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "host/JsonReaders.h"

namespace kal::host {
namespace {

namespace ondemand = simdjson::ondemand;

// simdjson finds out what the processor can do when it is first used, and ends the program when
// there is no memory for that. Here, before the program does anything, there is.
const bool kReady = [] {
  simdjson::get_active_implementation() =
      simdjson::get_available_implementations().detect_best_supported();
  return true;
}();

bool IsBlank(char character) {
  return character == ' ' || character == '\t' || character == '\r' || character == '\n';
}

std::string_view WithoutBlanksBehind(std::string_view text) {
  while (!text.empty() && IsBlank(text.back())) {
    text.remove_suffix(1);
  }
  return text;
}

std::size_t CountDigits(std::string_view text) {
  const auto isDigit = [](char character) { return character >= '0' && character <= '9'; };
  return static_cast<std::size_t>(std::ranges::find_if_not(text, isDigit) - text.begin());
}

// Whether it is a number, without an exponent and far from too large for a floating-point number;
// nor the negative zero, which is kept as 0.
bool IsUsualNumber(std::string_view text) {
  constexpr std::size_t kLongest = 300;
  if (text == "-0" || text.size() > kLongest) {
    return false;
  }
  text.remove_prefix(text.starts_with('-') ? 1 : 0);
  const std::size_t whole = CountDigits(text);
  if (whole == 0 || (whole > 1 && text.front() == '0')) {
    return false;
  }
  text.remove_prefix(whole);
  if (text.empty()) {
    return true;
  }
  return text.front() == '.' && text.size() > 1 && CountDigits(text.substr(1)) == text.size() - 1;
}

// Walks over every value, so that all of the text is looked at. Each function says whether all was
// well; simdjson must not be asked on after it was not.
class Walk {
 public:
  // The room is for texts with escapes.
  Walk(const ondemand::parser& parser, std::string_view text, std::vector<std::uint8_t>& room,
       JsonTree& tree)
      : parser_(parser),
        end_(text.data() + text.size()),
        hasEscapes_(text.find('\\') != std::string_view::npos),
        room_(room),
        tree_(tree) {}

  template <class Object>
  [[nodiscard]] bool ReadObject(Object source) {
    ondemand::object object;
    if (source.get_object().get(object) != simdjson::SUCCESS ||
        !tree_.Open(JsonValue::Kind::Object)) {
      return false;
    }
    for (auto item : object) {
      if (item.error() != simdjson::SUCCESS || !ReadKey(item.key().value_unsafe().raw()) ||
          !ReadValue(item.value().value_unsafe())) {
        return false;
      }
    }
    tree_.Close();
    return true;
  }

 private:
  [[nodiscard]] bool ReadArray(ondemand::value source) {
    ondemand::array array;
    if (source.get_array().get(array) != simdjson::SUCCESS || !tree_.Open(JsonValue::Kind::Array)) {
      return false;
    }
    for (auto item : array) {
      if (item.error() != simdjson::SUCCESS || !ReadValue(item.value_unsafe())) {
        return false;
      }
    }
    tree_.Close();
    return true;
  }

  [[nodiscard]] bool ReadValue(ondemand::value value) {
    ondemand::json_type type{};
    if (value.type().get(type) != simdjson::SUCCESS) {
      return false;
    }
    switch (type) {
      case ondemand::json_type::object:
        return ReadObject(value);
      case ondemand::json_type::array:
        return ReadArray(value);
      case ondemand::json_type::string:
        return ReadText(value);
      default:
        return ReadWord(WithoutBlanksBehind(value.raw_json_token()));
    }
  }

  // A key as it stands; one with an escape is rare.
  [[nodiscard]] bool ReadKey(const char* start) {
    const std::string_view text(start, static_cast<std::size_t>(end_ - start));
    if (tree_.LikelyKey(text)) {
      return true;
    }
    const std::string_view key = text.substr(0, text.find('"'));
    if (key.find('\\') != std::string_view::npos) {
      return false;
    }
    tree_.Key(key);
    return true;
  }

  // A text without escapes as it stands, otherwise what simdjson makes of it.
  [[nodiscard]] bool ReadText(ondemand::value value) {
    const std::string_view quoted = WithoutBlanksBehind(value.raw_json_token());
    ondemand::raw_json_string raw;
    if (value.get_raw_json_string().get(raw) != simdjson::SUCCESS) {
      return false;
    }
    std::string_view text = quoted.substr(1, quoted.size() - 2);
    if (hasEscapes_ && text.find('\\') != std::string_view::npos && !Unescape(raw, text)) {
      return false;
    }
    tree_.AddText(text);
    return true;
  }

  // Texts get no longer without their escapes, so all of them fit in room for the rest of the text.
  // simdjson also writes behind what it made, which counts for nothing.
  [[nodiscard]] bool Unescape(ondemand::raw_json_string raw, std::string_view& text) {
    if (unescaped_ == nullptr) {
      room_.resize(static_cast<std::size_t>(end_ - raw.raw()) + simdjson::SIMDJSON_PADDING);
      unescaped_ = room_.data();
    }
    return parser_.unescape(raw, unescaped_).get(text) == simdjson::SUCCESS;
  }

  [[nodiscard]] bool ReadWord(std::string_view word) {
    if (word == "null") {
      tree_.AddNull();
    } else if (word == "true" || word == "false") {
      tree_.AddBoolean(word == "true");
    } else if (IsUsualNumber(word)) {
      tree_.AddNumber(word);
    } else {
      return false;
    }
    return true;
  }

  const ondemand::parser& parser_;
  const char* end_;
  bool hasEscapes_;  // anywhere: most entries have none
  std::vector<std::uint8_t>& room_;
  std::uint8_t* unescaped_ = nullptr;  // where the next text goes in the room, once there is one
  JsonTree& tree_;
};

}  // namespace

struct QuickJson::Parser {
  ondemand::parser parser;
  std::string padded;              // the text, and what simdjson reads behind it
  std::vector<std::uint8_t> room;  // for texts with escapes
};

QuickJson::QuickJson() : parser_(std::make_unique<Parser>()) {}
QuickJson::~QuickJson() = default;

bool QuickJson::Read(std::string_view text, JsonTree& tree) {
  const auto start = std::ranges::find_if_not(text, IsBlank);
  if (start == text.end() || *start != '{') {
    return false;
  }
  auto& [parser, padded, room] = *parser_;
  padded.assign(text);
  padded.append(simdjson::SIMDJSON_PADDING, '\0');
  ondemand::document document;
  if (parser.iterate(padded.data(), text.size(), padded.size()).get(document) !=
      simdjson::SUCCESS) {
    return false;
  }
  Walk walk(parser, padded, room, tree);
  return walk.ReadObject<ondemand::document&>(document) &&
         document.current_location().error() == simdjson::OUT_OF_BOUNDS;
}

}  // namespace kal::host
