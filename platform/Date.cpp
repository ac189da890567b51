#include "platform/Date.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>

namespace kal {
namespace {

using std::chrono::days;
using std::chrono::sys_days;
using std::chrono::year_month_day;

constexpr sys_days kDayZero =
    std::chrono::year{1899} / std::chrono::December / std::chrono::day{30};
constexpr int kFirstDay = -657'434;  // 1 January 100
constexpr int kLastDay = 2'958'465;  // 31 December 9999
constexpr int kSecondsOfDay = 86'400;

// The day that a serial lies in. Truncation is right for negative serials too: their fraction
// counts forward from midnight.
year_month_day Calendar(double serial) {
  return {kDayZero + days(static_cast<int>(std::trunc(serial)))};
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Takes a number of least to most digits off the front; -1 when there is none.
int TakeNumber(std::string_view& text, std::size_t least, std::size_t most) {
  std::size_t count = 0;
  int number = 0;
  while (count < most && count < text.size() && IsDigit(text[count])) {
    number = number * 10 + (text[count] - '0');
    ++count;
  }
  text.remove_prefix(count);
  return count >= least ? number : -1;
}

bool Take(std::string_view& text, char expected) {
  if (!text.starts_with(expected)) {
    return false;
  }
  text.remove_prefix(1);
  return true;
}

// Takes yyyy-mm-dd off the front.
std::optional<Date> TakeIso(std::string_view& text) {
  const int year = TakeNumber(text, 4, 4);
  if (!Take(text, '-')) {
    return std::nullopt;
  }
  const int month = TakeNumber(text, 2, 2);
  if (!Take(text, '-')) {
    return std::nullopt;
  }
  return Date::FromYmd(year, month, TakeNumber(text, 2, 2));
}

// Takes d/m/y off the front, the year of four digits or of two.
std::optional<Date> TakeDayFirst(std::string_view& text) {
  const int day = TakeNumber(text, 1, 2);
  const char separator = text.empty() ? ' ' : text.front();
  if (separator != '/' && separator != '-' && separator != '.') {
    return std::nullopt;
  }
  text.remove_prefix(1);
  const int month = TakeNumber(text, 1, 2);
  if (!Take(text, separator)) {
    return std::nullopt;
  }
  const std::size_t before = text.size();
  int year = TakeNumber(text, 2, 4);
  const std::size_t yearDigits = before - text.size();
  if (yearDigits == 3) {
    return std::nullopt;
  }
  if (yearDigits == 2) {
    year += year <= 29 ? 2000 : 1900;
  }
  return Date::FromYmd(year, month, day);
}

// Takes hh:mm or hh:mm:ss off the front, as seconds; -1 when there is none.
int TakeTime(std::string_view& text) {
  const int hour = TakeNumber(text, 1, 2);
  if (!Take(text, ':')) {
    return -1;
  }
  const int minute = TakeNumber(text, 2, 2);
  const int second = Take(text, ':') ? TakeNumber(text, 2, 2) : 0;
  const bool exists =
      hour >= 0 && hour < 24 && minute >= 0 && minute < 60 && second >= 0 && second < 60;
  return exists ? (hour * 60 + minute) * 60 + second : -1;
}

void Put(char*& at, int number, int digits) {
  for (int i = digits - 1; i >= 0; --i) {
    at[i] = static_cast<char>('0' + number % 10);
    number /= 10;
  }
  at += digits;
}

}  // namespace

std::optional<Date> Date::FromSerial(double serial) {
  const double day = std::trunc(serial);
  if (!(day >= kFirstDay && day <= kLastDay)) {
    return std::nullopt;
  }
  Date date;
  date.serial_ = serial;
  return date;
}

std::optional<Date> Date::FromYmd(int year, int month, int day) {
  if (year < 100 || year > 9999 || month < 1 || month > 12 || day < 1 || day > 31) {
    return std::nullopt;
  }
  const year_month_day date(std::chrono::year{year},
                            std::chrono::month{static_cast<unsigned>(month)},
                            std::chrono::day{static_cast<unsigned>(day)});
  if (!date.ok()) {
    return std::nullopt;
  }
  return FromSerial(static_cast<double>((sys_days(date) - kDayZero).count()));
}

std::optional<Date> Date::FromIso(std::string_view text) {
  const std::optional<Date> date = TakeIso(text);
  return text.empty() ? date : std::nullopt;
}

std::optional<Date> Date::FromText(std::string_view text) {
  constexpr std::size_t kYearDigits = 4;
  const bool iso = text.size() > kYearDigits && text[kYearDigits] == '-' &&
                   std::all_of(text.begin(), text.begin() + kYearDigits, IsDigit);
  const std::optional<Date> date = iso ? TakeIso(text) : TakeDayFirst(text);
  if (!date || text.empty()) {
    return date;
  }
  const int seconds = Take(text, ' ') ? TakeTime(text) : -1;
  if (seconds < 0 || !text.empty()) {
    return std::nullopt;
  }
  const double time = static_cast<double>(seconds) / kSecondsOfDay;
  return FromSerial(date->serial_ < 0 ? date->serial_ - time : date->serial_ + time);
}

int Date::Year() const { return static_cast<int>(Calendar(serial_).year()); }

int Date::Month() const {
  return static_cast<int>(static_cast<unsigned>(Calendar(serial_).month()));
}

int Date::Day() const { return static_cast<int>(static_cast<unsigned>(Calendar(serial_).day())); }

// Before 1899 too the whole part is the day: it is cut off towards zero on both sides.
Date Date::WithoutTime() const {
  Date day;
  day.serial_ = std::trunc(serial_);
  return day;
}

std::string Date::ToText() const {
  std::array<char, 10> text;
  char* at = text.data();
  Put(at, Day(), 2);
  *at++ = '/';
  Put(at, Month(), 2);
  *at++ = '/';
  Put(at, Year(), 4);
  return {text.data(), at};
}

std::string Date::ToIso() const {
  std::array<char, 19> text;
  char* at = text.data();
  Put(at, Year(), 4);
  *at++ = '-';
  Put(at, Month(), 2);
  *at++ = '-';
  Put(at, Day(), 2);
  const double time = std::abs(serial_ - std::trunc(serial_));
  // A time that would round up to midnight stays in its day.
  const int seconds =
      std::min(static_cast<int>(std::nearbyint(time * kSecondsOfDay)), kSecondsOfDay - 1);
  if (seconds != 0) {
    *at++ = ' ';
    Put(at, seconds / 3600, 2);
    *at++ = ':';
    Put(at, seconds / 60 % 60, 2);
    *at++ = ':';
    Put(at, seconds % 60, 2);
  }
  return {text.data(), at};
}

}  // namespace kal
