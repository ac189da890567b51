// Conversions: what goes to a text and back is the same, and two ways to one answer agree.

#include <cmath>
#include <functional>

#include "fuzz/Input.h"
#include "platform/RunTimeError.h"

namespace {

using kal::fuzz::Require;
using namespace kal;

// The value as text, or the number of the error.
template <class Convert>
std::string Outcome(Convert&& convert) {
  try {
    return CStr(convert());
  } catch (const RunTimeError& error) {
    const std::int32_t n = error.Number();
    Require(n == 6 || n == 13 || n == 94, "conversions fail with 6, 13 or 94");
    return "error " + std::to_string(n);
  }
}

void RoundTrips(fuzz::Input& input) {
  const Currency amount = Currency::FromUnits(input.Take<std::int64_t>());
  Require(CCur(CStr(amount)) == amount, "an amount's text is the amount");
  Require(Currency::FromExactText(amount.ToText()) == amount, "and its exact text");
  Require(Currency::FromExactText(amount.ToFixedText()) == amount, "and its fixed text");
  Require(Decimal::FromCurrency(amount).ToCurrency() == amount, "and its decimal");
  Require(CDec(CStr(amount)) == Decimal::FromCurrency(amount), "the decimal of its text too");
  const double number = input.Take<double>();
  // The shown digits of the very largest numbers, rounded up, are no number any more.
  constexpr double kLargestShown = 1.797693134862315e308;
  if (std::abs(number) <= kLargestShown) {
    const double again = CDbl(CStr(number));
    Require(std::abs(again - number) <= std::abs(number) * 1e-14, "a number's text is near it");
    Require(CStr(again) == CStr(number), "and has the same text");
    if (const std::optional<Date> date = Date::FromSerial(number)) {
      const Date day = CDate(CStr(*date));
      Require(Date::FromYmd(date->Year(), date->Month(), date->Day()) == day, "a date's day");
      Require(Date::FromIso(day.ToIso()) == day, "a day's ISO text");
    }
  }
}

void Agree(const Variant& value) {
  const std::string asLong = Outcome([&] { return Variant(CLng(value)); });
  const std::string asShort = Outcome([&] { return Variant(CInt(value)); });
  Require(asShort == asLong || asShort == "error 6", "16 and 32 bits agree where both fit");
  // From the value and from its exact text.
  const bool exact = value.As<Currency>() != nullptr || value.As<Decimal>() != nullptr ||
                     value.As<std::int64_t>() != nullptr || value.As<std::int32_t>() != nullptr;
  if (exact) {
    const Variant text = CStr(value);
    Require(Outcome([&] { return Variant(CLng(text)); }) == asLong, "CLng of the text");
    Require(Outcome([&] { return Variant(CCur(text)); }) ==
                Outcome([&] { return Variant(CCur(value)); }),
            "CCur of the text");
    Require(bool(CDec(text) == CDec(value)), "CDec of the text");
  }
  (void)Outcome([&] { return Variant(CBool(value)); });
  (void)Outcome([&] { return Variant(CDbl(value)); });
  (void)Outcome([&] { return Variant(CDate(value)); });
  (void)Outcome([&] { return Variant(CDec(value)); });
  const std::string year = Outcome([&] { return Variant(Year(value)); });
  Require(!IsDate(value) || !year.starts_with("error"), "a date has a year");
}

void Compare(const Variant& a, const Variant& b) {
  const Truth less = a < b;
  const Truth equal = a == b;
  const Truth greater = a > b;
  Require(less.IsNull() == equal.IsNull() && less.IsNull() == greater.IsNull(), "Null together");
  Require(less.IsNull() || int(bool(less)) + int(bool(equal)) + int(bool(greater)) == 1,
          "one of less, equal, greater");
  Require(bool(less) == bool(b > a) && bool(equal) == bool(b == a), "both ways round");
  Require(bool(a <= b) == (less || equal) && bool(a != b) == (!equal.IsNull() && !bool(equal)),
          "the other operators");
  Require(!Identical(a, b) || equal.IsNull() || equal || a.As<double>() || a.As<float>(),
          "the same is equal");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  RoundTrips(input);
  const Variant a = input.Value();
  const Variant b = input.Value();
  Agree(a);
  Agree(b);
  Compare(a, b);
  const std::string rest = input.Rest();
  Agree(Variant(rest));
  if (const auto amount = Currency::FromExactText(rest)) {
    Require(CCur(rest) == *amount, "an exact amount is the amount");
  }
  return 0;
}
