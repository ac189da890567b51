#include "host/JsonText.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kal::host {
namespace {

using nlohmann::json;

// The library's message without its error number and its own idea of the place.
std::string BareMessage(std::string message) {
  for (const std::string_view end : {"] ", "column "}) {
    const std::size_t found = message.find(end);
    message.erase(0, found == std::string::npos ? 0 : found + end.size());
  }
  const std::size_t detail = message.find_first_not_of("0123456789: ");
  return message.substr(detail == std::string::npos ? 0 : detail);
}

// Builds the tree from the parser's events. The containers still open stand in a stack; the
// finished ones have moved into their parent, so a tree broken off halfway keeps what was whole.
class TreeBuilder final : public nlohmann::json_sax<json> {
 public:
  explicit TreeBuilder(std::string_view text) : text_(text) {}

  bool null() override { return Add({}); }
  bool boolean(bool value) override {
    return Add({.kind = JsonValue::Kind::Boolean, .boolean = value});
  }
  bool number_integer(std::int64_t value) override { return AddNumber(std::to_string(value)); }
  bool number_unsigned(std::uint64_t value) override { return AddNumber(std::to_string(value)); }
  bool number_float(double, const std::string& digits) override { return AddNumber(digits); }
  bool string(std::string& value) override {
    return Add({.kind = JsonValue::Kind::Text, .text = std::move(value)});
  }
  bool binary(json::binary_t&) override { return false; }  // JSON text has none
  bool start_object(std::size_t) override { return Open(JsonValue::Kind::Object); }
  bool key(std::string& name) override {
    open_.back().keys.push_back(std::move(name));
    return true;
  }
  bool end_object() override {
    NoteRepeatedKey(open_.back().keys);
    return Close();
  }
  bool start_array(std::size_t) override { return Open(JsonValue::Kind::Array); }
  bool end_array() override { return Close(); }

  bool parse_error(std::size_t position, const std::string&,
                   const json::exception& error) override {
    // The parser counts the end of the text as one more character.
    reading_.ending =
        position > text_.size() ? JsonReading::Ending::Unfinished : JsonReading::Ending::Wrong;
    reading_.error = "not JSON, " + PlaceOf(position) + ": " + BareMessage(error.what());
    return false;
  }

  JsonReading Finish() {
    if (!open_.empty()) {
      JsonValue& root = open_.front();
      root.keys.resize(std::min(root.keys.size(), root.items.size()));
      reading_.value = std::move(root);
    }
    if (reading_.error.empty() && repeatedKey_) {
      reading_.error = "the key " + QuotedText(*repeatedKey_) + " is given twice in one object";
    }
    return std::move(reading_);
  }

 private:
  // "column 5", behind the number of the line where the text has several.
  [[nodiscard]] std::string PlaceOf(std::size_t position) const {
    const std::size_t end = text_.find_last_not_of(" \t\r\n") + 1;
    const std::string_view before = text_.substr(0, std::min(position, end));
    const std::size_t lineStart = before.rfind('\n') + 1;  // 0 when there is no line before
    const auto line = std::ranges::count(before, '\n') + 1;
    return (line > 1 ? "line " + std::to_string(line) + " " : "") + "column " +
           std::to_string(before.size() - lineStart);
  }

  bool AddNumber(std::string digits) {
    return Add({.kind = JsonValue::Kind::Number, .text = std::move(digits)});
  }

  bool Add(JsonValue item) {
    if (open_.empty()) {
      reading_.value = std::move(item);
    } else {
      open_.back().items.push_back(std::move(item));
    }
    return true;
  }

  bool Open(JsonValue::Kind kind) {
    if (open_.size() == kMaxJsonDepth) {
      reading_.ending = JsonReading::Ending::Wrong;
      reading_.error = "nested deeper than " + std::to_string(kMaxJsonDepth) + " levels";
      return false;
    }
    open_.push_back({.kind = kind});
    return true;
  }

  bool Close() {
    JsonValue closed = std::move(open_.back());
    open_.pop_back();
    return Add(std::move(closed));
  }

  void NoteRepeatedKey(const std::vector<std::string>& keys) {
    if (repeatedKey_) {
      return;
    }
    std::vector<std::string_view> sorted(keys.begin(), keys.end());
    std::ranges::sort(sorted);
    const auto repeated = std::ranges::adjacent_find(sorted);
    if (repeated != sorted.end()) {
      repeatedKey_ = std::string(*repeated);
    }
  }

  std::string_view text_;
  std::vector<JsonValue> open_;
  std::optional<std::string> repeatedKey_;
  JsonReading reading_;
};

void AppendText(const JsonValue& value, std::string& target) {
  switch (value.kind) {
    case JsonValue::Kind::Null:
      target += "null";
      return;
    case JsonValue::Kind::Boolean:
      target += value.boolean ? "true" : "false";
      return;
    case JsonValue::Kind::Number:
      target += value.text;
      return;
    case JsonValue::Kind::Text:
      target += QuotedText(value.text);
      return;
    case JsonValue::Kind::Array:
    case JsonValue::Kind::Object:
      break;
  }
  const bool isObject = value.kind == JsonValue::Kind::Object;
  target += isObject ? '{' : '[';
  for (std::size_t i = 0; i < value.items.size(); ++i) {
    target += i == 0 ? "" : ",";
    if (isObject) {
      target += QuotedText(value.keys[i]) + ':';
    }
    AppendText(value.items[i], target);
  }
  target += isObject ? '}' : ']';
}

}  // namespace

const JsonValue* JsonValue::Find(std::string_view key) const {
  const auto found = std::ranges::find(keys, key);
  return found == keys.end() ? nullptr : &items[static_cast<std::size_t>(found - keys.begin())];
}

JsonReading ReadJson(std::string_view text) {
  TreeBuilder builder(text);
  // The builder's refusals and the parser's errors both end the parse; Finish tells them apart.
  (void)json::sax_parse(text.begin(), text.end(), &builder);
  return builder.Finish();
}

std::string ToText(const JsonValue& value) {
  std::string text;
  AppendText(value, text);
  return text;
}

std::string QuotedText(std::string_view text) {
  return json(text).dump(-1, ' ', false, json::error_handler_t::replace);
}

}  // namespace kal::host
