// JsonText: JSON read without loss.
//
// Numbers keep their digits as written, so that an amount never passes through a floating-point
// value. A key given twice in one object, which a reader that keeps the last one would hide, is an
// error, and so is nesting deeper than kMaxJsonDepth.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kal::host {

inline constexpr std::size_t kMaxJsonDepth = 32;

struct JsonValue {
  enum class Kind { Null, Boolean, Number, Text, Array, Object };

  Kind kind = Kind::Null;
  bool boolean = false;
  std::string text{};               // of a text (UTF-8), or the digits of a number
  std::vector<JsonValue> items{};   // of an array, or the values of an object
  std::vector<std::string> keys{};  // of an object, one for each item

  // The first item of that key; nullptr when there is none.
  [[nodiscard]] const JsonValue* Find(std::string_view key) const;
};

struct JsonReading {
  enum class Ending {
    Complete,    // one value and nothing behind it
    Unfinished,  // the text ends before the value does
    Wrong,       // whatever followed, it would not become one value
  };

  Ending ending = Ending::Complete;
  JsonValue value;    // what was read up to the error, without the containers left open inside
  std::string error;  // "" when there is none; a complete value may still repeat a key
};

[[nodiscard]] JsonReading ReadJson(std::string_view text);

// The value on one line, numbers as they were written; bytes that are no UTF-8 are replaced.
[[nodiscard]] std::string ToText(const JsonValue& value);
[[nodiscard]] std::string QuotedText(std::string_view text);

}  // namespace kal::host
