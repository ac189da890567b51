// Decimal: automation's exact decimal, a 96-bit integer with a sign and 0 to 28 decimals.
//
// The component only reads, compares and converts decimals; it never calculates with them.

#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Currency.h"

namespace kal {

class Decimal {
 public:
  constexpr Decimal() = default;  // 0

  // The value is (high * 2^64 + low) / 10^scale, negative when told so. Raises 6 when the scale
  // is above 28.
  [[nodiscard]] static Decimal FromParts(std::uint32_t high, std::uint64_t low, std::uint8_t scale,
                                         bool negative);
  [[nodiscard]] static Decimal FromInteger(std::int64_t whole);
  [[nodiscard]] static Decimal FromCurrency(Currency amount);
  // An optional sign, digits, and decimals behind a point. Decimals that do not fit are rounded
  // half to even. Nothing when the text has another shape or its whole part does not fit.
  [[nodiscard]] static std::optional<Decimal> FromText(std::string_view text);

  [[nodiscard]] constexpr std::uint32_t High() const { return high_; }
  [[nodiscard]] constexpr std::uint64_t Low() const { return low_; }
  [[nodiscard]] constexpr std::uint8_t Scale() const { return scale_; }
  [[nodiscard]] constexpr bool Negative() const { return negative_; }

  // Digits with a point, as many decimals as the scale says less trailing zeros: "1.005".
  [[nodiscard]] std::string ToText() const;
  [[nodiscard]] double ToDouble() const;
  // Rounds half to even to four decimals; raises 6 outside Currency's range.
  [[nodiscard]] Currency ToCurrency() const;

  // By value: 1.0 equals 1.00, and -0 equals 0.
  friend std::strong_ordering operator<=>(const Decimal& left, const Decimal& right);
  friend bool operator==(const Decimal& left, const Decimal& right) {
    return (left <=> right) == 0;
  }

 private:
  std::uint64_t low_ = 0;
  std::uint32_t high_ = 0;
  std::uint8_t scale_ = 0;
  bool negative_ = false;
};

}  // namespace kal
