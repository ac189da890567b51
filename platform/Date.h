// Date: automation's date, the number of days since 30 December 1899.
//
// The fraction is the time of day; before 1899 it still counts forward from midnight, so the
// serial of 29 December 1899, 06:00 is -1.25. The range is 1 January 100 to 31 December 9999.
// Comparisons are those of automation: of the serial numbers.

#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kal {

class Date {
 public:
  constexpr Date() = default;  // 30 December 1899, midnight

  // Nothing when the serial lies outside the range.
  [[nodiscard]] static std::optional<Date> FromSerial(double serial);
  // Nothing when there is no such calendar day in the range.
  [[nodiscard]] static std::optional<Date> FromYmd(int year, int month, int day);
  // ISO text, yyyy-mm-dd, all ten characters. Nothing for any other text or no such day.
  [[nodiscard]] static std::optional<Date> FromIso(std::string_view text);
  // What automation takes for a date: d/m/yyyy (also with "-" or "." between, and two-digit
  // years, 00 to 29 being of this century) or ISO text, with or without a time hh:mm[:ss] behind
  // a blank. Nothing for any other text.
  [[nodiscard]] static std::optional<Date> FromText(std::string_view text);

  [[nodiscard]] constexpr double Serial() const { return serial_; }
  [[nodiscard]] int Year() const;
  [[nodiscard]] int Month() const;  // 1 to 12
  [[nodiscard]] int Day() const;    // 1 to 31

  // The same calendar day at midnight.
  [[nodiscard]] Date WithoutTime() const;

  // dd/mm/yyyy; the time of day is not part of the text.
  [[nodiscard]] std::string ToText() const;
  // yyyy-mm-dd, followed by a blank and hh:mm:ss when the time of day is not midnight.
  [[nodiscard]] std::string ToIso() const;

  friend constexpr auto operator<=>(const Date&, const Date&) = default;

 private:
  double serial_ = 0;
};

}  // namespace kal
