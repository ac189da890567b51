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

// Where the DLL keeps the address of a function that it imports.
[[nodiscard]] void*& PlaceOfImport(const char* dll, const char* function);

// A checker straight from the DLL, without the registry.
[[nodiscard]] ComPtr<IKalCOGCheck> MakeChecker();

}  // namespace kal::test
