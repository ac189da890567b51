// Module: what the DLL knows of itself.

#pragma once

#include <string>

#include "server/Automation.h"
#include "server/ComPtr.h"

namespace kal {

// Counts one object; as long as there is any, or any lock, the DLL is in use.
class ModuleUse {
 public:
  ModuleUse() noexcept;
  ModuleUse(const ModuleUse&) = delete;
  ModuleUse& operator=(const ModuleUse&) = delete;
  ~ModuleUse();

  static void Lock(bool lock) noexcept;  // adds a lock, or takes one away
  static bool Any() noexcept;
};

// From now on the DLL stays until the process ends, whoever frees it: with each load it would take
// a thread-local slot that nobody gives back (docs/decisions/ says more).
void KeepModuleLoaded() noexcept;

// The full path of the DLL's file.
[[nodiscard]] std::wstring ModulePath();

// The type library that the DLL carries.
HRESULT LoadLibraryOfModule(ComPtr<ITypeLib>& library);

}  // namespace kal
