// SelectionUse: by what engines know a selection and its answers again.

#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "platform/Variant.h"
#include "siblings/Selection.h"

namespace kal::company {

// What the statement of a constant selection is found by: its address, the name that came with it,
// and as much of the kinds of its values as the statement depends on.
struct UseView {
  const Selection* selection;
  std::uint64_t kinds;
  std::string_view name;
};

struct Use {
  const Selection* selection;
  std::uint64_t kinds;
  std::string name;

  operator UseView() const { return {selection, kinds, name}; }  // NOLINT: a view of it
};

struct UseHash {
  using is_transparent = void;
  std::size_t operator()(const UseView& use) const {
    constexpr std::uint64_t kSpread = 0x9E3779B97F4A7C15U;
    const std::size_t named = use.name.empty() ? 0 : std::hash<std::string_view>()(use.name);
    return (std::hash<const void*>()(use.selection) ^ named) + use.kinds * kSpread;
  }
};

struct SameUse {
  using is_transparent = void;
  bool operator()(const UseView& left, const UseView& right) const {
    return left.selection == right.selection && left.kinds == right.kinds &&
           left.name == right.name;
  }
};

struct TextHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view text) const {
    return std::hash<std::string_view>()(text);
  }
};

template <class Value>
using ByText = std::unordered_map<std::string, Value, TextHash, std::equal_to<>>;

// Writes a key that two values share exactly when they are identical.
void AppendValue(std::string& key, const Variant& value);
// A text; its size goes in front, so that no two can pass for one.
void AppendText(std::string& key, std::string_view text);

}  // namespace kal::company
