// JsonText: JSON read without loss, and written.
//
// Numbers keep their digits as written, so that an amount never passes through a floating-point
// value. A key given twice in one object, which a reader that keeps the last one would hide, is an
// error, and so is more of anything than its limits allow.

#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>

#include "host/Limits.h"
#include "host/Said.h"

namespace kal::host {

// One value. Those inside it stand behind it in memory, so it means something only where it was
// read: hand on references.
struct JsonValue {
  enum class Kind : std::uint8_t { Null, Boolean, Number, Text, Array, Object };

  class Iterator;
  struct Range;

  Kind kind = Kind::Null;
  bool boolean = false;
  std::size_t extent = 1;   // how many values it is, with those inside it
  std::uint64_t keys = 0;   // of an object: the number of its list of keys, see JsonKeys
  std::string_view key{};   // of an object's item
  std::string_view text{};  // of a text (UTF-8), or the digits of a number

  // Of an array or an object, in order; none of another value.
  [[nodiscard]] Range Items() const;
  // The first item of that key; nullptr when there is none.
  [[nodiscard]] const JsonValue* Find(std::string_view name) const;
};

class JsonValue::Iterator {
 public:
  using value_type = JsonValue;
  using difference_type = std::ptrdiff_t;

  Iterator() = default;
  explicit Iterator(const JsonValue* value) : value_(value) {}
  const JsonValue& operator*() const { return *value_; }
  Iterator& operator++() {
    value_ += value_->extent;
    return *this;
  }
  void operator++(int) { ++*this; }
  bool operator==(const Iterator&) const = default;

 private:
  const JsonValue* value_ = nullptr;
};

struct JsonValue::Range {
  Iterator first;
  Iterator last;

  [[nodiscard]] Iterator begin() const { return first; }
  [[nodiscard]] Iterator end() const { return last; }
};

inline JsonValue::Range JsonValue::Items() const {
  return {Iterator(this + 1), Iterator(this + extent)};
}

struct JsonReading {
  enum class Ending {
    Complete,    // one value and nothing behind it
    Unfinished,  // the text ends before the value does
    Wrong,       // whatever followed, it would not become one value
  };

  Ending ending = Ending::Complete;
  // What was read up to the error, without the containers left open inside. Belongs to the reader.
  const JsonValue* value = nullptr;
  Said error{};  // empty when there is none; a complete value may still repeat a key
};

// Reads one text after the other in the same memory.
class JsonReader {
 public:
  explicit JsonReader(const JsonLimits& limits = {});
  JsonReader(JsonReader&&) noexcept;
  JsonReader& operator=(JsonReader&&) noexcept;
  ~JsonReader();

  // The text need not stay; the values are good until the next one is read.
  [[nodiscard]] JsonReading Read(std::string_view text);

 private:
  class Memory;
  JsonLimits limits_;
  std::unique_ptr<Memory> memory_;
};

// The value on one line, numbers as they were written; bytes that are no UTF-8 are replaced.
void AppendJson(const JsonValue& value, std::string& target);
void AppendQuoted(std::string_view text, std::string& target);
[[nodiscard]] std::string ToText(const JsonValue& value);
[[nodiscard]] std::string QuotedText(std::string_view text);

}  // namespace kal::host
