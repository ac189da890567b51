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
//   - an amount and a floating-point number as amounts, so a number that is none raises 6; single
//     and double precision at single precision;
//   - texts exactly, byte by byte, letter case included;
//   - a text compared with a number, a boolean or a date is the greater;
//   - Empty is 0 beside a number, "" beside a text, and equals Empty.
//
// Conversions carry automation's names and raise 6 (overflow), 13 (type mismatch) or 94 (invalid
// use of Null). Empty converts as 0, "" or False.

#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

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
  Variant(NullType /*null*/) { cell_.type = Type::NullValue; }
  Variant(bool value) { Make(value); }
  Variant(std::int8_t value) { Make(value); }
  Variant(std::int16_t value) { Make(value); }
  Variant(std::int32_t value) { Make(value); }
  Variant(std::int64_t value) { Make(value); }
  Variant(float value) { Make(value); }
  Variant(double value) { Make(value); }
  Variant(kal::Currency value) { Make(value); }
  Variant(kal::Decimal value) { Make(value); }
  Variant(kal::Date value) { Make(value); }
  Variant(std::string_view value) { MakeText(value); }
  Variant(const std::string& value) : Variant(std::string_view(value)) {}
  Variant(const char* value) : Variant(std::string_view(value)) {}
  // NOLINTEND(google-explicit-constructor)
  Variant(const void*) = delete;  // no pointer is a boolean

  Variant(const Variant& other) : cell_(other.cell_) {
    if (IsOnHeap()) {
      CopyHeapText();
    }
  }
  // What was moved from is Empty.
  Variant(Variant&& other) noexcept : cell_(other.cell_) { other.cell_.type = Type::Empty; }
  Variant& operator=(const Variant& other) { return *this = Variant(other); }
  Variant& operator=(Variant&& other) noexcept {
    if (this != &other) {
      Clear();
      cell_ = other.cell_;
      other.cell_.type = Type::Empty;
    }
    return *this;
  }
  ~Variant() { Clear(); }

  [[nodiscard]] Type VarType() const { return cell_.type; }
  [[nodiscard]] bool IsNull() const { return cell_.type == Type::NullValue; }
  [[nodiscard]] bool IsEmpty() const { return cell_.type == Type::Empty; }

  // The value when it is held as exactly that C++ type, nullptr otherwise.
  template <class T>
  [[nodiscard]] const T* As() const {
    return cell_.type == TypeFor<T>() ? &Held<T>() : nullptr;
  }
  // The number when it is held in 16 or 32 bits, as most numbers of an entry are.
  [[nodiscard]] std::optional<std::int32_t> AsInteger() const {
    switch (cell_.type) {
      case Type::SmallInt:
        return Held<std::int16_t>();
      case Type::Integer:
        return Held<std::int32_t>();
      default:
        return std::nullopt;
    }
  }
  // The text when it is one; valid as long as the variant stays as and where it is.
  [[nodiscard]] std::optional<std::string_view> AsText() const {
    return cell_.type == Type::Text ? std::optional(TextHeld()) : std::nullopt;
  }

 private:
  template <class T>
  static consteval Type TypeFor() {
    if constexpr (std::is_same_v<T, bool>) {
      return Type::Boolean;
    } else if constexpr (std::is_same_v<T, std::int8_t>) {
      return Type::TinyInt;
    } else if constexpr (std::is_same_v<T, std::int16_t>) {
      return Type::SmallInt;
    } else if constexpr (std::is_same_v<T, std::int32_t>) {
      return Type::Integer;
    } else if constexpr (std::is_same_v<T, std::int64_t>) {
      return Type::BigInt;
    } else if constexpr (std::is_same_v<T, float>) {
      return Type::Single;
    } else if constexpr (std::is_same_v<T, double>) {
      return Type::Double;
    } else if constexpr (std::is_same_v<T, kal::Currency>) {
      return Type::Currency;
    } else if constexpr (std::is_same_v<T, kal::Decimal>) {
      return Type::Decimal;
    } else {
      static_assert(std::is_same_v<T, kal::Date>, "a variant holds no such type");
      return Type::Date;
    }
  }

  template <class T>
  [[nodiscard]] const T& Held() const {
    return *std::launder(reinterpret_cast<const T*>(cell_.bytes));
  }

  struct HeapText {
    char* text;
    std::size_t size;
  };

  // A variant is 24 bytes and most copies are plain: cells of record sets are copied more often
  // than anything else is done with them, and in large sets their size is what a walk waits for.
  // The last byte of a text tells its size, or that it stands on the heap.
  static constexpr std::size_t kSize = 23;
  static constexpr std::size_t kLongestInside = kSize - 1;
  static constexpr std::byte kOnHeap{0xFF};

  template <class T>
  void Make(T value) {
    static_assert(std::is_trivially_copyable_v<T> && sizeof(T) < kSize);
    ::new (cell_.bytes) T(value);
    cell_.type = TypeFor<T>();
  }
  // The variant must be Empty; it still is when there is no memory for the text.
  void MakeText(std::string_view text) {
    if (text.size() <= kLongestInside) {
      std::copy_n(text.data(), text.size(), reinterpret_cast<char*>(cell_.bytes));
      cell_.bytes[kLongestInside] = static_cast<std::byte>(text.size());
    } else {
      char* copy = std::allocator<char>().allocate(text.size());
      std::copy_n(text.data(), text.size(), copy);
      ::new (cell_.bytes) HeapText{copy, text.size()};
      cell_.bytes[kLongestInside] = kOnHeap;
    }
    cell_.type = Type::Text;
  }
  [[nodiscard]] bool IsOnHeap() const {
    return cell_.type == Type::Text && cell_.bytes[kLongestInside] == kOnHeap;
  }
  [[nodiscard]] const HeapText& OnHeap() const { return Held<HeapText>(); }
  [[nodiscard]] std::string_view TextHeld() const {
    return cell_.bytes[kLongestInside] == kOnHeap
               ? std::string_view(OnHeap().text, OnHeap().size)
               : std::string_view(reinterpret_cast<const char*>(cell_.bytes),
                                  static_cast<std::size_t>(cell_.bytes[kLongestInside]));
  }
  // Gives a variant that holds another one's text a copy of its own. It stands elsewhere because
  // few texts are so long, and every copy of a value would carry it.
  void CopyHeapText();
  void Clear() {
    if (IsOnHeap()) {
      std::allocator<char>().deallocate(OnHeap().text, OnHeap().size);
    }
  }

  // Bytes and type are copied as one: a copy that is taken in other pieces than the last one was
  // written in waits until those have reached the cache.
  struct Cell {
    alignas(std::int64_t) std::byte bytes[kSize] = {};
    Type type = Type::Empty;
  };
  Cell cell_;
};

// What == finds for any two values.
Truth EqualValues(const Variant& left, const Variant& right);
inline Truth operator==(const Variant& left, const Variant& right) {
  // Mostly two numbers, or an amount beside 0.
  if (const auto number = right.AsInteger()) {
    if (const auto other = left.AsInteger()) {
      return *other == *number;
    }
    if (const auto* amount = left.As<Currency>()) {
      return *amount == Currency::FromUnits(std::int64_t{*number} * Currency::kUnit);
    }
  }
  return EqualValues(left, right);
}
inline Truth operator!=(const Variant& left, const Variant& right) { return Not(left == right); }
Truth operator<(const Variant& left, const Variant& right);
Truth operator<=(const Variant& left, const Variant& right);
Truth operator>(const Variant& left, const Variant& right);
Truth operator>=(const Variant& left, const Variant& right);

// Makes a date its calendar day; any other value stays as it is. In place: most values are none,
// and are read too often to be copied for it.
inline void DropTime(Variant& value) {
  if (const auto* date = value.As<Date>()) {
    value = date->WithoutTime();
  }
}

// Same type and same value, Null and Empty included: for tests and containers, not for rules.
[[nodiscard]] bool Identical(const Variant& left, const Variant& right);

// Numbers, from numbers, booleans (True is -1) and texts that are numbers: blanks around, a sign
// in front or behind, digits with thousands commas, a decimal point, an exponent. Fractions round
// half to even. Dates convert by their serial.
[[nodiscard]] std::int16_t CInt(const Variant& value);
[[nodiscard]] std::int32_t CLng(const Variant& value);
[[nodiscard]] double CDbl(const Variant& value);
[[nodiscard]] Currency CCurOfAny(const Variant& value);
[[nodiscard]] inline Currency CCur(const Variant& value) {
  const auto* amount = value.As<Currency>();
  return amount != nullptr ? *amount : CCurOfAny(value);
}
[[nodiscard]] Decimal CDec(const Variant& value);
// Any number other than 0 is True; the texts True and False in any letter case, or a number.
[[nodiscard]] bool CBoolOfAny(const Variant& value);
[[nodiscard]] inline bool CBool(const Variant& value) {
  const bool* flag = value.As<bool>();
  return flag != nullptr ? *flag : CBoolOfAny(value);
}
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
