// Values and error numbers on their way between automation and the core.

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

#include "platform/RunTimeError.h"
#include "server/Boundary.h"
#include "server/Conversion.h"
#include "tests/windows/Doubles.h"

namespace kal::test {
namespace {

TEST(Values, AreTheSameThereAndBack) {
  struct Row {
    const char* name;
    Variant value;
    VARTYPE type;
  };
  constexpr auto kLeast = std::numeric_limits<std::int64_t>::min();
  const Row rows[] = {
      {"empty", Variant(), VT_EMPTY},
      {"null", Null, VT_NULL},
      {"true", true, VT_BOOL},
      {"false", false, VT_BOOL},
      {"8 bits", std::int8_t{-128}, VT_I1},
      {"16 bits", std::int16_t{-32768}, VT_I2},
      {"32 bits", std::int32_t{-2147483647 - 1}, VT_I4},
      {"64 bits", kLeast, VT_I8},
      {"single", 0.1F, VT_R4},
      {"double", 1.005, VT_R8},
      {"least amount", Currency::FromUnits(kLeast), VT_CY},
      {"a ten-thousandth", Currency::FromUnits(-1), VT_CY},
      {"largest decimal", Decimal::FromText("-79228162514264337593543950335").value(), VT_DECIMAL},
      {"28 decimals", Decimal::FromText("0.0000000000000000000000000001").value(), VT_DECIMAL},
      {"date and time", Date::FromText("15/03/2024 12:00").value(), VT_DATE},
      {"before 1900", Date::FromSerial(-1.25).value(), VT_DATE},
      {"text", "Città \U0001F4D2 €", VT_BSTR},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    const ScopedVariant outside = ToVariant(row.value);
    EXPECT_EQ(outside->vt, row.type);
    EXPECT_TRUE(Identical(FromVariant(*outside), row.value));
    VARIANT reference{};
    reference.vt = VT_BYREF | VT_VARIANT;
    reference.pvarVal = const_cast<VARIANT*>(&*outside);
    EXPECT_TRUE(Identical(FromVariant(reference), row.value)) << "by reference";
  }
  EXPECT_EQ(ToVariant(true)->boolVal, -1);
}

// clang-format off
TEST(Values, OfOtherTypesBecomeTheNearest) {
  const auto object = MakeDouble("Object", {Answers("Value", DISPATCH_PROPERTYGET, 0, [](auto) { return Variant("inner"); })});
  const auto nested = MakeDouble("Object", {Answers("Value", DISPATCH_PROPERTYGET, 0, [&object](auto) { return object; })});
  LONG number = 7;
  const auto expect = [](VARTYPE type, const std::function<void(VARIANT&)>& fill, const char* expected) {
    VARIANT value{};
    fill(value);
    value.vt = type;
    const std::string shown = TextOrError([&] { return Shown(FromVariant(value)); });
    EXPECT_EQ(shown.substr(0, shown.find(" '")), expected);  // type and value
  };
  expect(VT_UI1, [](VARIANT& it) { it.bVal = 255; }, "4:255");
  expect(VT_UI2, [](VARIANT& it) { it.uiVal = 65535; }, "5:65535");
  expect(VT_UI4, [](VARIANT& it) { it.ulVal = 4294967295U; }, "6:4294967295");
  expect(VT_UI8, [](VARIANT& it) { it.ullVal = INT64_MAX; }, "6:9223372036854775807");
  expect(VT_UI8, [](VARIANT& it) { it.ullVal = UINT64_MAX; }, "10:18446744073709551615");
  expect(VT_INT, [](VARIANT& it) { it.intVal = -3; }, "5:-3");
  expect(VT_UINT, [](VARIANT& it) { it.uintVal = 4294967295U; }, "6:4294967295");
  expect(VT_BYREF | VT_I4, [&](VARIANT& it) { it.plVal = &number; }, "5:7");
  expect(VT_BSTR, [](VARIANT& it) { it.bstrVal = nullptr; }, "12:");
  expect(VT_BOOL, [](VARIANT& it) { it.boolVal = 1; }, "2:True");
  expect(VT_DISPATCH, [&](VARIANT& it) { it.pdispVal = object.Get(); }, "12:inner");
  expect(VT_DISPATCH, [&](VARIANT& it) { it.pdispVal = nested.Get(); }, "Error 13");
  expect(VT_DISPATCH, [](VARIANT& it) { it.pdispVal = nullptr; }, "Error 91");
  expect(VT_ERROR, [](VARIANT& it) { it.scode = DISP_E_PARAMNOTFOUND; }, "Error 13");
  expect(VT_ARRAY | VT_I4, [](VARIANT& it) { it.parray = nullptr; }, "Error 13");
  expect(VT_DATE, [](VARIANT& it) { it.date = -700000; }, "Error 6");  // before the calendar
  expect(VT_DATE, [](VARIANT& it) { it.date = HUGE_VAL; }, "Error 6");
  expect(VT_DECIMAL, [](VARIANT& it) { it.decVal.scale = 29; }, "Error 6");
}
// clang-format on

TEST(Guarded, LetsNothingElseOut) {
  const auto expect = [](const std::function<void()>& body, std::uint32_t result,
                         const char* description) {
    EXPECT_EQ(Guarded(body), static_cast<HRESULT>(result));
    ComPtr<IErrorInfo> error;
    ASSERT_EQ(GetErrorInfo(0, error.Put()), S_OK);
    ScopedVariant text = ToVariant("");
    error->GetDescription(&text->bstrVal);
    EXPECT_EQ(CStr(FromVariant(*text)), description);
  };
  expect([] { throw std::bad_alloc(); }, 0x800A0007, "Out of memory");
  expect([] { throw 5; }, 0x800A0033, "Internal error");
  expect([] { throw RunTimeError(-2147217900, "A", "B"); }, 0x80040E14, "B");
}

}  // namespace
}  // namespace kal::test
