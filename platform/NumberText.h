// NumberText: a decimal number as its digits, the meeting point of texts and exact numbers.
//
// Texts, decimals and floating-point numbers become digits first and are rounded once, from the
// digits, when the wanted type is known. So no conversion between them rounds twice, and none
// passes through a floating-point number on its way from one exact type to another.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kal {

// An unsigned integer of 96 bits, as decimals hold it.
struct UInt96 {
  std::uint64_t low = 0;
  std::uint32_t high = 0;

  // Times ten plus a digit; False, and the number unchanged, when that takes more than 96 bits.
  bool Append(unsigned digit);
  // Divides by ten and returns the digit that falls off.
  unsigned RemoveLast();
  [[nodiscard]] bool IsZero() const { return low == 0 && high == 0; }
};

// Value: the digits as a whole number, times ten to the exponent.
struct NumberText {
  static constexpr std::size_t kMostDigits = 40;  // more than any exact type holds

  bool negative = false;
  bool more = false;          // further digits were not kept, and one of them is not zero
  std::size_t count = 0;      // of digits kept; the first is not zero, and zero has none
  std::int64_t exponent = 0;  // of the last digit
  std::array<char, kMostDigits> digits;

  // Takes the next digit, which stands behind the point or before it.
  void Append(char digit, bool behindPoint);
  void StripTrailingZeros();
  // How many digits stand before the point; zero or negative for numbers below 0.1.
  [[nodiscard]] std::int64_t WholeDigits() const {
    return static_cast<std::int64_t>(count) + exponent;
  }

  // The magnitude with that many decimals, as a whole number; rounds half to even. Nothing when
  // it takes more than 96 bits.
  [[nodiscard]] std::optional<UInt96> Scaled(int decimals) const;
  // The same as a signed 64-bit integer; nothing when it does not fit.
  [[nodiscard]] std::optional<std::int64_t> ScaledInteger(int decimals) const;
  // The nearest double; nothing when it is too large for one.
  [[nodiscard]] std::optional<double> ToDouble() const;
  // Digits with a point and no exponent.
  [[nodiscard]] std::string ToText() const;
};

enum class NumberShape : std::uint8_t {
  Plain,       // an optional sign, digits, and decimals behind a point
  Automation,  // what automation takes for a number, see platform/Variant.h
};

[[nodiscard]] std::optional<NumberText> ReadNumber(std::string_view text, NumberShape shape);

// The number rounded to that many significant digits, less trailing zeros; nothing for infinities
// and NaN.
[[nodiscard]] std::optional<NumberText> SignificantDigits(double value, int digits);

}  // namespace kal
