#include "server/Registration.h"

#include <array>
#include <cstdint>
#include <functional>
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

bool KeyExists(HKEY root, const std::wstring& name, REGSAM width = 0) {
  HKEY key = nullptr;
  if (RegOpenKeyExW(root, name.c_str(), 0, KEY_QUERY_VALUE | width, &key) != ERROR_SUCCESS) {
    return false;
  }
  RegCloseKey(key);
  return true;
}

// Values on their way into one part of the registry. Unless they are kept, what was there before is
// there again afterwards.
class Writing {
 public:
  explicit Writing(HKEY root) : root_(root) {}
  Writing(const Writing&) = delete;
  Writing& operator=(const Writing&) = delete;
  ~Writing() {
    while (!steps_.empty()) {
      steps_.back()();
      steps_.pop_back();
    }
  }

  LSTATUS Write(const RegistryValue& value) {
    const LSTATUS status = CreateLevels(value.key);
    return status == ERROR_SUCCESS ? Set(value) : status;
  }
  void Keep() { steps_.clear(); }

 private:
  LSTATUS CreateLevels(const std::wstring& key) {
    for (std::size_t end = 0; end != key.npos;) {
      end = key.find(L'\\', end + 1);
      const std::wstring level = key.substr(0, end);
      if (KeyExists(root_, level)) {
        continue;
      }
      steps_.emplace_back([root = root_, level] { RegDeleteKeyW(root, level.c_str()); });
      HKEY created = nullptr;
      const LSTATUS status = RegCreateKeyW(root_, level.c_str(), &created);
      if (status != ERROR_SUCCESS) {
        return status;
      }
      RegCloseKey(created);
    }
    return ERROR_SUCCESS;
  }

  LSTATUS Set(const RegistryValue& value) {
    constexpr DWORD kAnyType = RRF_RT_ANY | RRF_NOEXPAND;
    const wchar_t* const key = value.key.c_str();
    DWORD type = 0;
    DWORD size = 0;
    const bool wasThere =
        RegGetValueW(root_, key, value.name, kAnyType, nullptr, nullptr, &size) == ERROR_SUCCESS;
    std::vector<BYTE> before(size);
    if (wasThere) {
      RegGetValueW(root_, key, value.name, kAnyType, &type, before.data(), &size);
    }
    steps_.emplace_back([root = root_, wasThere, type, size, value, before] {
      if (wasThere) {
        RegSetKeyValueW(root, value.key.c_str(), value.name, type, before.data(), size);
      } else {
        RegDeleteKeyValueW(root, value.key.c_str(), value.name);
      }
    });
    return RegSetKeyValueW(root_, key, value.name, REG_SZ, value.data.c_str(),
                           static_cast<DWORD>((value.data.size() + 1) * sizeof(wchar_t)));
  }

  HKEY root_;
  std::vector<std::function<void()>> steps_;  // back to what was, the last one first
};

HRESULT DeleteKey(HKEY root, const std::wstring& key) {
  const LSTATUS status = RegDeleteTreeW(root, key.c_str());
  return status == ERROR_FILE_NOT_FOUND ? S_OK : ResultOf(status);
}

// A version of the type library is that of both widths, apart from the file of each. Other versions
// are others' business.
HRESULT DeleteLibrary(HKEY root) {
  const HRESULT own = DeleteKey(root, LibraryFileKey(kSystem));
  if (FAILED(own) || KeyExists(root, LibraryFileKey(kOtherSystem))) {
    return own;
  }
  const HRESULT version = DeleteKey(root, VersionKey());
  RegDeleteKeyW(root, LibraryKey().c_str());  // refused as long as there is a version below it
  return version;
}

}  // namespace

HRESULT RegisterIn(HKEY root, const std::wstring& path) {
  Writing writing(root);
  for (const RegistryValue& value : ValuesOf(path)) {
    const LSTATUS status = writing.Write(value);
    if (status != ERROR_SUCCESS) {
      return ResultOf(status);
    }
  }
  writing.Keep();
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

}  // namespace kal
