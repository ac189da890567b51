// JsonTree: the values of one text, put together as they come, for those who read JSON.

#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/JsonKeys.h"
#include "host/JsonText.h"

namespace kal::host {

// Raised where a text has more of something than its limits allow.
struct JsonExcess {
  Said what;
};

class JsonTree {
 public:
  explicit JsonTree(const JsonLimits& limits = {})
      : limits_(limits), open_(limits.depth), keys_(limits.keys) {}

  // Forgets the last text.
  void Start();

  // Digits and texts are not copied: they stay where they are until the next start, or are first
  // given here to be kept.
  void AddNull() { Add(JsonValue::Kind::Null, {}); }
  void AddBoolean(bool value);
  void AddNumber(std::string_view digits) { Add(JsonValue::Kind::Number, digits); }
  void AddText(std::string_view text) { Add(JsonValue::Kind::Text, text); }
  [[nodiscard]] std::string_view Keep(std::string text) {
    return kept_.emplace_back(std::move(text));
  }

  // An array or an object; false when that would be too deep.
  [[nodiscard]] bool Open(JsonValue::Kind kind);
  void Close();
  [[nodiscard]] Said TooDeep() const;
  // Where the value stands that comes next: behind ", in ", its record set and row, or the
  // outermost key above it. Empty outside of the outermost object.
  [[nodiscard]] Said Where() const;
  // The key of the next item; need not stay.
  void Key(std::string_view key);
  // The same if the text starts with the key that most likely comes next and the quote behind it;
  // false if not.
  [[nodiscard]] bool LikelyKey(std::string_view text);

  // The outermost value, without the containers left open inside it.
  [[nodiscard]] const JsonValue& Finish();
  // Of the first object to be closed that has a key twice; nullptr when none has.
  [[nodiscard]] const std::string* RepeatedKey() const { return repeatedKey_; }
  // Where that object stands, and which it is among all objects and arrays, counted from 0.
  [[nodiscard]] const Said& RepeatedWhere() const { return repeatedWhere_; }
  [[nodiscard]] std::size_t RepeatedPlace() const { return repeatedPlace_; }

 private:
  struct Opened {
    std::size_t place = 0;  // among the values
    JsonKeyList* keys = nullptr;
  };

  void Add(JsonValue::Kind kind, std::string_view text);

  JsonLimits limits_;
  std::vector<JsonValue> values_;
  std::deque<std::string> kept_;
  std::vector<Opened> open_;
  std::size_t depth_ = 0;
  std::string_view key_;
  JsonKeys keys_;
  const std::string* repeatedKey_ = nullptr;
  Said repeatedWhere_;
  std::size_t repeatedPlace_ = 0;
};

// What is wrong with a complete tree of that text: a key that is given twice. Empty where none is.
[[nodiscard]] Said RepeatedKeyError(const JsonTree& tree, std::string_view text);

}  // namespace kal::host
