#include "platform/NumberText.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <system_error>

#include "platform/Trimmed.h"

namespace kal {
namespace {

constexpr std::uint64_t kLowHalf = 0xFFFF'FFFFU;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Takes a sign off the front.
bool TakeSign(std::string_view& text, bool& negative) {
  if (text.empty() || (text.front() != '-' && text.front() != '+')) {
    return false;
  }
  negative = text.front() == '-';
  text.remove_prefix(1);
  return true;
}

// Takes digits off the front; how many there were.
std::size_t TakeDigits(std::string_view& text, NumberText& number, bool behindPoint, bool commas) {
  std::size_t taken = 0;
  while (!text.empty() && (IsDigit(text.front()) || (commas && taken > 0 && text.front() == ','))) {
    if (text.front() != ',') {
      number.Append(text.front(), behindPoint);
      ++taken;
    }
    text.remove_prefix(1);
  }
  return taken;
}

// Takes the digits of an exponent off the front. Exponents far outside every type's range stay
// that far outside.
bool TakeExponent(std::string_view& text, NumberText& number) {
  constexpr std::int64_t kFarOutside = 1'000'000;
  text.remove_prefix(1);
  bool negative = false;
  TakeSign(text, negative);
  if (text.empty() || !IsDigit(text.front())) {
    return false;
  }
  std::int64_t exponent = 0;
  while (!text.empty() && IsDigit(text.front())) {
    exponent = std::min(exponent * 10 + (text.front() - '0'), kFarOutside);
    text.remove_prefix(1);
  }
  number.exponent += negative ? -exponent : exponent;
  return true;
}

}  // namespace

bool UInt96::Append(unsigned digit) {
  const std::uint64_t first = (low & kLowHalf) * 10 + digit;
  const std::uint64_t second = (low >> 32U) * 10 + (first >> 32U);
  const std::uint64_t third = std::uint64_t{high} * 10 + (second >> 32U);
  if (third > kLowHalf) {
    return false;
  }
  high = static_cast<std::uint32_t>(third);
  low = (second << 32U) | (first & kLowHalf);
  return true;
}

unsigned UInt96::RemoveLast() {
  const std::uint64_t second = (std::uint64_t{high % 10} << 32U) | (low >> 32U);
  const std::uint64_t first = ((second % 10) << 32U) | (low & kLowHalf);
  high /= 10;
  low = ((second / 10) << 32U) | (first / 10);
  return static_cast<unsigned>(first % 10);
}

void NumberText::Append(char digit, bool behindPoint) {
  const bool leadingZero = count == 0 && digit == '0';
  const bool kept = !leadingZero && count < kMostDigits;
  if (kept) {
    digits[count++] = digit;
  } else if (!leadingZero) {
    more = more || digit != '0';
  }
  if (behindPoint && (kept || leadingZero)) {
    --exponent;
  } else if (!behindPoint && !kept && !leadingZero) {
    ++exponent;
  }
}

void NumberText::StripTrailingZeros() {
  while (count > 0 && digits[count - 1] == '0') {
    --count;
    ++exponent;
  }
}

std::optional<UInt96> NumberText::Scaled(int decimals) const {
  constexpr std::int64_t kMost96 = 29;  // digits of the largest number of 96 bits
  const std::int64_t places = WholeDigits() + decimals;
  if (count == 0 || places < 0) {
    return UInt96{};
  }
  if (places > kMost96) {
    return std::nullopt;
  }
  const auto wanted = static_cast<std::size_t>(places);
  UInt96 magnitude;
  unsigned last = 0;
  for (std::size_t i = 0; i < wanted; ++i) {
    last = i < count ? static_cast<unsigned>(digits[i] - '0') : 0;
    if (!magnitude.Append(last)) {
      return std::nullopt;
    }
  }
  if (wanted >= count || digits[wanted] < '5') {
    return magnitude;
  }
  const bool half = digits[wanted] == '5' && !more &&
                    std::all_of(digits.begin() + static_cast<std::ptrdiff_t>(wanted) + 1,
                                digits.begin() + static_cast<std::ptrdiff_t>(count),
                                [](char digit) { return digit == '0'; });
  if (half && last % 2 == 0) {
    return magnitude;
  }
  if (++magnitude.low == 0 && ++magnitude.high == 0) {
    return std::nullopt;
  }
  return magnitude;
}

std::optional<std::int64_t> NumberText::ScaledInteger(int decimals) const {
  const std::optional<UInt96> magnitude = Scaled(decimals);
  const std::uint64_t limit =
      std::uint64_t{std::numeric_limits<std::int64_t>::max()} + (negative ? 1 : 0);
  if (!magnitude || magnitude->high != 0 || magnitude->low > limit) {
    return std::nullopt;
  }
  return static_cast<std::int64_t>(negative ? 0 - magnitude->low : magnitude->low);
}

std::optional<double> NumberText::ToDouble() const {
  if (count == 0) {
    return 0.0;
  }
  std::array<char, kMostDigits + 24> text;
  char* end = text.data();
  if (negative) {
    *end++ = '-';
  }
  end = std::copy_n(digits.data(), count, end);
  *end++ = 'e';
  end = std::to_chars(end, text.data() + text.size(), exponent).ptr;
  double value = 0;
  if (std::from_chars(text.data(), end, value).ec == std::errc::result_out_of_range) {
    return WholeDigits() > 0 ? std::nullopt : std::optional<double>(0.0);
  }
  return value;
}

std::string NumberText::ToText() const {
  if (count == 0) {
    return "0";
  }
  std::string text = negative ? "-" : "";
  const std::int64_t whole = WholeDigits();
  if (whole <= 0) {
    text += "0.";
    text.append(static_cast<std::size_t>(-whole), '0');
    return text.append(digits.data(), count);
  }
  const auto before = std::min(static_cast<std::size_t>(whole), count);
  text.append(digits.data(), before);
  text.append(static_cast<std::size_t>(whole) - before, '0');
  if (before < count) {
    text += '.';
    text.append(digits.data() + before, count - before);
  }
  return text;
}

std::optional<NumberText> ReadNumber(std::string_view text, NumberShape shape) {
  const bool plain = shape == NumberShape::Plain;
  if (!plain) {
    text = Trimmed(text);
  }
  NumberText number;
  const bool sign = TakeSign(text, number.negative);
  const std::size_t whole = TakeDigits(text, number, false, !plain);
  std::size_t decimals = 0;
  if (!text.empty() && text.front() == '.') {
    text.remove_prefix(1);
    decimals = TakeDigits(text, number, true, false);
    if (plain && (whole == 0 || decimals == 0)) {
      return std::nullopt;
    }
  }
  if (whole + decimals == 0) {
    return std::nullopt;
  }
  if (!plain && !text.empty() && (text.front() == 'e' || text.front() == 'E') &&
      !TakeExponent(text, number)) {
    return std::nullopt;
  }
  if (!plain && !sign) {
    TakeSign(text, number.negative);
  }
  return text.empty() ? std::optional<NumberText>(number) : std::nullopt;
}

std::optional<NumberText> SignificantDigits(double value, int digits) {
  std::array<char, 48> text;
  const char* end = std::to_chars(text.data(), text.data() + text.size(), value,
                                  std::chars_format::scientific, digits - 1)
                        .ptr;
  std::optional<NumberText> number =
      ReadNumber(std::string_view(text.data(), static_cast<std::size_t>(end - text.data())),
                 NumberShape::Automation);
  if (number) {
    number->StripTrailingZeros();
  }
  return number;
}

}  // namespace kal
