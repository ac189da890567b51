// Input: the bytes of one fuzz case, taken apart into values.

#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "platform/Recordset.h"
#include "platform/Variant.h"

namespace kal::fuzz {

// Ends the process, and so the case, when what must hold does not.
inline void Require(bool holds, const char* what) {
  if (!holds) {
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
  }
}

// Behind the end all bytes are 0.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

  [[nodiscard]] bool AtEnd() const { return at_ >= size_; }

  template <class T>
  T Take() {
    T value{};
    const std::size_t count = std::min(sizeof(T), size_ - at_);
    if (count > 0) {
      std::memcpy(&value, data_ + at_, count);
    }
    at_ += count;
    return value;
  }

  // A text whose first byte is its length.
  std::string Text() {
    const std::size_t count = std::min<std::size_t>(Take<std::uint8_t>(), size_ - at_);
    std::string text(count, '\0');
    std::copy_n(data_ + at_, count, text.begin());
    at_ += count;
    return text;
  }

  std::string Rest() {
    std::string text(size_ - at_, '\0');
    std::copy_n(data_ + at_, size_ - at_, text.begin());
    at_ = size_;
    return text;
  }

  // A value of any type; small numbers more often than others.
  kal::Variant Value() {
    switch (Take<std::uint8_t>() % 16) {
      case 0:
        return Null;
      case 1:
        return {};
      case 2:
        return Take<std::uint8_t>() % 2 == 0;
      case 3:
        return Take<std::int8_t>();
      case 4:
        return Take<std::int16_t>();
      case 5:
        return Take<std::int32_t>();
      case 6:
        return Take<std::int64_t>();
      case 7:
        return Take<float>();
      case 8:
        return Take<double>();
      case 9:
        return Currency::FromUnits(Take<std::int64_t>());
      case 10:
        return Decimal::FromParts(Take<std::uint32_t>(), Take<std::uint64_t>(),
                                  static_cast<std::uint8_t>(Take<std::uint8_t>() % 29),
                                  Take<std::uint8_t>() % 2 == 0);
      case 11:
        return Day();
      case 12:
      case 13:
        return Text();
      default:
        return static_cast<std::int16_t>(Take<std::uint8_t>() % 4);
    }
  }

  kal::Variant Day() {
    const std::optional<Date> date = Date::FromYmd(
        2023 + Take<std::uint8_t>() % 3, Take<std::uint8_t>() % 14, Take<std::uint8_t>() % 33);
    return date ? kal::Variant(*date) : kal::Variant("");
  }

 private:
  const std::uint8_t* data_;
  std::size_t size_;
  std::size_t at_ = 0;
};

}  // namespace kal::fuzz
