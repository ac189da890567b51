#include "server/Registration.h"

#include <array>
#include <cstdint>
#include <vector>

#include "server/Automation.h"
#include "server/modClassIdGenerator.h"

namespace kal {
namespace {

constexpr const wchar_t* kTitle = L"Kal_COGCheck.KalCOGCheck";
constexpr const wchar_t* kLibraryTitle = L"Journal entry checks";
// The system's own marshaling of automation interfaces, by their type library.
constexpr const wchar_t* kAutomationMarshaler = L"{00020424-0000-0000-C000-000000000046}";
const std::wstring kClasses = L"Software\\Classes\\";

// Both widths of the component share the ProgID; the class is registered for each.
constexpr bool kIs64Bit = sizeof(void*) == sizeof(std::int64_t);
constexpr const wchar_t* kSystem = kIs64Bit ? L"win64" : L"win32";
constexpr const wchar_t* kOtherSystem = kIs64Bit ? L"win32" : L"win64";
constexpr REGSAM kOtherWidth = kIs64Bit ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;

std::wstring TextOf(const GUID& id) {
  constexpr int kLength = 39;  // with braces and the end of the text
  std::array<wchar_t, kLength> text{};
  StringFromGUID2(id, text.data(), kLength);
  return text.data();
}

std::wstring Version() {
  return std::to_wstring(kLibraryMajor) + L"." + std::to_wstring(kLibraryMinor);
}

std::wstring ClassKey() { return kClasses + L"CLSID\\" + TextOf(kClassId); }
std::wstring ProgIdKey() { return kClasses + kProgId; }

std::wstring LibraryKey() { return kClasses + L"TypeLib\\" + TextOf(kLibraryId); }
std::wstring VersionKey() { return LibraryKey() + L"\\" + Version(); }
std::wstring LibraryFileKey(const wchar_t* system) { return VersionKey() + L"\\0\\" + system; }
std::wstring InterfaceKey() { return kClasses + L"Interface\\" + TextOf(kInterfaceId); }

HRESULT ResultOf(LSTATUS status) { return HRESULT_FROM_WIN32(static_cast<DWORD>(status)); }

struct RegistryValue {
  std::wstring key;
  const wchar_t* name;  // null for the key's own value
  std::wstring data;
};

std::vector<RegistryValue> ValuesOf(const std::wstring& path) {
  const std::wstring classKey = ClassKey();
  return {
      {classKey, nullptr, kTitle},
      {classKey + L"\\InprocServer32", nullptr, path},
      {classKey + L"\\InprocServer32", L"ThreadingModel", L"Apartment"},
      {classKey + L"\\ProgID", nullptr, kProgId},
      {classKey + L"\\Programmable", nullptr, L""},
      {classKey + L"\\TypeLib", nullptr, TextOf(kLibraryId)},
      {classKey + L"\\Version", nullptr, Version()},
      {ProgIdKey(), nullptr, kTitle},
      {ProgIdKey() + L"\\CLSID", nullptr, TextOf(kClassId)},
      {VersionKey(), nullptr, kLibraryTitle},
      {VersionKey() + L"\\FLAGS", nullptr, L"0"},
      {VersionKey() + L"\\HELPDIR", nullptr, path.substr(0, path.rfind(L'\\'))},
      {LibraryFileKey(kSystem), nullptr, path},
      {InterfaceKey(), nullptr, L"IKalCOGCheck"},
      {InterfaceKey() + L"\\ProxyStubClsid32", nullptr, kAutomationMarshaler},
      {InterfaceKey() + L"\\TypeLib", nullptr, TextOf(kLibraryId)},
      {InterfaceKey() + L"\\TypeLib", L"Version", Version()},
  };
}

HRESULT Write(HKEY root, const RegistryValue& value) {
  const auto size = static_cast<DWORD>((value.data.size() + 1) * sizeof(wchar_t));
  HKEY key = nullptr;
  LSTATUS status = RegCreateKeyExW(root, value.key.c_str(), 0, nullptr, 0, KEY_SET_VALUE, nullptr,
                                   &key, nullptr);
  if (status == ERROR_SUCCESS) {
    status = RegSetValueExW(key, value.name, 0, REG_SZ,
                            reinterpret_cast<const BYTE*>(value.data.c_str()), size);
    RegCloseKey(key);
  }
  return ResultOf(status);
}

HRESULT DeleteKey(HKEY root, const std::wstring& key) {
  const LSTATUS status = RegDeleteTreeW(root, key.c_str());
  return status == ERROR_FILE_NOT_FOUND ? S_OK : ResultOf(status);
}

bool KeyExists(HKEY root, const std::wstring& name, REGSAM width) {
  HKEY key = nullptr;
  if (RegOpenKeyExW(root, name.c_str(), 0, KEY_QUERY_VALUE | width, &key) != ERROR_SUCCESS) {
    return false;
  }
  RegCloseKey(key);
  return true;
}

// The type library's keys are those of both widths, apart from the file of each.
HRESULT DeleteLibrary(HKEY root) {
  const HRESULT own = DeleteKey(root, LibraryFileKey(kSystem));
  const bool isOther = KeyExists(root, LibraryFileKey(kOtherSystem), 0);
  const HRESULT all = isOther ? S_OK : DeleteKey(root, LibraryKey());
  return FAILED(own) ? own : all;
}

}  // namespace

HRESULT RegisterIn(HKEY root, const std::wstring& path) {
  for (const RegistryValue& value : ValuesOf(path)) {
    const HRESULT written = Write(root, value);
    if (FAILED(written)) {
      return written;
    }
  }
  return S_OK;
}

HRESULT UnregisterFrom(HKEY root) {
  const HRESULT own = DeleteKey(root, ClassKey());
  const bool isOther = KeyExists(root, ClassKey(), kOtherWidth);
  for (const HRESULT result : {own, DeleteKey(root, InterfaceKey()), DeleteLibrary(root),
                               isOther ? S_OK : DeleteKey(root, ProgIdKey())}) {
    if (FAILED(result)) {
      return result;
    }
  }
  return S_OK;
}

HRESULT RegisterComponent(const std::wstring& path) {
  HRESULT result = E_FAIL;
  for (HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
    result = RegisterIn(root, path);
    if (SUCCEEDED(result)) {
      break;
    }
    UnregisterFrom(root);
  }
  return result;
}

HRESULT UnregisterComponent() {
  const HRESULT machine = UnregisterFrom(HKEY_LOCAL_MACHINE);
  const HRESULT user = UnregisterFrom(HKEY_CURRENT_USER);
  return FAILED(machine) ? machine : user;
}

}  // namespace kal
