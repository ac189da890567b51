// The component in the registry, and how the DLL comes and goes.

#include "server/Registration.h"

#include <gtest/gtest.h>

#include <map>

#include "server/Conversion.h"
#include "server/LateBound.h"
#include "server/modClassIdGenerator.h"
#include "tests/windows/Doors.h"
#include "tests/windows/Doubles.h"

namespace kal::test {
namespace {

std::wstring InLowerCase(std::wstring text) {
  CharLowerW(text.data());
  return text;
}

// Everything below a key: "key|value", in lower case, to its content.
void Collect(HKEY root, const std::wstring& key, std::map<std::wstring, std::wstring>& found) {
  HKEY handle = nullptr;
  if (RegOpenKeyExW(root, key.c_str(), 0, KEY_READ, &handle) != ERROR_SUCCESS) {
    return;
  }
  found[InLowerCase(key)] = L"";
  std::vector<wchar_t> name(1024);
  for (DWORD at = 0;; ++at) {
    std::vector<BYTE> data(4096);
    auto nameSize = static_cast<DWORD>(name.size());
    auto size = static_cast<DWORD>(data.size() - 2);
    if (RegEnumValueW(handle, at, name.data(), &nameSize, nullptr, nullptr, data.data(), &size) !=
        ERROR_SUCCESS) {
      break;
    }
    found[InLowerCase(key + L"|" + name.data())] = reinterpret_cast<const wchar_t*>(data.data());
  }
  for (DWORD at = 0;; ++at) {
    auto nameSize = static_cast<DWORD>(name.size());
    if (RegEnumKeyExW(handle, at, name.data(), &nameSize, nullptr, nullptr, nullptr, nullptr) !=
        ERROR_SUCCESS) {
      break;
    }
    Collect(root, key + L"\\" + name.data(), found);
  }
  RegCloseKey(handle);
}

std::map<std::wstring, std::wstring> Classes() {
  std::map<std::wstring, std::wstring> found;
  Collect(HKEY_LOCAL_MACHINE, L"Software\\Classes", found);
  Collect(HKEY_CURRENT_USER, L"Software\\Classes", found);
  return found;
}

// What was added, taken away or changed, one a line.
std::string Difference(const std::map<std::wstring, std::wstring>& before,
                       const std::map<std::wstring, std::wstring>& after) {
  std::wstring shown;
  for (const auto& [key, value] : before) {
    shown += after.contains(key) ? L"" : L"- " + key + L"\n";
  }
  for (const auto& [key, value] : after) {
    const auto was = before.find(key);
    shown += was != before.end() && was->second == value ? L"" : L"+ " + key + L" " + value + L"\n";
  }
  return ToUtf8(shown);
}

HRESULT Call(const char* function) {
  using EntryPoint = HRESULT(STDAPICALLTYPE*)();
  return reinterpret_cast<EntryPoint>(reinterpret_cast<void*>(ServerFunction(function)))();
}

std::wstring Braced(const GUID& id) {
  wchar_t text[39];
  StringFromGUID2(id, text, 39);
  return text;
}

TEST(Registration, IsCompleteAndLeavesNothingBehind) {
  ASSERT_EQ(Call("DllUnregisterServer"), S_OK);
  const auto before = Classes();
  ASSERT_EQ(Call("DllRegisterServer"), S_OK);
  ASSERT_EQ(Call("DllRegisterServer"), S_OK);  // a second time changes nothing
  const auto during = Classes();
  const std::wstring classes = L"Software\\Classes\\";
  const std::wstring classKey = classes + L"CLSID\\" + Braced(kClassId);
  const std::wstring library = classes + L"TypeLib\\" + Braced(kLibraryId) + L"\\5.5\\0\\" +
                               (sizeof(void*) == 8 ? L"win64" : L"win32");
  const std::wstring interfaceKey = classes + L"Interface\\" + Braced(kInterfaceId);
  const std::pair<std::wstring, std::wstring> expected[] = {
      {classKey + L"\\InprocServer32|", ServerPath()},
      {classKey + L"\\InprocServer32|ThreadingModel", L"Apartment"},
      {classKey + L"\\ProgID|", kProgId},
      {classKey + L"\\TypeLib|", Braced(kLibraryId)},
      {classKey + L"\\Version|", L"5.5"},
      {classes + kProgId + L"\\CLSID|", Braced(kClassId)},
      {library + L"|", ServerPath()},
      {interfaceKey + L"\\TypeLib|", Braced(kLibraryId)},
  };
  for (const auto& [key, value] : expected) {
    const auto found = during.find(InLowerCase(key));
    ASSERT_NE(found, during.end()) << ToUtf8(key);
    EXPECT_EQ(InLowerCase(found->second), InLowerCase(value)) << ToUtf8(key);
  }
  EXPECT_EQ(Call("DllUnregisterServer"), S_OK);
  EXPECT_EQ(Difference(before, Classes()), "");
  EXPECT_EQ(Call("DllUnregisterServer"), S_OK);  // nor does taking back what is not there
}

// Where the machine's classes are refused: all keys of the class stand with the user.
TEST(Registration, CanBeOfTheUserAlone) {
  const auto before = Classes();
  ASSERT_EQ(RegisterIn(HKEY_CURRENT_USER, ServerPath()), S_OK);
  std::map<std::wstring, std::wstring> user;
  Collect(HKEY_CURRENT_USER, L"Software\\Classes", user);
  EXPECT_EQ(user[InLowerCase(std::wstring(L"Software\\Classes\\") + kProgId + L"\\CLSID|")],
            Braced(kClassId));
  EXPECT_EQ(UnregisterFrom(HKEY_CURRENT_USER), S_OK);
  EXPECT_EQ(Difference(before, Classes()), "");
}

TEST(Server, UnloadsWithItsLastObject) {
  using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
  const auto get = reinterpret_cast<GetClassObject>(
      reinterpret_cast<void*>(ServerFunction("DllGetClassObject")));
  EXPECT_EQ(Call("DllCanUnloadNow"), S_OK);
  ComPtr<IClassFactory> classObject;
  void* none = &classObject;
  EXPECT_EQ(get(kLibraryId, IID_IClassFactory, &none), CLASS_E_CLASSNOTAVAILABLE);
  EXPECT_EQ(get(kClassId, IID_IPersist, &none), E_NOINTERFACE);
  EXPECT_EQ(none, nullptr);
  ASSERT_EQ(get(kClassId, IID_IClassFactory, reinterpret_cast<void**>(classObject.Put())), S_OK);
  EXPECT_EQ(classObject->CreateInstance(classObject.Get(), IID_IUnknown, &none),
            CLASS_E_NOAGGREGATION);
  EXPECT_EQ(classObject->CreateInstance(nullptr, IID_IPersist, &none), E_NOINTERFACE);
  EXPECT_EQ(classObject->LockServer(TRUE), S_OK);
  classObject = {};
  EXPECT_EQ(Call("DllCanUnloadNow"), S_FALSE) << "locked";

  IKalCOGCheck* checker = MakeChecker().Detach();
  ComPtr<ISupportErrorInfo> errors;
  ComPtr<IUnknown> one;
  ComPtr<IUnknown> other;
  ASSERT_EQ(checker->QueryInterface(IID_ISupportErrorInfo, reinterpret_cast<void**>(errors.Put())),
            S_OK);
  EXPECT_EQ(errors->InterfaceSupportsErrorInfo(kInterfaceId), S_OK);
  EXPECT_EQ(errors->InterfaceSupportsErrorInfo(IID_IPersist), S_FALSE);
  errors->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(one.Put()));
  checker->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(other.Put()));
  EXPECT_EQ(one.Get(), other.Get());
  EXPECT_EQ(checker->QueryInterface(IID_IPersist, &none), E_NOINTERFACE);
  errors = {};
  one = other = {};
  const auto lock = [] {
    ComPtr<IClassFactory> again;
    reinterpret_cast<GetClassObject>(reinterpret_cast<void*>(ServerFunction("DllGetClassObject")))(
        kClassId, IID_IClassFactory, reinterpret_cast<void**>(again.Put()));
    again->LockServer(FALSE);
  };
  lock();
  EXPECT_EQ(Call("DllCanUnloadNow"), S_FALSE) << "one object";
  EXPECT_EQ(checker->Release(), 0U);
  EXPECT_EQ(Call("DllCanUnloadNow"), S_OK);
}

// Through the registry, with a copy of the DLL that nobody else has loaded.
TEST(Server, IsCreatedByNameAndGoesWithItsLastObject) {
  const std::wstring copy = ServerPath() + L".copy.dll";
  ASSERT_TRUE(CopyFileW(ServerPath().c_str(), copy.c_str(), FALSE));
  ASSERT_EQ(RegisterIn(HKEY_LOCAL_MACHINE, copy), S_OK);
  {
    LateBound checker = LateBound::Create(kProgId);
    EXPECT_EQ(checker.Object().Get()->AddRef(), 2U);
    EXPECT_EQ(checker.Object().Get()->Release(), 1U);
    CoFreeUnusedLibrariesEx(0, 0);
    EXPECT_NE(GetModuleHandleW(copy.c_str()), nullptr);
    EXPECT_TRUE(Identical(checker.Get(L"ErrString"), ""));
  }
  CoFreeUnusedLibrariesEx(0, 0);
  EXPECT_EQ(GetModuleHandleW(copy.c_str()), nullptr);
  EXPECT_EQ(UnregisterFrom(HKEY_LOCAL_MACHINE), S_OK);
  DeleteFileW(copy.c_str());
}

}  // namespace
}  // namespace kal::test
