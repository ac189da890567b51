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

class JsonKeys {
 public:
  using List = std::size_t;  // its place here; 0 is the list without keys

  JsonKeys();
  // Makes room when many lists have come together. Lists got before are good no longer.
  void ForgetMany();

  // The list with one more key.
  [[nodiscard]] List Append(List list, std::string_view key);
  // Stays where it is until lists are forgotten.
  [[nodiscard]] std::string_view LastKey(List list) const { return nodes_[list].key; }
  [[nodiscard]] std::uint64_t Number(List list) const { return nodes_[list].number; }
  // The key that the list has twice, the smallest if there are several; nullptr when there is none.
  [[nodiscard]] const std::string* RepeatedKey(List list);

 private:
  // The last key of a list, behind the list that it was appended to.
  struct Node {
    std::uint64_t number = 0;
    std::string key;
    List before = 0;
    List latest = 0;  // the list that this one last became; 0 when none
    bool examined = false;
    const std::string* repeated = nullptr;
  };
  struct Appended {
    List list;
    std::string_view key;
    bool operator==(const Appended&) const = default;
  };
  struct Hash {
    std::size_t operator()(const Appended& appended) const {
      return std::hash<std::string_view>()(appended.key) + appended.list * 0x9E3779B97F4A7C15U;
    }
  };

  std::deque<Node> nodes_;
  std::unordered_map<Appended, List, Hash> lists_;
};

}  // namespace kal::host
