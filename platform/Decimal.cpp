#include "platform/Decimal.h"

#include <algorithm>

#include "platform/DecimalDigits.h"
#include "platform/RunTimeError.h"

namespace kal {
namespace {

constexpr std::uint8_t kMostDecimals = 28;

std::strong_ordering CompareMagnitudes(const Decimal& left, const Decimal& right) {
  if (left.Scale() == right.Scale()) {
    const auto high = left.High() <=> right.High();
    return high != 0 ? high : left.Low() <=> right.Low();
  }
  const NumberText a = DigitsOf(left);
  const NumberText b = DigitsOf(right);
  if (a.count == 0 || b.count == 0) {
    return a.count <=> b.count;
  }
  if (a.WholeDigits() != b.WholeDigits()) {
    return a.WholeDigits() <=> b.WholeDigits();
  }
  for (std::size_t i = 0; i < std::max(a.count, b.count); ++i) {
    const auto digit = (i < a.count ? a.digits[i] : '0') <=> (i < b.count ? b.digits[i] : '0');
    if (digit != 0) {
      return digit;
    }
  }
  return std::strong_ordering::equal;
}

}  // namespace

NumberText DigitsOf(const Decimal& value) {
  UInt96 rest{value.Low(), value.High()};
  NumberText number;
  number.negative = value.Negative();
  number.exponent = -std::int64_t{value.Scale()};
  while (!rest.IsZero()) {
    number.digits[number.count++] = static_cast<char>('0' + rest.RemoveLast());
  }
  std::reverse(number.digits.begin(),
               number.digits.begin() + static_cast<std::ptrdiff_t>(number.count));
  return number;
}

std::optional<Decimal> DecimalOf(const NumberText& number) {
  // As many decimals as the number has, fewer where the digits would not fit.
  const std::int64_t decimals =
      std::clamp<std::int64_t>(-number.exponent, 0, std::int64_t{kMostDecimals});
  for (int scale = static_cast<int>(decimals); scale >= 0; --scale) {
    if (const std::optional<UInt96> magnitude = number.Scaled(scale)) {
      return Decimal::FromParts(magnitude->high, magnitude->low, static_cast<std::uint8_t>(scale),
                                number.negative);
    }
  }
  return std::nullopt;
}

Decimal Decimal::FromParts(std::uint32_t high, std::uint64_t low, std::uint8_t scale,
                           bool negative) {
  if (scale > kMostDecimals) {
    Raise(RunTime::Overflow, "Overflow: a decimal has at most 28 decimals");
  }
  Decimal decimal;
  decimal.low_ = low;
  decimal.high_ = high;
  decimal.scale_ = scale;
  decimal.negative_ = negative;
  return decimal;
}

Decimal Decimal::FromInteger(std::int64_t whole) {
  const auto bits = static_cast<std::uint64_t>(whole);
  return FromParts(0, whole < 0 ? 0 - bits : bits, 0, whole < 0);
}

Decimal Decimal::FromCurrency(Currency amount) {
  Decimal decimal = FromInteger(amount.Units());
  decimal.scale_ = 4;
  return decimal;
}

std::optional<Decimal> Decimal::FromText(std::string_view text) {
  const std::optional<NumberText> number = ReadNumber(text, NumberShape::Plain);
  return number ? DecimalOf(*number) : std::nullopt;
}

std::string Decimal::ToText() const {
  NumberText number = DigitsOf(*this);
  number.StripTrailingZeros();
  return number.ToText();
}

double Decimal::ToDouble() const { return DigitsOf(*this).ToDouble().value_or(0.0); }

Currency Decimal::ToCurrency() const {
  const std::optional<std::int64_t> units = DigitsOf(*this).ScaledInteger(4);
  if (!units) {
    Raise(RunTime::Overflow, "Overflow: " + ToText() + " is outside the range of Currency");
  }
  return Currency::FromUnits(*units);
}

std::strong_ordering operator<=>(const Decimal& left, const Decimal& right) {
  const auto magnitudes = CompareMagnitudes(left, right);
  if (left.Negative() == right.Negative()) {
    return left.Negative() ? 0 <=> magnitudes : magnitudes;
  }
  const bool zeros =
      UInt96{left.Low(), left.High()}.IsZero() && UInt96{right.Low(), right.High()}.IsZero();
  if (zeros) {
    return std::strong_ordering::equal;
  }
  return left.Negative() ? std::strong_ordering::less : std::strong_ordering::greater;
}

}  // namespace kal
