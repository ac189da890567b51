// JsonKeys: the keys of objects, in their order.
//
// Objects with the same keys in the same order share one list, also from one text to the next. A
// list has a number that no other list of the process ever gets: what somebody has once worked out
// about its keys is known again by the number.

#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace kal::host {

// A list of keys, as its last key behind the list that it was appended to.
struct JsonKeyList {
  std::uint64_t number = 0;
  std::size_t size = 0;
  std::string key;
  std::string quoted;  // the key and the quote behind it; "" when JSON escapes a part of the key
  JsonKeyList* before = nullptr;       // nullptr for the list without keys
  JsonKeyList* latest = nullptr;       // what it last became with one more key
  bool examined = false;               // whether it is known which key it has twice:
  const std::string* twice = nullptr;  // the smallest of them
};

class JsonKeys {
 public:
  // Lists of at most so many keys.
  explicit JsonKeys(std::size_t most);

  // Makes room when many lists have come together. Lists got before are good no longer.
  void ForgetMany();

  [[nodiscard]] JsonKeyList& WithoutKeys() { return lists_.front(); }
  // The list with one more key; nullptr when that would be too many.
  [[nodiscard]] JsonKeyList* Append(JsonKeyList& list, std::string_view key);
  // The key that the list has twice; nullptr when there is none.
  [[nodiscard]] static const std::string* RepeatedKey(JsonKeyList& list);

 private:
  struct Longer {
    const JsonKeyList* list;
    std::string_view key;
    bool operator==(const Longer&) const = default;
  };
  struct Hash {
    std::size_t operator()(const Longer& longer) const {
      return std::hash<std::string_view>()(longer.key) ^
             std::hash<std::uint64_t>()(longer.list->number * 0x9E3779B97F4A7C15U);
    }
  };

  std::size_t most_;
  std::deque<JsonKeyList> lists_;
  std::unordered_map<Longer, JsonKeyList*, Hash> longer_;
};

}  // namespace kal::host
