// What hosts bring along besides calls: the processor as they set it, and the names of their
// system.

#include <gtest/gtest.h>

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

void Write(const std::wstring& path, const std::string& text) {
  HANDLE const file =
      CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
  DWORD written = 0;
  WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
  CloseHandle(file);
}

// What a check of a checker created now can't find, or why there is none.
std::string Missing(IClassFactory& classObject) {
  ComPtr<IKalCOGCheck> checker;
  VARIANT_BOOL ok = VARIANT_FALSE;
  HRESULT result =
      classObject.CreateInstance(nullptr, kInterfaceId, reinterpret_cast<void**>(checker.Put()));
  if (SUCCEEDED(result)) {
    result = checker->OkAggiorna(VARIANT_TRUE, VARIANT_TRUE, &ok);
  }
  ComPtr<IErrorInfo> error;
  GetErrorInfo(0, error.Put());
  ScopedVariant text = ToVariant("");
  error->GetDescription(&text->bstrVal);
  return std::to_string(NumberOfResult(result)) + " " + CStr(FromVariant(*text));
}

// In a folder with letters of all kinds.
TEST(Host, SaysWhatTheSiblingsAreCalled) {
  const std::wstring folder =
      ServerPath().substr(0, ServerPath().rfind(L'\\') + 1) + L"Perché \u03A9\u65E5 \U0001F4D2";
  const std::wstring names = folder + L"\\KalCOGCheck20.names";
  CreateDirectoryW(folder.c_str(), nullptr);
  DeleteFileW(names.c_str());
  CopyFileW(ServerPath().c_str(), (folder + L"\\KalCOGCheck20.dll").c_str(), FALSE);
  HMODULE const server = LoadLibraryW((folder + L"\\KalCOGCheck20.dll").c_str());
  ComPtr<IClassFactory> classObject;
  reinterpret_cast<GetClassObjectFunction>(
      reinterpret_cast<void*>(GetProcAddress(server, "DllGetClassObject")))(
      kClassId, IID_IClassFactory, reinterpret_cast<void**>(classObject.Put()));
  DeleteClasses();
  const std::string usual =
      "429 Can't create object Kal_CompanySettings.CompanySettings (0x800401F3)";
  const std::string own = "429 Can't create object A.B (0x800401F3)";
  const auto wrong = [&names](const std::string& why) {
    return "321 " + ToUtf8(names) + ", line " + why;
  };
  std::string all;
  for (const names::Key& key : names::kKeys) {
    all += TextOf(key) + "=" + std::string(key.name) + "\r\n";
  }
  EXPECT_EQ(Missing(*classObject.Get()), usual);
  const std::pair<std::string, std::string> rows[] = {
      {"", usual},
      {all, usual},
      {"CompanySettings=A.B", own},
      {"\xEF\xBB\xBF# Società\r\n\r\n \tCompanySettings =\tA.B \r\nCompanySettings.Setting = S\r\n",
       own},
      {"#\nTotals = A\nTotals.Compute = B\nCompanySettings = A.B", own},
      {"\ncompanysettings = A.B", wrong("2: unknown key 'companysettings'")},
      {"Totals.Altro = A.B", wrong("1: unknown key 'Totals.Altro'")},
      {"Totals = A\r\nTotals = A\r\n", wrong("2: key 'Totals' for the second time")},
      {"Totals = ", wrong("1: the name of 'Totals' is no single word")},
      {"Totals = A # old", wrong("1: the name of 'Totals' is no single word")},
      {"#\n#\nTotals A.B", wrong("3: no line of the form 'key = name'")},
      {"#\nTotals = Societ\xE0", wrong("2: no text in UTF-8")}};
  for (const auto& [text, expected] : rows) {
    Write(names, text);
    EXPECT_EQ(Missing(*classObject.Get()), expected) << text;
  }
  HANDLE const held =
      CreateFileW(names.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  EXPECT_EQ(Missing(*classObject.Get()), "-2147024864 Can't read " + ToUtf8(names));
  CloseHandle(held);
  WriteClasses(L"");
  const SiblingNames some(
      "KalStatus.GetMessage=A\nDataAccess=B\nDataAccess.Execute=C\nQueryBuilder=D\n"
      "QueryBuilder.EndAnyOf=E",
      "");
  EXPECT_EQ(some.NameOf(Member::KalStatus_GetMessage), "A");
  EXPECT_EQ(some.ClassOf(Component::DataAccess), "B");
  EXPECT_EQ(some.NameOf(Member::DataAccess_Execute), "C");
  EXPECT_EQ(some.QueryBuilderClass(), "D");
  EXPECT_EQ(some.NameOf(names::QueryMember::EndAnyOf), "E");
  EXPECT_EQ(some.NameOf(names::QueryMember::Option), "Option");
}

}  // namespace
}  // namespace kal::test
