// Variant: one automation value of any of the types that record sets and settings carry.
//
// Comparisons are three-valued: a comparison with Null is Null, and a Null condition does not
// hold. They return Truth, which is tested like a bool: it holds only when True. So
//
//     if (dare != 0 || dareVB != 0)     is never entered because of a Null alone,
//     if (!(codice == ""))              is entered for a Null too: the condition did not hold, and
//     if (Not(codice == ""))            is not: automation's Not of Null is Null.
//
// How two values compare:
//   - numbers, booleans (True is -1) and dates by their numeric value, exactly unless one of
//     them is a floating-point number or a date;
//   - texts exactly, byte by byte, letter case included;
//   - a text compared with a number, a boolean or a date is the greater;
//   - Empty is 0 beside a number, "" beside a text, and equals Empty.
//
// Conversions carry automation's names and raise 6 (overflow), 13 (type mismatch) or 94 (invalid
// use of Null). Empty converts as 0, "" or False.

#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include "platform/Currency.h"
#include "platform/Date.h"
#include "platform/Decimal.h"

namespace kal {

struct NullType {};
inline constexpr NullType Null;

class Truth {
 public:
  static const Truth True;
  static const Truth False;
  static const Truth Null;

  constexpr Truth(bool value) : value_(value ? 1 : 0) {}  // NOLINT(google-explicit-constructor)

  // Holds: True, and neither False nor Null.
  constexpr explicit operator bool() const { return value_ == 1; }
  [[nodiscard]] constexpr bool IsNull() const { return value_ == 2; }
  friend constexpr Truth Not(Truth truth) {
    return Truth(Raw{}, truth.value_ == 2 ? 2 : 1 - truth.value_);
  }

 private:
  struct Raw {};
  constexpr Truth(Raw, int value) : value_(value) {}

  int value_;  // 0 False, 1 True, 2 Null
};

inline constexpr Truth Truth::True{true};
inline constexpr Truth Truth::False{false};
inline constexpr Truth Truth::Null{Truth::Raw{}, 2};

class Variant {
 public:
  // In the order of the alternatives of the value held.
  enum class Type : std::uint8_t {
    Empty,
    NullValue,
    Boolean,
    TinyInt,   // 8-bit, signed
    SmallInt,  // 16-bit
    Integer,   // 32-bit
    BigInt,    // 64-bit
    Single,
    Double,
    Currency,
    Decimal,
    Date,
    Text,  // UTF-8
  };

  Variant() = default;  // Empty
  // NOLINTBEGIN(google-explicit-constructor): a value stands for its variant, as in automation.
  Variant(NullType) : value_(kal::Null) {}
  Variant(bool value) : value_(value) {}
  Variant(std::int8_t value) : value_(value) {}
  Variant(std::int16_t value) : value_(value) {}
  Variant(std::int32_t value) : value_(value) {}
  Variant(std::int64_t value) : value_(value) {}
  Variant(float value) : value_(value) {}
  Variant(double value) : value_(value) {}
  Variant(kal::Currency value) : value_(value) {}
  Variant(kal::Decimal value) : value_(value) {}
  Variant(kal::Date value) : value_(value) {}
  Variant(std::string value) : value_(std::move(value)) {}
  Variant(std::string_view value) : value_(std::string(value)) {}
  Variant(const char* value) : value_(std::string(value)) {}
  // NOLINTEND(google-explicit-constructor)
  Variant(const void*) = delete;  // no pointer is a boolean

  // gcc 12 destroys a value that was never made when std::variant's own copy constructor runs out
  // of memory; its assignment does not.
  Variant(const Variant& other) : Variant() { value_ = other.value_; }
  Variant(Variant&&) noexcept = default;
  Variant& operator=(const Variant&) = default;
  Variant& operator=(Variant&&) noexcept = default;
  ~Variant() = default;

  [[nodiscard]] Type VarType() const { return static_cast<Type>(value_.index()); }
  [[nodiscard]] bool IsNull() const { return VarType() == Type::NullValue; }
  [[nodiscard]] bool IsEmpty() const { return VarType() == Type::Empty; }

  // The value when it is held as exactly that C++ type, nullptr otherwise.
  template <class T>
  [[nodiscard]] const T* As() const {
    return std::get_if<T>(&value_);
  }

 private:
  std::variant<std::monostate, NullType, bool, std::int8_t, std::int16_t, std::int32_t,
               std::int64_t, float, double, kal::Currency, kal::Decimal, kal::Date, std::string>
      value_;
};

Truth operator==(const Variant& left, const Variant& right);
Truth operator!=(const Variant& left, const Variant& right);
Truth operator<(const Variant& left, const Variant& right);
Truth operator<=(const Variant& left, const Variant& right);
Truth operator>(const Variant& left, const Variant& right);
Truth operator>=(const Variant& left, const Variant& right);

// Same type and same value, Null and Empty included: for tests and containers, not for rules.
[[nodiscard]] bool Identical(const Variant& left, const Variant& right);

// Numbers, from numbers, booleans (True is -1) and texts that are numbers: blanks around, a sign
// in front or behind, digits with thousands commas, a decimal point, an exponent. Fractions round
// half to even. Dates convert by their serial.
[[nodiscard]] std::int16_t CInt(const Variant& value);
[[nodiscard]] std::int32_t CLng(const Variant& value);
[[nodiscard]] double CDbl(const Variant& value);
[[nodiscard]] Currency CCur(const Variant& value);
[[nodiscard]] Decimal CDec(const Variant& value);
// Any number other than 0 is True; the texts True and False in any letter case, or a number.
[[nodiscard]] bool CBool(const Variant& value);
// Dates as dd/mm/yyyy, booleans as True/False, numbers with a point and as short as exact.
[[nodiscard]] std::string CStr(const Variant& value);
// From dates, texts that are dates, and numbers as serials. The empty text raises 13.
[[nodiscard]] Date CDate(const Variant& value);

// Whether the value is a date or a text that is one; a number is not.
[[nodiscard]] bool IsDate(const Variant& value);

// Year and month number of CDate(value), with its errors.
[[nodiscard]] std::int16_t Year(const Variant& value);
[[nodiscard]] std::int16_t Month(const Variant& value);

}  // namespace kal
