// What hosts bring along besides calls: the processor as they set it, and the names of their
// system.

#include <gtest/gtest.h>

#include <cctype>

#include "server/Boundary.h"
#include "server/LateBound.h"
#include "server/SiblingNames.h"
#include "tests/windows/Doubles.h"
#include "tests/windows/ServerFile.h"

namespace kal::test {
namespace {

struct Processor {
  std::uint16_t x87 = 0;
  std::uint16_t raised = 0;  // in the x87 so far
  std::uint32_t sse = 0;     // what was raised in its last six bits
  bool operator==(const Processor&) const = default;
};

constexpr unsigned kRaised = 0x3F;

Processor Now() {
  Processor now;
  asm volatile("fnstcw %0\n\tfnstsw %1\n\tstmxcsr %2"
               : "=m"(now.x87), "=m"(now.raised), "=m"(now.sse));
  now.raised = static_cast<std::uint16_t>(now.raised & kRaised);
  return now;
}

void Set(const Processor& it) {
  std::uint16_t environment[14];
  asm volatile("fnstenv %0" : "=m"(environment));
  environment[0] = it.x87;
  environment[2] = it.raised;
  asm volatile("fldenv %0\n\tldmxcsr %1" : : "m"(environment), "m"(it.sse));
}

// Amounts are rounded to the nearest whatever the host does, the host's objects find its settings,
// and so does the host itself afterwards.
TEST(Host, KeepsItsArithmetic) {
  constexpr Processor kHosts[] = {{0x027F, 0x00, 0x1F80},
                                  {0x1372, 0x20, 0x1900},
                                  {0x0C72, 0x22, 0xF922},
                                  {0x0B7F, 0x3D, 0x5FBD}};
  const Processor before = Now();
  const ComPtr<IKalCOGCheck> checker = MakeChecker();
  for (const Processor& host : kHosts) {
    Processor inObject;
    const auto object = MakeDouble("Object", {Answers("Value", DISPATCH_PROPERTYGET, 0, [&](auto) {
                                     inObject = Now();
                                     Set(kHosts[2]);
                                     return Variant(true);
                                   })});
    Currency amounts[2];
    VARIANT_BOOL ok = VARIANT_FALSE;
    Set(host);
    const HRESULT guarded = Guarded([&] {
      amounts[0] = CCur(1.00026);
      (void)LateBound(object, "").DefaultValue();
      amounts[1] = CCur(-1.00026);
    });
    const Processor afterGuarded = Now();
    const HRESULT failed = checker->OkModifica(&ok);
    const Processor afterError = Now();
    Set(before);
    EXPECT_EQ(guarded, S_OK);
    EXPECT_EQ(amounts[0].Units(), 10003);
    EXPECT_EQ(amounts[1].Units(), -10003);
    EXPECT_EQ(NumberOfResult(failed), 91);
    EXPECT_EQ(inObject.x87, host.x87);
    EXPECT_EQ(inObject.sse & ~kRaised, host.sse & ~kRaised);
    for (const Processor& after : {afterGuarded, afterError}) {
      EXPECT_TRUE(after == host) << std::hex << after.x87 << ' ' << after.raised << ' '
                                 << after.sse;
    }
  }
}

// The class of the settings by the file's text, or what is wrong with that.
TEST(Host, SaysWhatTheSiblingsAreCalled) {
  std::string all;
  for (const names::Key& key : names::kKeys) {
    all += TextOf(key) + "=" + std::string(key.name) + "\r\n";
  }
  const std::string usual(names::ClassOf(Component::CompanySettings));
  const std::pair<std::string, std::string> rows[] = {
      {"", usual},
      {all, usual},
      {"CompanySettings=A.B", "A.B"},
      {"\xEF\xBB\xBF# Società\r\n\r\n \tCompanySettings =\tA.B \r\nTotals = S\r\n", "A.B"},
      {"#\nTotals = A\nTotals.Compute = B\nCompanySettings = A.B", "A.B"},
      {"\ncompanysettings = A.B", "2: unknown key 'companysettings'"},
      {"Totals.Altro = A.B", "1: unknown key 'Totals.Altro'"},
      {"Totals = A\r\nTotals = A\r\n", "2: key 'Totals' for the second time"},
      {"Totals = ", "1: the name of 'Totals' is no single word"},
      {"Totals = A # old", "1: the name of 'Totals' is no single word"},
      {"#\n#\nTotals A.B", "3: no line of the form 'key = name'"},
      {"#\nTotals = Societ\xE0", "2: no text in UTF-8"}};
  for (const auto& [text, expected] : rows) {
    const std::string wrong = "Error 321 'Kal_COGCheck' 'File, line " + expected + "'";
    EXPECT_EQ(TextOrError([&text] {
                return std::string(SiblingNames(text, "File").ClassOf(Component::CompanySettings));
              }),
              std::isdigit(expected[0]) != 0 ? wrong : expected);
  }
  const SiblingNames some(
      "KalStatus.GetMessage=A\nDataAccess=B\nDataAccess.Execute=C\nQueryBuilder=D\n"
      "QueryBuilder.EndAnyOf=E",
      "");
  EXPECT_EQ(some.NameOf(Member::KalStatus_GetMessage), "A");
  EXPECT_EQ(some.ClassOf(Component::DataAccess), "B");
  EXPECT_EQ(some.NameOf(Member::DataAccess_Execute), "C");
  EXPECT_EQ(some.QueryBuilderClass(), "D");
  EXPECT_EQ(some.NameOf(names::QueryMember::EndAnyOf), "E");
}

}  // namespace
}  // namespace kal::test
