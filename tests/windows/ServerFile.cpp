#include "tests/windows/ServerFile.h"

#include <algorithm>

namespace kal::test {

std::wstring ServerPath() {
  std::wstring path(32768, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  return path.substr(0, path.rfind(L'\\') + 1) + L"KalCOGCheck20.dll";
}

void*& PlaceOfImport(const char* dll, const char* function) {
  auto* const server = reinterpret_cast<char*>(GetModuleHandleW(ServerPath().c_str()));
  const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(
      server + reinterpret_cast<const IMAGE_DOS_HEADER*>(server)->e_lfanew);
  const auto& table = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IAT];
  auto** const places = reinterpret_cast<void**>(server + table.VirtualAddress);
  DWORD ignored = 0;
  VirtualProtect(places, table.Size, PAGE_READWRITE, &ignored);
  return *std::find(places, places + table.Size / sizeof(void*),
                    reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA(dll), function)));
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
