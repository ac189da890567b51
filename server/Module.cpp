#include "server/Module.h"

#include <atomic>

namespace kal {
namespace {

std::atomic<long> uses{0};

HMODULE ThisModule(DWORD flag) noexcept {
  HMODULE module = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | flag,
                     reinterpret_cast<LPCWSTR>(&uses), &module);
  return module;
}

}  // namespace

ModuleUse::ModuleUse() noexcept { ++uses; }

ModuleUse::~ModuleUse() { --uses; }

void ModuleUse::Lock(bool lock) noexcept { uses += lock ? 1 : -1; }

bool ModuleUse::Any() noexcept { return uses != 0; }

void KeepModuleLoaded() noexcept { ThisModule(GET_MODULE_HANDLE_EX_FLAG_PIN); }

std::wstring ModulePath() {
  HMODULE const module = ThisModule(GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT);
  constexpr DWORD kLongestPath = 32768;
  std::wstring path(kLongestPath, L'\0');
  path.resize(GetModuleFileNameW(module, path.data(), kLongestPath));
  return path;
}

HRESULT LoadLibraryOfModule(ComPtr<ITypeLib>& library) {
  return LoadTypeLibEx(ModulePath().c_str(), REGKIND_NONE, library.Put());
}

}  // namespace kal
