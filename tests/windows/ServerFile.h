// ServerFile: the component's DLL, as it stands beside this program.

#pragma once

#include <string>

#include "server/ComPtr.h"
#include "server/modClassIdGenerator.h"

namespace kal::test {

[[nodiscard]] std::wstring ServerPath();
// An exported function; the DLL stays loaded.
template <class Function>
[[nodiscard]] Function ServerFunction(const char* name) {
  static HMODULE const server = LoadLibraryW(ServerPath().c_str());
  return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(server, name)));
}
using GetClassObjectFunction = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);

// While it lives, the DLL calls that function in the place of one that it imports.
class ImportedInstead {
 public:
  ImportedInstead(const char* dll, const char* function, void* instead);
  ImportedInstead(const ImportedInstead&) = delete;
  ImportedInstead& operator=(const ImportedInstead&) = delete;
  ~ImportedInstead() { *place_ = usual_; }

 private:
  void** place_ = nullptr;
  void* usual_;
};

// A checker straight from the DLL, without the registry.
[[nodiscard]] ComPtr<IKalCOGCheck> MakeChecker();

}  // namespace kal::test
