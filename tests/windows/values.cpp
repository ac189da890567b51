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

std::string FromOrError(const VARIANT& value) {
  try {
    return Shown(FromVariant(value));
  } catch (const RunTimeError& error) {
    return "Error " + std::to_string(error.Number());
  }
}

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
      {"empty text", "", VT_BSTR},
      {"text", "Città \U0001F4D2 €", VT_BSTR},
      {"text with a zero", std::string("a\0b", 3), VT_BSTR},
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

TEST(Values, OfOtherTypesBecomeTheNearest) {
  using Fill = std::function<void(VARIANT&)>;
  const auto object = MakeDouble(
      "Object", {{L"Value", DISPATCH_PROPERTYGET, 0, [](auto) { return ToVariant("inner"); }}});
  const auto nested = MakeDouble("Object", {{L"Value", DISPATCH_PROPERTYGET, 0,
                                             [&object](auto) { return ToVariant(object); }}});
  LONG number = 7;
  struct Row {
    const char* name;
    VARTYPE type;
    Fill fill;
    const char* expected;  // type and value
  };
  const Row rows[] = {
      {"unsigned 8 bits", VT_UI1, [](VARIANT& it) { it.bVal = 255; }, "4:255"},
      {"unsigned 16 bits", VT_UI2, [](VARIANT& it) { it.uiVal = 65535; }, "5:65535"},
      {"unsigned 32 bits", VT_UI4, [](VARIANT& it) { it.ulVal = 4294967295U; }, "6:4294967295"},
      {"unsigned, fits", VT_UI8, [](VARIANT& it) { it.ullVal = INT64_MAX; },
       "6:9223372036854775807"},
      {"unsigned 64 bits", VT_UI8, [](VARIANT& it) { it.ullVal = UINT64_MAX; },
       "10:18446744073709551615"},
      {"machine integer", VT_INT, [](VARIANT& it) { it.intVal = -3; }, "5:-3"},
      {"number by reference", VT_BYREF | VT_I4, [&](VARIANT& it) { it.plVal = &number; }, "5:7"},
      {"null text", VT_BSTR, [](VARIANT& it) { it.bstrVal = nullptr; }, "12:"},
      {"any true", VT_BOOL, [](VARIANT& it) { it.boolVal = 1; }, "2:True"},
      {"object", VT_DISPATCH, [&](VARIANT& it) { it.pdispVal = object.Get(); }, "12:inner"},
      {"object in an object", VT_DISPATCH, [&](VARIANT& it) { it.pdispVal = nested.Get(); },
       "Error 13"},
      {"Nothing", VT_DISPATCH, [](VARIANT& it) { it.pdispVal = nullptr; }, "Error 91"},
      {"missing argument", VT_ERROR, [](VARIANT& it) { it.scode = DISP_E_PARAMNOTFOUND; },
       "Error 13"},
      {"array", VT_ARRAY | VT_I4, [](VARIANT& it) { it.parray = nullptr; }, "Error 13"},
      {"date before the calendar", VT_DATE, [](VARIANT& it) { it.date = -700000; }, "Error 6"},
      {"date without end", VT_DATE, [](VARIANT& it) { it.date = HUGE_VAL; }, "Error 6"},
      {"decimal of too many places", VT_DECIMAL,
       [](VARIANT& it) {
         it.decVal.scale = 29;
         it.vt = VT_DECIMAL;
       },
       "Error 6"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    VARIANT value{};
    value.vt = row.type;
    row.fill(value);
    EXPECT_EQ(FromOrError(value), row.expected);
  }
}

TEST(ErrorNumbers, AreWhatHostsExpect) {
  struct Row {
    std::int32_t number;
    std::uint32_t result;
    std::int32_t seen;  // by the component, when the host raises that result
  };
  constexpr Row kRows[] = {
      {6, 0x800A0006, 6},
      {3265, 0x800A0CC1, 3265},
      {65535, 0x800AFFFF, 65535},
      {65536, 0x80004005, -2147467259},
      {0, 0x80004005, -2147467259},
      {-2147467259, 0x80004005, -2147467259},
      {-2147217900, 0x80040E14, -2147217900},
  };
  for (const Row& row : kRows) {
    EXPECT_EQ(ResultOfNumber(row.number), static_cast<HRESULT>(row.result)) << row.number;
    EXPECT_EQ(NumberOfResult(static_cast<HRESULT>(row.result)), row.seen) << row.number;
  }
  EXPECT_EQ(NumberOfResult(E_OUTOFMEMORY), 7);
  EXPECT_EQ(NumberOfResult(DISP_E_TYPEMISMATCH), 13);
  EXPECT_EQ(NumberOfResult(DISP_E_UNKNOWNNAME), 438);
}

TEST(Guarded, LetsNothingElseOut) {
  struct Row {
    const char* name;
    std::function<void()> body;
    std::uint32_t result;
    const char* description;
  };
  const Row rows[] = {
      {"memory", [] { throw std::bad_alloc(); }, 0x800A0007, "Out of memory"},
      {"library", [] { (void)std::string().at(1); }, 0x800A0033, nullptr},
      {"anything", [] { throw 5; }, 0x800A0033, "Internal error"},
      {"negative", [] { throw RunTimeError(-2147217900, "A", "B"); }, 0x80040E14, "B"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(Guarded(row.body), static_cast<HRESULT>(row.result));
    ComPtr<IErrorInfo> error;
    ASSERT_EQ(GetErrorInfo(0, error.Put()), S_OK);
    ScopedVariant text;
    error->GetDescription(&text->bstrVal);
    text->vt = VT_BSTR;
    if (row.description != nullptr) {
      EXPECT_EQ(CStr(FromVariant(*text)), row.description);
    }
  }
}

}  // namespace
}  // namespace kal::test
