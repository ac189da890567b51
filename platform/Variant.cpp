#include "platform/Variant.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <compare>
#include <cstddef>
#include <limits>
#include <optional>
#include <type_traits>

#include "platform/Compare.h"
#include "platform/DecimalDigits.h"
#include "platform/LetterCase.h"
#include "platform/NumberText.h"
#include "platform/Quoted.h"
#include "platform/RunTimeError.h"

namespace kal {
namespace {

using Type = Variant::Type;

constexpr std::int64_t kUnit = Currency::kUnit;

constexpr int kDoubleDigits = 15;  // as many as automation shows
constexpr int kSingleDigits = 7;

// The value as the type that its VarType tells.
template <class T>
const T& Held(const Variant& value) {
  const T* held = value.As<T>();
  if (held == nullptr) {
    Raise(RunTime::InternalError, "Internal error: a variant holds another type");
  }
  return *held;
}

std::string_view TextOf(const Variant& value) { return value.AsText().value_or(""); }

bool IsWhole(Type type) { return type <= Type::BigInt && type != Type::NullValue; }

bool IsFloating(Type type) {
  return type == Type::Single || type == Type::Double || type == Type::Date;
}

// For the types of IsWhole.
std::int64_t WholeOf(const Variant& value) {
  switch (value.VarType()) {
    case Type::Boolean:
      return Held<bool>(value) ? -1 : 0;
    case Type::TinyInt:
      return Held<std::int8_t>(value);
    case Type::SmallInt:
      return Held<std::int16_t>(value);
    case Type::Integer:
      return Held<std::int32_t>(value);
    case Type::BigInt:
      return Held<std::int64_t>(value);
    default:
      return 0;
  }
}

// For every number and Empty.
double DoubleOf(const Variant& value) {
  switch (value.VarType()) {
    case Type::Single:
      return static_cast<double>(Held<float>(value));
    case Type::Double:
      return Held<double>(value);
    case Type::Date:
      return Held<Date>(value).Serial();
    case Type::Currency:
      return Held<Currency>(value).ToDouble();
    case Type::Decimal:
      return Held<Decimal>(value).ToDouble();
    default:
      return static_cast<double>(WholeOf(value));
  }
}

// For every exact number and Empty.
Decimal DecimalOfExact(const Variant& value) {
  switch (value.VarType()) {
    case Type::Currency:
      return Decimal::FromCurrency(Held<Currency>(value));
    case Type::Decimal:
      return Held<Decimal>(value);
    default:
      return Decimal::FromInteger(WholeOf(value));
  }
}

// A whole number beside an amount; one that no amount equals is decided by its sign.
std::partial_ordering CompareWithAmount(std::int64_t whole, Currency amount) {
  constexpr std::int64_t kLargest = std::numeric_limits<std::int64_t>::max() / kUnit;
  if (whole > kLargest) {
    return std::partial_ordering::greater;
  }
  if (whole < -kLargest) {
    return std::partial_ordering::less;
  }
  return whole * kUnit <=> amount.Units();
}

// At least one of the two is a text.
std::partial_ordering CompareTexts(const Variant& left, const Variant& right) {
  const auto leftText = left.AsText();
  const auto rightText = right.AsText();
  if (leftText && rightText) {
    return *leftText <=> *rightText;
  }
  if (leftText) {
    return right.IsEmpty() && leftText->empty() ? std::partial_ordering::equivalent
                                                : std::partial_ordering::greater;
  }
  return left.IsEmpty() && rightText->empty() ? std::partial_ordering::equivalent
                                              : std::partial_ordering::less;
}

// The value as error descriptions show it; not for Null.
std::string Shown(const Variant& value) {
  const auto text = value.AsText();
  return text ? Quoted(*text) : CStr(value);
}

[[noreturn]] void RaiseMismatch(const Variant& value, std::string_view wanted) {
  Raise(RunTime::TypeMismatch,
        "Type mismatch: " + Shown(value) + " is not a " + std::string(wanted));
}

[[noreturn]] void RaiseOverflow(const Variant& value, std::string_view range) {
  Raise(RunTime::Overflow,
        "Overflow: " + Shown(value) + " is outside the range of " + std::string(range));
}

void RefuseNull(const Variant& value, std::string_view wanted) {
  if (value.IsNull()) {
    Raise(RunTime::InvalidUseOfNull,
          "Invalid use of Null: a " + std::string(wanted) + " was wanted");
  }
}

NumberText NumberOf(const Variant& value) {
  const std::optional<NumberText> number = ReadNumber(TextOf(value), NumberShape::Automation);
  if (!number) {
    RaiseMismatch(value, "number");
  }
  return *number;
}

// The value rounded half to even, when it lies in the range of that integer type.
template <class Integer>
Integer ToInteger(const Variant& value, std::string_view range) {
  constexpr std::int64_t kLeast = std::numeric_limits<Integer>::min();
  constexpr std::int64_t kMost = std::numeric_limits<Integer>::max();
  RefuseNull(value, "number");
  const Type type = value.VarType();
  std::optional<std::int64_t> whole;
  if (IsWhole(type)) {
    whole = WholeOf(value);
  } else if (IsFloating(type)) {
    const double rounded = std::nearbyint(DoubleOf(value));
    if (rounded >= static_cast<double>(kLeast) && rounded <= static_cast<double>(kMost)) {
      whole = static_cast<std::int64_t>(rounded);
    }
  } else {
    whole =
        (type == Type::Text ? NumberOf(value) : DigitsOf(DecimalOfExact(value))).ScaledInteger(0);
  }
  if (!whole || *whole < kLeast || *whole > kMost) {
    RaiseOverflow(value, range);
  }
  return static_cast<Integer>(*whole);
}

// Up to so many significant digits; with an exponent when the point lies outside of them.
std::string ShowFloating(double value, int mostDigits) {
  const std::optional<NumberText> number = SignificantDigits(value, mostDigits);
  if (!number) {
    return std::isnan(value) ? "NaN" : value < 0 ? "-Infinity" : "Infinity";
  }
  if (number->WholeDigits() <= mostDigits && -number->exponent <= mostDigits) {
    return number->ToText();
  }
  std::string text = number->negative ? "-" : "";
  text += number->digits[0];
  if (number->count > 1) {
    text += '.';
    text.append(number->digits.data() + 1, number->count - 1);
  }
  const std::int64_t exponent = number->WholeDigits() - 1;
  const std::string places = std::to_string(std::abs(exponent));
  return text + (exponent < 0 ? "E-" : "E+") + (places.size() < 2 ? "0" : "") + places;
}

}  // namespace

std::partial_ordering CompareValues(const Variant& left, const Variant& right) {
  const Type leftType = left.VarType();
  const Type rightType = right.VarType();
  if (leftType == Type::Currency && rightType == Type::Currency) {
    return Held<Currency>(left) <=> Held<Currency>(right);
  }
  const bool leftIsWhole = IsWhole(leftType);
  const bool rightIsWhole = IsWhole(rightType);
  if (leftType == Type::Currency && rightIsWhole) {
    return 0 <=> CompareWithAmount(WholeOf(right), Held<Currency>(left));
  }
  if (leftIsWhole && rightIsWhole) {
    return WholeOf(left) <=> WholeOf(right);
  }
  if (leftType == Type::NullValue || rightType == Type::NullValue) {
    return std::partial_ordering::unordered;
  }
  if (leftType == Type::Text || rightType == Type::Text) {
    return CompareTexts(left, right);
  }
  if (IsFloating(leftType) || IsFloating(rightType)) {
    return DoubleOf(left) <=> DoubleOf(right);
  }
  if (leftIsWhole && rightType == Type::Currency) {
    return CompareWithAmount(WholeOf(left), Held<Currency>(right));
  }
  return DecimalOfExact(left) <=> DecimalOfExact(right);
}

namespace {

bool IsReal(const Variant& value) {
  return value.VarType() == Type::Single || value.VarType() == Type::Double;
}

float SingleOf(const Variant& value) { return static_cast<float>(DoubleOf(value)); }

// As automation compares: of two types that measure differently the coarser one decides.
std::partial_ordering CompareByRule(const Variant& left, const Variant& right) {
  const bool leftIsReal = IsReal(left);
  const bool rightIsReal = IsReal(right);
  if (leftIsReal && rightIsReal && left.VarType() != right.VarType()) {
    return SingleOf(left) <=> SingleOf(right);
  }
  if ((leftIsReal && right.VarType() == Type::Currency) ||
      (rightIsReal && left.VarType() == Type::Currency)) {
    return CCur(left) <=> CCur(right);
  }
  return CompareValues(left, right);
}

Truth TruthOf(std::partial_ordering order, bool holds) {
  return order == std::partial_ordering::unordered ? Truth::Null : Truth(holds);
}

}  // namespace

void Variant::CopyHeapText() { MakeText(TextHeld()); }

Truth EqualValues(const Variant& left, const Variant& right) {
  const auto text = left.AsText();
  const auto other = right.AsText();
  if (text && other) {
    return *text == *other;
  }
  const auto order = CompareByRule(left, right);
  return TruthOf(order, order == 0);
}

Truth operator<(const Variant& left, const Variant& right) {
  const auto order = CompareByRule(left, right);
  return TruthOf(order, order < 0);
}

Truth operator<=(const Variant& left, const Variant& right) { return Not(right < left); }

Truth operator>(const Variant& left, const Variant& right) { return right < left; }

Truth operator>=(const Variant& left, const Variant& right) { return Not(left < right); }

bool Identical(const Variant& left, const Variant& right) {
  return left.VarType() == right.VarType() &&
         (left.IsNull() || CompareValues(left, right) == std::partial_ordering::equivalent);
}

std::int16_t CInt(const Variant& value) {
  return ToInteger<std::int16_t>(value, "16-bit integers");
}

std::int32_t CLng(const Variant& value) {
  return ToInteger<std::int32_t>(value, "32-bit integers");
}

double CDbl(const Variant& value) {
  RefuseNull(value, "number");
  if (value.VarType() != Type::Text) {
    return DoubleOf(value);
  }
  const std::optional<double> number = NumberOf(value).ToDouble();
  if (!number) {
    RaiseOverflow(value, "Double");
  }
  return *number;
}

Currency CCurOfAny(const Variant& value) {
  RefuseNull(value, "number");
  const Type type = value.VarType();
  if (type == Type::Currency) {
    return Held<Currency>(value);
  }
  if (IsWhole(type)) {
    return Currency::FromInteger(WholeOf(value));
  }
  if (IsFloating(type)) {
    return Currency::FromDouble(DoubleOf(value));
  }
  if (type == Type::Decimal) {
    return Held<Decimal>(value).ToCurrency();
  }
  const std::optional<std::int64_t> units = NumberOf(value).ScaledInteger(4);
  if (!units) {
    RaiseOverflow(value, "Currency");
  }
  return Currency::FromUnits(*units);
}

// Floating-point numbers give the digits that they show.
Decimal CDec(const Variant& value) {
  RefuseNull(value, "number");
  const Type type = value.VarType();
  std::optional<NumberText> number;
  if (type == Type::Text) {
    number = NumberOf(value);
  } else if (IsFloating(type)) {
    number =
        SignificantDigits(DoubleOf(value), type == Type::Single ? kSingleDigits : kDoubleDigits);
  } else {
    return DecimalOfExact(value);
  }
  const std::optional<Decimal> decimal = number ? DecimalOf(*number) : std::nullopt;
  if (!decimal) {
    RaiseOverflow(value, "Decimal");
  }
  return *decimal;
}

bool CBoolOfAny(const Variant& value) {
  RefuseNull(value, "boolean");
  if (const auto text = value.AsText()) {
    if (SameName(*text, "true") || SameName(*text, "false")) {
      return text->size() == std::string_view("true").size();
    }
    const std::optional<NumberText> number = ReadNumber(*text, NumberShape::Automation);
    if (!number) {
      RaiseMismatch(value, "boolean");
    }
    return number->count != 0;
  }
  const Type type = value.VarType();
  if (IsWhole(type)) {
    return WholeOf(value) != 0;
  }
  if (const auto* amount = value.As<Currency>()) {
    return amount->Units() != 0;
  }
  // An exact comparison is not needed: no decimal other than 0 is 0 as a double.
  return !(DoubleOf(value) == 0.0);
}

std::string CStr(const Variant& value) {
  RefuseNull(value, "text");
  switch (value.VarType()) {
    case Type::Empty:
      return {};
    case Type::Boolean:
      return Held<bool>(value) ? "True" : "False";
    case Type::Single:
      return ShowFloating(DoubleOf(value), kSingleDigits);
    case Type::Double:
      return ShowFloating(DoubleOf(value), kDoubleDigits);
    case Type::Currency:
      return Held<Currency>(value).ToText();
    case Type::Decimal:
      return Held<Decimal>(value).ToText();
    case Type::Date:
      return Held<Date>(value).ToText();
    case Type::Text:
      return std::string(TextOf(value));
    default:
      return std::to_string(WholeOf(value));
  }
}

Date CDate(const Variant& value) {
  RefuseNull(value, "date");
  if (const auto* held = value.As<Date>()) {
    return *held;
  }
  if (const auto text = value.AsText()) {
    const std::optional<Date> date = Date::FromText(*text);
    if (!date) {
      RaiseMismatch(value, "date");
    }
    return *date;
  }
  const std::optional<Date> date = Date::FromSerial(DoubleOf(value));
  if (!date) {
    RaiseOverflow(value, "dates");
  }
  return *date;
}

bool IsDate(const Variant& value) {
  const auto text = value.AsText();
  return value.VarType() == Type::Date || (text && Date::FromText(*text).has_value());
}

std::int16_t Year(const Variant& value) { return static_cast<std::int16_t>(CDate(value).Year()); }

std::int16_t Month(const Variant& value) { return static_cast<std::int16_t>(CDate(value).Month()); }

}  // namespace kal
