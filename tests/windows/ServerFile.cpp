#include "tests/windows/ServerFile.h"

#include <algorithm>

namespace kal::test {

std::wstring ServerPath() {
  std::wstring path(32768, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  return path.substr(0, path.rfind(L'\\') + 1) + L"KalCOGCheck20.dll";
}

ImportedInstead::ImportedInstead(const char* dll, const char* function, void* instead)
    : usual_(reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA(dll), function))) {
  const HMODULE server = GetModuleHandleW(ServerPath().c_str());
  auto* const base = reinterpret_cast<char*>(server);
  const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(
      base + reinterpret_cast<const IMAGE_DOS_HEADER*>(base)->e_lfanew);
  const auto& table = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IAT];
  place_ = reinterpret_cast<void**>(base + table.VirtualAddress);
  DWORD ignored = 0;
  VirtualProtect(place_, table.Size, PAGE_READWRITE, &ignored);
  place_ = std::find(place_, place_ + table.Size / sizeof(void*), usual_);
  *place_ = instead;
}

ComPtr<IKalCOGCheck> MakeChecker() {
  ComPtr<IClassFactory> classObject;
  ComPtr<IKalCOGCheck> checker;
  ServerFunction<GetClassObjectFunction>("DllGetClassObject")(
      kClassId, IID_IClassFactory, reinterpret_cast<void**>(classObject.Put()));
  classObject->CreateInstance(nullptr, kInterfaceId, reinterpret_cast<void**>(checker.Put()));
  return checker;
}

}  // namespace kal::test
