// JsonLine: one line of JSON, written from the front to the end.

#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "host/JsonText.h"
#include "platform/Variant.h"

namespace kal::host {

class JsonLine {
 public:
  JsonLine() { text_.reserve(kUsual); }

  // A key, one of ours that needs no escapes.
  JsonLine& Key(std::string_view key) {
    Separate();
    text_ += '"';
    text_ += key;
    text_ += "\":";
    return *this;
  }
  // Either a key's value or the next one of an array.
  void Text(std::string_view text) {
    Separate();
    AppendQuoted(text, text_);
  }
  void Json(std::string_view json) {
    Separate();
    text_ += json;
  }
  void Flag(bool flag) { Json(flag ? "true" : "false"); }
  void Number(std::int64_t number) { Json(std::to_string(number)); }

  // Whole numbers and booleans stay what they are, dates are ISO texts, all else is a text.
  void Value(const Variant& value) {
    switch (value.VarType()) {
      case Variant::Type::Boolean:
        return Flag(CBool(value));
      case Variant::Type::TinyInt:
      case Variant::Type::SmallInt:
      case Variant::Type::Integer:
        return Number(CLng(value));
      case Variant::Type::Date:
        return Text(CDate(value).ToIso());
      default:
        return Text(CStr(value));
    }
  }
  void Values(std::span<const Variant> values) {
    Open('[');
    for (const Variant& value : values) {
      Value(value);
    }
    Close(']');
  }

  void Open(char bracket) {
    Separate();
    text_ += bracket;
  }
  void Close(char bracket) { text_ += bracket; }

  [[nodiscard]] std::string Take() { return std::move(text_); }

 private:
  void Separate() {
    if (!text_.empty() && text_.back() != '{' && text_.back() != '[' && text_.back() != ':') {
      text_ += ',';
    }
  }

  static constexpr std::size_t kUsual = 1024;  // room for an answer with few findings

  std::string text_;
};

}  // namespace kal::host
