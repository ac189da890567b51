// FilterValue: how filters see values.
//
// Filters compare in their own way: texts without regard to letter case, booleans as 0 and 1, and
// values of different kinds (numbers, texts, dates) not at all. Letter case is that of A to Z and
// of the accented letters of Latin-1 in UTF-8 (À to Þ); all other characters compare as bytes.

#pragma once

#include <compare>
#include <cstdint>
#include <string_view>

#include "platform/Recordset.h"
#include "platform/Variant.h"

namespace kal {

// The value as a constant to compare with cells of a column of that type, a boolean exactly for
// boolean columns: the value itself, or the room given where another had to be made of it. nullptr
// when it is of another kind, or Null or Empty.
[[nodiscard]] const Variant* FilterConstantOfAny(DataType column, const Variant& value,
                                                 Variant& room);
[[nodiscard]] inline const Variant* FilterConstant(DataType column, const Variant& value,
                                                   Variant& room) {
  const bool whole = column == DataType::Integer || column == DataType::SmallInt;
  return whole && value.AsInteger() ? &value : FilterConstantOfAny(column, value, room);
}

// The order of a cell and a constant from FilterConstant. Unordered, that is without any
// comparison that holds, when the cell is Null or of another kind.
[[nodiscard]] std::partial_ordering CompareOfAnyKind(const Variant& cell, const Variant& constant);
[[nodiscard]] inline std::partial_ordering CompareInFilter(const Variant& cell,
                                                           const Variant& constant) {
  if (cell.IsNull()) {
    return std::partial_ordering::unordered;
  }
  const auto number = cell.AsInteger();
  const auto wanted = constant.AsInteger();
  return number && wanted ? *number <=> *wanted : CompareOfAnyKind(cell, constant);
}

// Equal for cells and constants that compare as equal, whatever their types.
[[nodiscard]] std::uint64_t HashInFilter(const Variant& value);

[[nodiscard]] bool IsTextColumn(DataType column);

// Whether the text begins with, or contains, the other one.
[[nodiscard]] bool StartsWithFolded(std::string_view text, std::string_view start);
[[nodiscard]] bool ContainsFolded(std::string_view text, std::string_view part);

}  // namespace kal
