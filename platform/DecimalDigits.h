// DecimalDigits: decimals as digits, and back.

#pragma once

#include <optional>

#include "platform/Decimal.h"
#include "platform/NumberText.h"

namespace kal {

[[nodiscard]] NumberText DigitsOf(const Decimal& value);

// Decimals that do not fit are rounded half to even; nothing when the whole part does not fit.
[[nodiscard]] std::optional<Decimal> DecimalOf(const NumberText& number);

}  // namespace kal
