// Values: conversions, comparisons, amounts, decimals and dates, on both sides of every edge.

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "platform/Recordset.h"
#include "platform/RunTimeError.h"
#include "platform/Variant.h"

namespace kal {
namespace {

constexpr auto kUp = std::numeric_limits<double>::infinity();

// The text of the answer, or the number of the error that it raises.
std::string Outcome(const std::function<std::string()>& question) {
  try {
    return question();
  } catch (const RunTimeError& error) {
    return "error " + std::to_string(error.Number());
  }
}

std::string Convert(std::string_view target, const Variant& value) {
  return Outcome([&]() -> std::string {
    if (target == "CInt") return CStr(CInt(value));
    if (target == "CLng") return CStr(CLng(value));
    if (target == "CDbl") return CStr(CDbl(value));
    if (target == "CCur") return CStr(CCur(value));
    if (target == "CDec") return CStr(CDec(value));
    if (target == "CBool") return CStr(CBool(value));
    if (target == "CDate") return CDate(value).ToIso();
    if (target == "IsDate") return CStr(IsDate(value));
    if (target == "Year") return CStr(Year(value));
    if (target == "Month") return CStr(Month(value));
    return target == "CStr" ? CStr(value) : "no such conversion";
  });
}

Currency Amount(std::string_view text) { return Currency::FromExactText(text).value(); }
Decimal Dec(std::string_view text) { return Decimal::FromText(text).value(); }
Date Day(std::string_view iso) { return Date::FromIso(iso).value(); }

// Texts on both sides of the size up to which they stand inside the variant.
TEST(Values, KeepTextsOfAnySize) {
  for (const std::size_t size : {0U, 1U, 21U, 22U, 23U, 24U, 255U, 256U, 100000U}) {
    std::string text(size, 'x');
    if (size > 1) {
      text[size / 2] = '\0';
      text.back() = '\xFF';
    }
    Variant value = text;
    const Variant copy = value;
    Variant& same = value;
    value = same;
    EXPECT_EQ(CStr(value), text);
    Variant moved = std::move(value);
    value = Variant("another text, which is longer than a variant");
    EXPECT_TRUE(Identical(moved, copy)) << size;
    moved = value;
    EXPECT_EQ(CStr(moved), "another text, which is longer than a variant");
    moved = Variant(1);
    EXPECT_EQ(CStr(copy), text);
    EXPECT_EQ(moved.AsText(), std::nullopt);
  }
}

TEST(Values, Conversions) {
  struct Row {
    const char* target;
    Variant value;
    const char* expected;
  };
  const std::vector<Row> rows = {
      // Half to even, and the ends of the range.
      {"CInt", 32766.5, "32766"},
      {"CInt", 32767.4999, "32767"},
      {"CInt", 32767.5, "error 6"},
      {"CInt", -32768.5, "-32768"},
      {"CInt", -32768.51, "error 6"},
      {"CInt", 0.5, "0"},
      {"CInt", 1.5, "2"},
      {"CInt", -2.5, "-2"},
      {"CInt", 2.5F, "2"},
      {"CInt", std::nan(""), "error 6"},
      {"CInt", 32768, "error 6"},
      {"CInt", std::int64_t{-32768}, "-32768"},
      {"CInt", true, "-1"},
      {"CInt", Amount("2.5"), "2"},
      {"CInt", Amount("2.5001"), "3"},
      {"CInt", Dec("0.500000000000000000000000001"), "1"},
      {"CInt", Dec("0.5"), "0"},
      {"CInt", "32767.5", "error 6"},
      {"CInt", "-32768.5", "-32768"},
      {"CInt", Day("1900-01-01"), "2"},
      {"CInt", Variant(), "0"},
      {"CInt", Null, "error 94"},
      {"CLng", 2147483646.5, "2147483646"},
      {"CLng", 2147483647.5, "error 6"},
      {"CLng", -2147483648.5, "-2147483648"},
      {"CLng", "2147483647.5", "error 6"},
      {"CLng", "2147483647.4999999999999999999999999999999999999999999999", "2147483647"},
      {"CLng", std::int64_t{2147483648}, "error 6"},
      {"CLng", Amount("922337203685477.5807"), "error 6"},
      // What is a number.
      {"CLng", " 1,234 ", "1234"},
      {"CLng", "12-", "-12"},
      {"CLng", "+12", "12"},
      {"CLng", "1.5e1", "15"},
      {"CLng", "1E-400", "0"},
      {"CLng", ".5", "0"},
      {"CLng", "", "error 13"},
      {"CLng", "-", "error 13"},
      {"CLng", ".", "error 13"},
      {"CLng", "-1-", "error 13"},
      {"CLng", ",1", "error 13"},
      {"CLng", "1e", "error 13"},
      {"CLng", "1 2", "error 13"},
      {"CLng", "abc", "error 13"},
      {"CDbl", "0.1", "0.1"},
      {"CDbl", "1e308", "1E+308"},
      {"CDbl", "1e309", "error 6"},
      {"CDbl", "-1e-400", "0"},
      {"CDbl", Amount("-0.0001"), "-0.0001"},
      {"CDbl", Dec("79228162514264337593543950335"), "7.92281625142643E+28"},
      {"CDbl", Null, "error 94"},
      {"CStr", -1.7976931348623157e308, "-1.79769313486232E+308"},  // rounded up, so that
      {"CDbl", "-1.79769313486232E+308", "error 6"},                // it is no number any more
      {"CCur", "922337203685477.5807", "922337203685477.5807"},
      {"CCur", "922337203685477.58074999", "922337203685477.5807"},
      {"CCur", "922337203685477.58075", "error 6"},
      {"CCur", "-922337203685477.5808", "-922337203685477.5808"},
      {"CCur", "-922337203685477.58085", "-922337203685477.5808"},
      {"CCur", "-922337203685477.58086", "error 6"},
      {"CCur", "0.00005", "0"},
      {"CCur", "0.00015", "0.0002"},
      {"CCur", "0.000050000000000000000000000000000000000000000000000001", "0.0001"},
      {"CCur", "1,000.5-", "-1000.5"},
      {"CCur", 1.005, "1.005"},
      {"CCur", 0.00005, "0"},
      {"CCur", 100.00005, "100"},
      {"CCur", 922337203685477.0, "922337203685477"},
      {"CCur", 922337203685477.5, "922337203685477.5"},
      {"CCur", -922337203685477.625, "error 6"},
      {"CCur", 922337203685478.0, "error 6"},
      {"CCur", -kUp, "error 6"},
      {"CCur", 0.1F, "0.1"},
      {"CCur", std::int64_t{922337203685477}, "922337203685477"},
      {"CCur", std::int64_t{922337203685478}, "error 6"},
      {"CCur", std::int64_t{-922337203685478}, "error 6"},
      {"CCur", Dec("0.00025"), "0.0002"},
      {"CCur", Dec("922337203685477.58075"), "error 6"},
      {"CCur", true, "-1"},
      {"CCur", "x", "error 13"},
      {"CCur", Null, "error 94"},
      {"CDec", "79228162514264337593543950335", "79228162514264337593543950335"},
      {"CDec", "79228162514264337593543950336", "error 6"},
      {"CDec", "79228162514264337593543950335.5", "error 6"},
      {"CDec", "79228162514264337593543950335.4", "79228162514264337593543950335"},
      {"CDec", "7.92281625142643375935439503355", "7.922816251426433759354395034"},
      {"CDec", "-1e-28", "-0.0000000000000000000000000001"},
      {"CDec", "0.00000000000000000000000000005", "0"},
      {"CDec", 0.1, "0.1"},
      {"CDec", 1e30, "error 6"},
      {"CDec", 0.1F, "0.1"},
      {"CBool", "TRUE", "True"},
      {"CBool", "false", "False"},
      {"CBool", "0.0", "False"},
      {"CBool", "-0.001", "True"},
      {"CBool", "vero", "error 13"},
      {"CBool", Amount("0.0001"), "True"},
      {"CBool", Variant(), "False"},
      {"CBool", Null, "error 94"},
      {"CStr", Variant(), ""},
      {"CStr", Null, "error 94"},
      {"CStr", false, "False"},
      {"CStr", std::int8_t{-8}, "-8"},
      {"CStr", std::numeric_limits<std::int64_t>::min(), "-9223372036854775808"},
      {"CStr", 0.1 + 0.2, "0.3"},
      {"CStr", -0.5, "-0.5"},
      {"CStr", 1.0 / 3, "0.333333333333333"},
      {"CStr", 1.0 / 30, "3.33333333333333E-02"},
      {"CStr", 0.00001, "0.00001"},
      {"CStr", 1e14, "100000000000000"},
      {"CStr", 999999999999999.9, "1E+15"},
      {"CStr", 1e15, "1E+15"},
      {"CStr", -1.5e300, "-1.5E+300"},
      {"CStr", 0.1F, "0.1"},
      {"CStr", 1e7F, "1E+07"},
      {"CStr", Amount("12.5000"), "12.5"},
      {"CStr", Dec("1.0050"), "1.005"},
      {"CStr", Dec("-0.00"), "0"},
      {"CStr", Dec("1000"), "1000"},
      {"CStr", Day("2024-03-05"), "05/03/2024"},
      {"CDate", "15/3/2024", "2024-03-15"},
      {"CDate", "5.3.29", "2029-03-05"},
      {"CDate", "05-03-30", "1930-03-05"},
      {"CDate", "2024-02-29 23:59:59", "2024-02-29 23:59:59"},
      {"CDate", "29/12/1899 6:00", "1899-12-29 06:00:00"},
      {"CDate", "29/2/2023", "error 13"},
      {"CDate", "1/2-2024", "error 13"},
      {"CDate", "1/2/202", "error 13"},
      {"CDate", "1/13/2024", "error 13"},
      {"CDate", "15x3x2024", "error 13"},
      {"CDate", "1/2/02024", "error 13"},
      {"CDate", "1/2/2024 24:00", "error 13"},
      {"CDate", "1/2/2024 ", "error 13"},
      {"CDate", "", "error 13"},
      {"CDate", 45366, "2024-03-15"},
      {"CDate", -1.25, "1899-12-29 06:00:00"},
      {"CDate", 2958466, "error 6"},
      {"CDate", Variant(), "1899-12-30"},
      {"CDate", Null, "error 94"},
      {"IsDate", "31/12/2024", "True"},
      {"IsDate", "31/11/2024", "False"},
      {"IsDate", Day("2024-01-01"), "True"},
      {"IsDate", 45366, "False"},
      {"IsDate", Null, "False"},
      {"Year", Day("0100-01-01"), "100"},
      {"Year", "", "error 13"},
      {"Month", "31/12/9999", "12"},
      {"Month", Null, "error 94"},
      {"Year", Null, "error 94"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(Convert(row.target, row.value), row.expected)
        << row.target << "(" << (row.value.IsNull() ? "Null" : CStr(row.value)) << ") of type "
        << static_cast<int>(row.value.VarType());
  }
}

TEST(Values, ErrorsSayWhatTheyMet) {
  const auto description = [](const Variant& value) -> std::string {
    try {
      return "no error " + CStr(CInt(value));
    } catch (const RunTimeError& error) {
      return error.Source() + " " + error.Description();
    }
  };
  EXPECT_EQ(description("abc"), "Kal_COGCheck Type mismatch: \"abc\" is not a number");
  EXPECT_EQ(description(4e4),
            "Kal_COGCheck Overflow: 40000 is outside the range of 16-bit integers");
  EXPECT_EQ(description(std::string(60, 'x')),
            "Kal_COGCheck Type mismatch: \"" + std::string(60, 'x') + "\" is not a number");
  // A longer text is cut between characters, never inside one.
  const std::string start(59, 'x');
  EXPECT_EQ(description(start + "è" + start),
            "Kal_COGCheck Type mismatch: \"" + start + "...\" is not a number");
  EXPECT_EQ(Outcome([] { return CStr((*RecordsetRef()).RecordCount()); }), "error 91");
}

// Every operator, with the values both ways round.
TEST(Values, Comparisons) {
  constexpr std::int64_t kBig = (std::int64_t{1} << 53) + 1;  // no double is this number
  struct Row {
    Variant left;
    char order;  // < = > or ? for Null
    Variant right;
  };
  const std::vector<Row> rows = {
      {std::int16_t{1}, '=', std::int64_t{1}},
      {true, '=', -1},
      {true, '<', false},
      {kBig, '>', kBig - 1},
      {kBig, '=', static_cast<double>(kBig)},
      {kBig, '=', Dec("9007199254740993")},
      {kBig, '>', Dec("9007199254740992.9999")},
      {0, '=', Amount("0")},
      {2, '=', Amount("2")},
      {2, '>', Amount("0.0002")},
      {0, '<', Amount("0.0001")},
      {-1, '>', Amount("-1.0001")},
      {std::numeric_limits<std::int64_t>::max(), '>', Amount("922337203685477.5807")},
      {std::numeric_limits<std::int64_t>::min(), '<', Amount("-922337203685477.5808")},
      {Amount("922337203685477.5806"), '<', Amount("922337203685477.5807")},
      {Amount("922337203685477.5806"), '<', Dec("922337203685477.5806000000001")},
      {Amount("1.005"), '=', 1.005},
      {Amount("100"), '=', 100.00000000000003},
      {Amount("-0.1"), '=', -0.1F},
      {Amount("100"), '<', 100.0001},
      {Amount("1.005"), '=', Dec("1.00500")},
      {0.1F, '=', 0.1},
      {0.1F, '<', 0.10000002},
      {std::nan(""), '?', 0},
      {Day("1900-01-01"), '=', 2},
      {Day("2024-01-01"), '<', Day("2024-01-02")},
      {Null, '?', Null},
      {Null, '?', 0},
      {Null, '?', ""},
      {Null, '?', Variant()},
      {Variant(), '=', Variant()},
      {Variant(), '=', 0},
      {Variant(), '=', false},
      {Variant(), '>', Amount("-0.0001")},
      {Variant(), '=', ""},
      {Variant(), '<', "0"},
      {"", '>', 5},
      {"1", '>', 2},
      {"", '>', true},
      {"", '>', Day("9999-12-31")},
      {"B", '<', "a"},
      {"a", '<', "à"},
      {"ab", '>', "a"},
      {Dec("1.10"), '=', Dec("1.1")},
      {Dec("-0"), '=', Dec("0.000")},
      {Dec("-0"), '<', Dec("0.01")},
      {Dec("0.00"), '>', Dec("-0.0001")},
      {Dec("99.9"), '<', Dec("100")},
      {Dec("-1.2"), '<', Dec("-1.19")},
      {Dec("79228162514264337593543950335"), '>', Dec("7.9228162514264337593543950335")},
      {Dec("79228162514264337593543950335"), '>', Dec("79228162514264337593543950334")},
      {Dec("0.1000000000000000000000000001"), '>', Dec("0.1")},
  };
  const auto shown = [](Truth truth) { return truth.IsNull() ? '?' : truth ? 'T' : 'F'; };
  const auto operators = [&](const Variant& a, const Variant& b) {
    return std::string{shown(a == b), shown(a != b), shown(a < b),
                       shown(a <= b), shown(a > b),  shown(a >= b)};
  };
  const auto expected = [](char order) -> std::string {
    return order == '?' ? "??????" : order == '=' ? "TFFTFT" : order == '<' ? "FTTTFF" : "FTFFTT";
  };
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const auto& [left, order, right] = rows[i];
    const char reversed = order == '<' ? '>' : order == '>' ? '<' : order;
    EXPECT_EQ(operators(left, right), expected(order)) << "row " << i;
    EXPECT_EQ(operators(right, left), expected(reversed)) << "row " << i << " reversed";
  }
  EXPECT_EQ(Outcome([&] { return operators(kUp, Amount("0")); }), "error 6");
  EXPECT_EQ(Outcome([&] { return operators(Amount("0"), 1e15); }), "error 6");
  EXPECT_FALSE(Truth::Null || Not(Truth::Null))
      << "a Null condition does not hold, nor its opposite";
  EXPECT_TRUE(Identical(Null, Null) && Identical("a", "a") && Identical(Variant(), Variant()));
  EXPECT_FALSE(Identical(1, std::int16_t{1}) || Identical(Null, Variant()) || Identical("a", "A"));
}

TEST(Values, AmountsAreExact) {
  const Currency most = Amount("922337203685477.5807");
  const Currency least = Amount("-922337203685477.5808");
  const Currency unit = Currency::FromUnits(1);
  EXPECT_EQ(Amount("+0.1") + Amount("0.2") - Amount("0.3"), Currency());
  EXPECT_EQ((most - unit + unit).ToFixedText(), "922337203685477.5807");
  EXPECT_EQ((least + unit - unit).ToFixedText(), "-922337203685477.5808");
  EXPECT_EQ(Amount("-0.5").ToFixedText(), "-0.5000");
  EXPECT_EQ(Amount("7.000000").ToText(), "7");
  const std::array<std::function<Currency()>, 6> overflows = {
      [&] { return most + unit; },   [&] { return least - unit; }, [&] { return unit - least; },
      [&] { return -unit + least; }, [&] { return -least; },       [&] { return most - -unit; }};
  for (std::size_t i = 0; i < overflows.size(); ++i) {
    EXPECT_EQ(Outcome([&] { return overflows[i]().ToText(); }), "error 6") << "sum " << i;
  }
  for (const char* text : {"", "-", ".5", "5.", "1.00001", "1,0", " 1", "1e2", "1-", "--1", "1.2.3",
                           "922337203685477.5808", "-922337203685477.5809", "92233720368547758070",
                           "10000000000000000000000"}) {
    EXPECT_FALSE(Currency::FromExactText(text)) << '"' << text << '"';
  }
  // Equal as doubles too, also where the units are no double: indexes rely on it.
  for (const char* text : {"900719925474.0993", "-469477449249367", "525898626537604.3509",
                           "1380498457997.4445", "922337203685477.5806"}) {
    EXPECT_EQ(Amount(text).ToDouble(), std::stod(text)) << text;
    EXPECT_EQ(Dec(text).ToDouble(), std::stod(text)) << text;
  }
}

TEST(Values, DatesFollowTheCalendar) {
  struct Row {
    double serial;
    const char* iso;  // "" outside the range
  };
  const Row rows[] = {{0, "1899-12-30"},
                      {-1.25, "1899-12-29 06:00:00"},
                      {-0.5, "1899-12-30 12:00:00"},
                      {60, "1900-02-28"},
                      {61, "1900-03-01"},
                      {36585, "2000-02-29"},
                      {45366.999999, "2024-03-15 23:59:59"},
                      {-657434, "0100-01-01"},
                      {-657434.75, "0100-01-01 18:00:00"},
                      {-657435, ""},
                      {2958465.75, "9999-12-31 18:00:00"},
                      {2958466, ""},
                      {std::nan(""), ""}};
  for (const Row& row : rows) {
    const auto date = Date::FromSerial(row.serial);
    EXPECT_EQ(date ? date->ToIso() : "", row.iso) << row.serial;
    EXPECT_TRUE(!date || Date::FromText(row.iso)->ToIso() == row.iso) << row.serial;
  }
  for (const char* text : {"1900-02-29", "2023-02-29", "0099-12-31", "2024-3-15", "2024-03-15 ",
                           "2024-04-31", "2024-00-01", "2024/03/15", "15/03/2024"}) {
    EXPECT_FALSE(Date::FromIso(text)) << text;
  }
  EXPECT_FALSE(Date::FromYmd(10000, 1, 1) || Date::FromYmd(2024, 1, 0) ||
               Date::FromYmd(2024, 13, 1));
}

}  // namespace
}  // namespace kal
