// The component in the registry, and how the DLL comes and goes.

#include "server/Registration.h"

#include <gtest/gtest.h>

#include <vector>

#include "server/Conversion.h"
#include "server/LateBound.h"
#include "tests/windows/ServerFile.h"

namespace kal::test {
namespace {

// How many keys there are beside each other in all places where the component has one.
std::vector<DWORD> KeysOfClasses() {
  std::vector<DWORD> counts;
  for (HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
    for (const wchar_t* const place : {L"CLSID", L"TypeLib", L"Interface", kProgId}) {
      HKEY key = nullptr;
      DWORD count = 0;
      if (RegOpenKeyExW(root, (std::wstring(L"Software\\Classes\\") + place).c_str(), 0, KEY_READ,
                        &key) == ERROR_SUCCESS) {
        RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, &count, nullptr, nullptr, nullptr, nullptr,
                         nullptr, nullptr, nullptr);
        RegCloseKey(key);
      }
      counts.push_back(count);
    }
  }
  return counts;
}

// A value of a class's key; "none" where it is not there.
std::string Registered(HKEY root, const std::wstring& key, const wchar_t* name = nullptr) {
  std::vector<wchar_t> text(1024);
  auto size = static_cast<DWORD>(text.size() * sizeof(wchar_t));
  const LSTATUS status = RegGetValueW(root, (L"Software\\Classes\\" + key).c_str(), name,
                                      RRF_RT_REG_SZ, nullptr, text.data(), &size);
  return status == ERROR_SUCCESS ? ToUtf8(text.data()) : "none";
}

HRESULT Call(const char* function) {
  using EntryPoint = HRESULT(STDAPICALLTYPE*)();
  return ServerFunction<EntryPoint>(function)();
}

std::wstring Braced(const GUID& id) {
  wchar_t text[39];
  StringFromGUID2(id, text, 39);
  return text;
}

TEST(Registration, IsCompleteAndLeavesNothingBehind) {
  ASSERT_EQ(Call("DllUnregisterServer"), S_OK);
  const auto before = KeysOfClasses();
  ASSERT_EQ(Call("DllRegisterServer"), S_OK);
  ASSERT_EQ(Call("DllRegisterServer"), S_OK);  // a second time changes nothing
  const std::wstring classKey = L"CLSID\\" + Braced(kClassId);
  const std::wstring library = L"TypeLib\\" + Braced(kLibraryId) + L"\\5.5\\0\\" +
                               (sizeof(void*) == 8 ? L"win64" : L"win32");
  const std::string path = ToUtf8(ServerPath());
  HKEY root = HKEY_LOCAL_MACHINE;
  EXPECT_EQ(Registered(root, classKey + L"\\InprocServer32"), path);
  EXPECT_EQ(Registered(root, classKey + L"\\InprocServer32", L"ThreadingModel"), "Apartment");
  EXPECT_EQ(Registered(root, classKey + L"\\ProgID"), ToUtf8(kProgId));
  EXPECT_EQ(Registered(root, classKey + L"\\TypeLib"), ToUtf8(Braced(kLibraryId)));
  EXPECT_EQ(Registered(root, classKey + L"\\Version"), "5.5");
  EXPECT_EQ(Registered(root, kProgId + std::wstring(L"\\CLSID")), ToUtf8(Braced(kClassId)));
  EXPECT_EQ(Registered(root, library), path);
  EXPECT_EQ(Registered(root, L"Interface\\" + Braced(kInterfaceId) + L"\\TypeLib"),
            ToUtf8(Braced(kLibraryId)));
  const std::wstring other = L"Software\\Classes\\TypeLib\\" + Braced(kLibraryId) + L"\\9.0";
  ASSERT_EQ(RegSetKeyValueW(root, other.c_str(), nullptr, REG_SZ, L"later", 12), ERROR_SUCCESS);
  EXPECT_EQ(Call("DllUnregisterServer"), S_OK);
  EXPECT_EQ(Registered(root, other.substr(17)), "later");
  EXPECT_EQ(Registered(root, library), "none");
  RegDeleteTreeW(root, other.c_str());
  EXPECT_EQ(Call("DllUnregisterServer"), S_OK);  // nor does taking back what is not there
  EXPECT_EQ(KeysOfClasses(), before);
}

// One key of the last ones is refused, because it stands below a volatile one: what was registered
// stays as it was, in the registry of the machine and in that of the user.
TEST(Registration, LeavesWhatWasWhereItFails) {
  const std::wstring refusing = L"Software\\Classes\\Interface\\" + Braced(kInterfaceId);
  const std::wstring server = L"CLSID\\" + Braced(kClassId) + L"\\InprocServer32";
  for (const bool wasThere : {false, true}) {
    if (wasThere) {
      ASSERT_EQ(RegisterIn(HKEY_LOCAL_MACHINE, L"C:\\Other.dll"), S_OK);
      RegDeleteTreeW(HKEY_LOCAL_MACHINE, refusing.c_str());
    }
    HKEY key = nullptr;
    ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, refusing.c_str(), 0, nullptr, REG_OPTION_VOLATILE,
                              KEY_ALL_ACCESS, nullptr, &key, nullptr),
              ERROR_SUCCESS);
    RegCloseKey(key);
    const auto before = KeysOfClasses();
    EXPECT_EQ(Call("DllRegisterServer"), HRESULT_FROM_WIN32(ERROR_CHILD_MUST_BE_VOLATILE));
    EXPECT_EQ(KeysOfClasses(), before);
    EXPECT_EQ(Registered(HKEY_LOCAL_MACHINE, server), wasThere ? "C:\\Other.dll" : "none");
    EXPECT_EQ(Registered(HKEY_CURRENT_USER, server), "none");
    EXPECT_EQ(UnregisterFrom(HKEY_LOCAL_MACHINE), S_OK);
  }
}

TEST(Registration, CanBeOfTheUserAlone) {
  const auto install = ServerFunction<HRESULT(STDAPICALLTYPE*)(BOOL, LPCWSTR)>("DllInstall");
  const auto before = KeysOfClasses();
  EXPECT_EQ(install(TRUE, L"everybody"), E_INVALIDARG);
  ASSERT_EQ(install(TRUE, L"user"), S_OK);
  EXPECT_EQ(Registered(HKEY_CURRENT_USER, kProgId + std::wstring(L"\\CLSID")),
            ToUtf8(Braced(kClassId)));
  EXPECT_EQ(Registered(HKEY_LOCAL_MACHINE, kProgId + std::wstring(L"\\CLSID")), "none");
  EXPECT_EQ(install(FALSE, L"user"), S_OK);
  EXPECT_EQ(KeysOfClasses(), before);
}

TEST(Server, IsInUseUntilItsLastObjectIsGone) {
  const auto get = ServerFunction<GetClassObjectFunction>("DllGetClassObject");
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
  ComPtr<IProvideClassInfo> provider;
  ComPtr<ITypeInfo> itsClass;
  ScopedVariant className = ToVariant("");
  checker->QueryInterface(IID_IProvideClassInfo, reinterpret_cast<void**>(provider.Put()));
  ASSERT_EQ(provider->GetClassInfo(itsClass.Put()), S_OK);
  itsClass->GetDocumentation(MEMBERID_NIL, &className->bstrVal, nullptr, nullptr, nullptr);
  EXPECT_EQ(CStr(FromVariant(*className)), "KalCOGCheck");
  provider = {};
  errors = {};
  one = other = {};
  ASSERT_EQ(get(kClassId, IID_IClassFactory, reinterpret_cast<void**>(classObject.Put())), S_OK);
  classObject->LockServer(FALSE);
  classObject = {};
  EXPECT_EQ(Call("DllCanUnloadNow"), S_FALSE) << "one object";
  EXPECT_EQ(checker->Release(), 0U);
  EXPECT_EQ(Call("DllCanUnloadNow"), S_OK);
}

// Through the registry, with a copy of the DLL that nobody else has loaded. A DLL that came and
// went would take a thread-local slot each time.
TEST(Server, IsCreatedByNameAndStays) {
  const std::wstring copy = ServerPath() + L".copy.dll";
  ASSERT_TRUE(CopyFileW(ServerPath().c_str(), copy.c_str(), FALSE));
  ASSERT_EQ(RegisterIn(HKEY_LOCAL_MACHINE, copy), S_OK);
  {
    LateBound checker = LateBound::Create(ToUtf8(kProgId));
    EXPECT_EQ(checker.Object().Get()->AddRef(), 2U);
    EXPECT_EQ(checker.Object().Get()->Release(), 1U);
    EXPECT_TRUE(Identical(checker.Get("ErrString"), ""));
  }
  CoFreeUnusedLibrariesEx(0, 0);
  EXPECT_NE(GetModuleHandleW(copy.c_str()), nullptr);
  EXPECT_EQ(UnregisterFrom(HKEY_LOCAL_MACHINE), S_OK);
}

}  // namespace
}  // namespace kal::test
