// Currency: automation's fixed-point amount, a 64-bit integer of ten-thousandths.
//
// The range is -922337203685477.5808 to 922337203685477.5807. Arithmetic is exact and checked:
// a result outside the range raises 6 (overflow). Nothing is ever rounded except where a text
// or a number with more than four decimals is converted; there the rounding is half to even.

#pragma once

#include <compare>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

namespace kal {

class Currency {
 public:
  static constexpr std::int64_t kUnit = 10'000;  // ten-thousandths in one

  constexpr Currency() = default;

  [[nodiscard]] static constexpr Currency FromUnits(std::int64_t tenThousandths) {
    Currency amount;
    amount.units_ = tenThousandths;
    return amount;
  }
  // A whole number; raises 6 outside the range.
  [[nodiscard]] static Currency FromInteger(std::int64_t whole);
  // Rounds half to even to four decimals; raises 6 outside the range or for NaN.
  [[nodiscard]] static Currency FromDouble(double value);
  // An optional sign, digits, and up to four decimals behind a point, nothing else. Nothing when
  // the text has another shape, more decimals that are not zero, or an amount outside the range.
  [[nodiscard]] static std::optional<Currency> FromExactText(std::string_view text);

  [[nodiscard]] constexpr std::int64_t Units() const { return units_; }
  [[nodiscard]] double ToDouble() const;
  // Shortest exact text: "12.5", "-0.0001", "122".
  [[nodiscard]] std::string ToText() const;
  // Always four decimals: "12.5000".
  [[nodiscard]] std::string ToFixedText() const;

  Currency operator-() const {
    if (units_ == kLeast) {
      RaiseOverflow();
    }
    return FromUnits(-units_);
  }
  Currency& operator+=(Currency other) {
    if (other.units_ < 0 ? units_ < kLeast - other.units_ : units_ > kMost - other.units_) {
      RaiseOverflow();
    }
    units_ += other.units_;
    return *this;
  }
  Currency& operator-=(Currency other) {
    if (other.units_ > 0 ? units_ < kLeast + other.units_ : units_ > kMost + other.units_) {
      RaiseOverflow();
    }
    units_ -= other.units_;
    return *this;
  }
  friend Currency operator+(Currency left, Currency right) { return left += right; }
  friend Currency operator-(Currency left, Currency right) { return left -= right; }
  friend constexpr auto operator<=>(Currency, Currency) = default;

 private:
  static constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
  static constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min();
  [[noreturn]] static void RaiseOverflow();

  std::int64_t units_ = 0;
};

}  // namespace kal
