#include "host/JsonText.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "host/Utf8.h"

namespace kal::host {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

bool StandsForItself(char character) {
  const auto byte = static_cast<unsigned char>(character);
  return byte >= 0x20 && byte < 0x80 && byte != '"' && byte != '\\';
}

void AppendEscaped(char character, std::string& target) {
  constexpr std::string_view kNamed = "\"\\\b\f\n\r\t";
  constexpr std::string_view kNames = "\"\\bfnrt";
  target += '\\';
  if (const std::size_t name = kNamed.find(character); name != std::string_view::npos) {
    target += kNames[name];
    return;
  }
  constexpr std::string_view kDigits = "0123456789abcdef";
  const auto byte = static_cast<unsigned char>(character);
  target += "u00";
  target += kDigits[byte >> 4U];
  target += kDigits[byte & 0xFU];
}

}  // namespace

const JsonValue* JsonValue::Find(std::string_view name) const {
  if (kind == Kind::Object) {
    for (const JsonValue& item : Items()) {
      if (item.key == name) {
        return &item;
      }
    }
  }
  return nullptr;
}

void AppendJson(const JsonValue& value, std::string& target) {
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
      AppendQuoted(value.text, target);
      return;
    case JsonValue::Kind::Array:
    case JsonValue::Kind::Object:
      break;
  }
  const bool isObject = value.kind == JsonValue::Kind::Object;
  target += isObject ? '{' : '[';
  bool first = true;
  for (const JsonValue& item : value.Items()) {
    if (!std::exchange(first, false)) {
      target += ',';
    }
    if (isObject) {
      AppendQuoted(item.key, target);
      target += ':';
    }
    AppendJson(item, target);
  }
  target += isObject ? '}' : ']';
}

void AppendQuoted(std::string_view text, std::string& target) {
  target += '"';
  while (!text.empty()) {
    const auto plain =
        static_cast<std::size_t>(std::ranges::find_if_not(text, StandsForItself) - text.begin());
    target += text.substr(0, plain);
    text.remove_prefix(plain);
    if (text.empty()) {
      break;
    }
    const int length = CharacterLength(text);
    if (length == 1) {
      AppendEscaped(text.front(), target);
    } else {
      target += length < 0 ? kReplacement : text.substr(0, static_cast<std::size_t>(length));
    }
    text.remove_prefix(static_cast<std::size_t>(std::abs(length)));
  }
  target += '"';
}

std::string ToText(const JsonValue& value) {
  std::string text;
  AppendJson(value, text);
  return text;
}

std::string QuotedText(std::string_view text) {
  std::string quoted;
  AppendQuoted(text, quoted);
  return quoted;
}

}  // namespace kal::host
