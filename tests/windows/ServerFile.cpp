#include "tests/windows/ServerFile.h"

namespace kal::test {

std::wstring ServerPath() {
  std::wstring path(32768, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  return path.substr(0, path.rfind(L'\\') + 1) + L"KalCOGCheck20.dll";
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
