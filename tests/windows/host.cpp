// What hosts bring along besides calls: the processor as they set it, and memory that fails.

#include <gtest/gtest.h>

#include "server/Boundary.h"
#include "server/LateBound.h"
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
// and so does the host itself afterwards. Loading the DLL changes nothing either.
TEST(Host, KeepsItsArithmetic) {
  constexpr Processor kHosts[] = {{0x027F, 0x00, 0x1F80},
                                  {0x1372, 0x20, 0x1900},
                                  {0x0C72, 0x22, 0xF922},
                                  {0x0B7F, 0x3D, 0x5FBD}};
  const std::wstring copy = ServerPath() + L".loaded.dll";
  ASSERT_TRUE(CopyFileW(ServerPath().c_str(), copy.c_str(), FALSE));
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
    HMODULE const loaded = LoadLibraryW(copy.c_str());
    const Processor afterLoading = Now();
    Set(before);
    FreeLibrary(loaded);
    EXPECT_EQ(guarded, S_OK);
    EXPECT_EQ(amounts[0].Units(), 10003);
    EXPECT_EQ(amounts[1].Units(), -10003);
    EXPECT_EQ(NumberOfResult(failed), 91);
    EXPECT_EQ(inObject.x87, host.x87);
    EXPECT_EQ(inObject.sse & ~kRaised, host.sse & ~kRaised);
    for (const Processor& after : {afterGuarded, afterError, afterLoading}) {
      EXPECT_TRUE(after == host) << std::hex << after.x87 << ' ' << after.raised << ' '
                                 << after.sse;
    }
  }
}

}  // namespace
}  // namespace kal::test
