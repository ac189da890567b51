#include "platform/Currency.h"

#include <array>
#include <charconv>
#include <cmath>

#include "platform/RunTimeError.h"

namespace kal {
namespace {

constexpr std::int64_t kUnit = Currency::kUnit;
constexpr int kDecimals = 4;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Appends a digit to a magnitude that may reach the least amount's; False when it grows beyond.
bool AppendDigit(std::uint64_t& magnitude, char digit) {
  constexpr std::uint64_t kLimit = std::uint64_t{1} << 63U;
  const auto value = static_cast<std::uint64_t>(digit - '0');
  if (magnitude > (kLimit - value) / 10) {
    return false;
  }
  magnitude = magnitude * 10 + value;
  return true;
}

// Sign, whole part, and at least that many decimals.
std::string TextOf(std::int64_t units, int leastDecimals) {
  const std::uint64_t magnitude =
      units < 0 ? 0 - static_cast<std::uint64_t>(units) : static_cast<std::uint64_t>(units);
  std::array<char, 24> text;
  char* end = text.data();
  if (units < 0) {
    *end++ = '-';
  }
  end = std::to_chars(end, text.data() + text.size(), magnitude / kUnit).ptr;
  std::uint64_t rest = magnitude % kUnit;
  if (rest != 0 || leastDecimals > 0) {
    *end++ = '.';
  }
  std::uint64_t place = kUnit;
  for (int decimals = 0; rest != 0 || decimals < leastDecimals; ++decimals) {
    place /= 10;
    *end++ = static_cast<char>('0' + rest / place);
    rest %= place;
  }
  return {text.data(), end};
}

}  // namespace

void Currency::RaiseOverflow() {
  Raise(RunTime::Overflow, "Overflow: the amount is outside the range of Currency");
}

Currency Currency::FromInteger(std::int64_t whole) {
  if (whole > kMost / kUnit || whole < kLeast / kUnit) {
    RaiseOverflow();
  }
  return FromUnits(whole * kUnit);
}

Currency Currency::FromDouble(double value) {
  constexpr double kExact = 9007199254740992.0;      // 2^53
  constexpr double kBeyond = 9223372036854775808.0;  // 2^63
  const double units = value * static_cast<double>(kUnit);
  if (std::abs(units) < kExact) {
    return FromUnits(static_cast<std::int64_t>(std::nearbyint(units)));
  }
  if (!(units >= -kBeyond && units <= kBeyond)) {
    RaiseOverflow();
  }
  // The product has lost digits that the number still has.
  const double whole = std::trunc(value);
  const double decimals = std::nearbyint((value - whole) * static_cast<double>(kUnit));
  return FromInteger(static_cast<std::int64_t>(whole)) +
         FromUnits(static_cast<std::int64_t>(decimals));
}

std::optional<Currency> Currency::FromExactText(std::string_view text) {
  const bool negative = text.starts_with('-');
  std::size_t at = negative || text.starts_with('+') ? 1 : 0;
  std::uint64_t magnitude = 0;
  const std::size_t firstDigit = at;
  for (; at < text.size() && IsDigit(text[at]); ++at) {
    if (!AppendDigit(magnitude, text[at])) {
      return std::nullopt;
    }
  }
  if (at == firstDigit) {
    return std::nullopt;
  }
  int decimals = 0;
  if (at < text.size() && text[at] == '.') {
    const std::size_t point = at++;
    for (; at < text.size() && IsDigit(text[at]); ++at) {
      const bool fits = decimals < kDecimals ? AppendDigit(magnitude, text[at]) : text[at] == '0';
      if (!fits) {
        return std::nullopt;
      }
      decimals += decimals < kDecimals ? 1 : 0;
    }
    if (at == point + 1) {
      return std::nullopt;
    }
  }
  for (; decimals < kDecimals; ++decimals) {
    if (!AppendDigit(magnitude, '0')) {
      return std::nullopt;
    }
  }
  const std::uint64_t limit = std::uint64_t{kMost} + (negative ? 1 : 0);
  if (at != text.size() || magnitude > limit) {
    return std::nullopt;
  }
  return FromUnits(static_cast<std::int64_t>(negative ? 0 - magnitude : magnitude));
}

// The nearest double in every case: equal amounts and decimals must give equal doubles, because
// indexes find numbers of different types by them.
double Currency::ToDouble() const {
  constexpr std::int64_t kExact = std::int64_t{1} << 53U;
  constexpr auto kDivisor = static_cast<double>(kUnit);
  if (units_ >= -kExact && units_ <= kExact) {
    return static_cast<double>(units_) / kDivisor;
  }
  // NOLINTNEXTLINE(bugprone-integer-division): the whole part, exactly
  return static_cast<double>(units_ / kUnit) + static_cast<double>(units_ % kUnit) / kDivisor;
}

std::string Currency::ToText() const { return TextOf(units_, 0); }

std::string Currency::ToFixedText() const { return TextOf(units_, kDecimals); }

}  // namespace kal
