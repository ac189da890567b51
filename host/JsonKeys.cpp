#include "host/JsonKeys.h"

#include <algorithm>
#include <atomic>
#include <vector>

namespace kal::host {
namespace {

std::uint64_t NextNumber() {
  static std::atomic<std::uint64_t> last{0};
  return last.fetch_add(1, std::memory_order_relaxed) + 1;
}

}  // namespace

JsonKeys::JsonKeys() { nodes_.emplace_back().number = NextNumber(); }

void JsonKeys::ForgetMany() {
  constexpr std::size_t kMany = 2048;
  if (nodes_.size() > kMany) {
    *this = JsonKeys();
  }
}

JsonKeys::List JsonKeys::Append(List list, std::string_view key) {
  const List latest = nodes_[list].latest;
  if (latest != 0 && nodes_[latest].key == key) {
    return latest;
  }
  List longer = 0;
  if (const auto known = lists_.find({list, key}); known != lists_.end()) {
    longer = known->second;
  } else {
    longer = nodes_.size();
    Node& node = nodes_.emplace_back();
    node.number = NextNumber();
    node.key = key;
    node.before = list;
    lists_.emplace(Appended{list, node.key}, longer);
  }
  nodes_[list].latest = longer;
  return longer;
}

const std::string* JsonKeys::RepeatedKey(List list) {
  Node& last = nodes_[list];
  if (!last.examined) {
    std::vector<const std::string*> keys;
    for (List at = list; at != 0; at = nodes_[at].before) {
      keys.push_back(&nodes_[at].key);
    }
    const auto text = [](const std::string* key) -> const std::string& { return *key; };
    std::ranges::sort(keys, {}, text);
    const auto repeated = std::ranges::adjacent_find(keys, {}, text);
    last.repeated = repeated == keys.end() ? nullptr : *repeated;
    last.examined = true;
  }
  return last.repeated;
}

}  // namespace kal::host
