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

JsonKeys::JsonKeys(std::size_t most) : most_(most) { lists_.emplace_back().number = NextNumber(); }

void JsonKeys::ForgetMany() {
  constexpr std::size_t kMany = 2048;
  if (lists_.size() > kMany) {
    *this = JsonKeys(most_);
  }
}

JsonKeyList* JsonKeys::Append(JsonKeyList& list, std::string_view key) {
  if (list.latest != nullptr && list.latest->key == key) {
    return list.latest;
  }
  const auto known = longer_.find({&list, key});
  if (known != longer_.end()) {
    list.latest = known->second;
  } else if (list.size == most_) {
    return nullptr;
  } else {
    JsonKeyList& longer = lists_.emplace_back();
    longer.number = NextNumber();
    longer.size = list.size + 1;
    longer.key = key;
    if (key.find_first_of("\"\\") == std::string_view::npos) {
      longer.quoted = longer.key + '"';
    }
    longer.before = &list;
    longer_.emplace(Longer{&list, longer.key}, &longer);
    list.latest = &longer;
  }
  return list.latest;
}

const std::string* JsonKeys::RepeatedKey(JsonKeyList& list) {
  if (!list.examined) {
    std::vector<const std::string*> keys;
    for (const JsonKeyList* at = &list; at->before != nullptr; at = at->before) {
      keys.push_back(&at->key);
    }
    const auto text = [](const std::string* key) -> const std::string& { return *key; };
    std::ranges::sort(keys, {}, text);
    const auto repeated = std::ranges::adjacent_find(keys, {}, text);
    list.twice = repeated == keys.end() ? nullptr : *repeated;
    list.examined = true;
  }
  return list.twice;
}

}  // namespace kal::host
