// Compare: the order of two variants, as the comparisons of platform/Variant.h find it.

#pragma once

#include <compare>

#include "platform/Variant.h"

namespace kal {

// Unordered where the comparison is Null: beside Null itself and beside NaN.
[[nodiscard]] std::partial_ordering CompareValues(const Variant& left, const Variant& right);

}  // namespace kal
