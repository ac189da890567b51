// Conversion: automation's values as the core's, and back. The only place where the two meet.
//
// Nothing is rounded on the way: amounts stay ten-thousandths, decimals stay decimals, dates stay
// serial numbers. Texts are UTF-8 in the core and UTF-16 outside; a null text is the empty one.
// Outside they may hold what is no character, halves of pairs and single bytes: that passes
// unchanged.

#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/Currency.h"
#include "platform/Variant.h"
#include "server/Automation.h"
#include "server/ComPtr.h"

namespace kal {

// A VARIANT that is cleared when it goes out of scope.
class ScopedVariant {
 public:
  ScopedVariant() noexcept { VariantInit(&value_); }
  ScopedVariant(const ScopedVariant&) = delete;
  ScopedVariant(ScopedVariant&& other) noexcept : value_(other.value_) {
    VariantInit(&other.value_);
  }
  ScopedVariant& operator=(const ScopedVariant&) = delete;
  ScopedVariant& operator=(ScopedVariant&&) = delete;
  ~ScopedVariant() { VariantClear(&value_); }

  [[nodiscard]] VARIANT& operator*() noexcept { return value_; }
  [[nodiscard]] const VARIANT& operator*() const noexcept { return value_; }
  VARIANT* operator->() noexcept { return &value_; }
  const VARIANT* operator->() const noexcept { return &value_; }

 private:
  VARIANT value_;
};

[[nodiscard]] std::string ToUtf8(std::wstring_view text);
[[nodiscard]] std::wstring ToUtf16(std::string_view text);
[[nodiscard]] std::string FromBstr(BSTR text);

// What the component answers. A text belongs to the caller; raises 7.
[[nodiscard]] BSTR ToAutomation(std::string_view text);
[[nodiscard]] inline VARIANT_BOOL ToAutomation(bool value) {
  return value ? VARIANT_TRUE : VARIANT_FALSE;
}
[[nodiscard]] inline LONG ToAutomation(std::int32_t value) { return value; }
[[nodiscard]] inline CY ToAutomation(Currency amount) {
  CY result{};
  result.int64 = amount.Units();
  return result;
}

[[nodiscard]] ScopedVariant ToVariant(const Variant& value);
[[nodiscard]] ScopedVariant ToVariant(const ComPtr<IDispatch>& object);

// References are followed, and an object stands for its default property. Unsigned numbers become
// the smallest type that holds them all. Raises 13 for what is no value of the rules (arrays,
// errors, missing arguments), 6 for a date outside of the calendar, 91 for Nothing.
[[nodiscard]] Variant FromVariant(const VARIANT& value);

}  // namespace kal
