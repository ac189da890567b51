// The entry points of the DLL, and the class object that makes checkers.

#include "server/Automation.h"
#include "server/Checker.h"
#include "server/ComPtr.h"
#include "server/Counted.h"
#include "server/Module.h"
#include "server/Registration.h"
#include "server/SiblingNames.h"
#include "server/modClassIdGenerator.h"

namespace kal {
namespace {

class ClassObject final : public Counted<IClassFactory, IID_IClassFactory> {
 public:
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
    if (object == nullptr) {
      return E_POINTER;
    }
    *object = nullptr;
    if (outer != nullptr) {
      return CLASS_E_NOAGGREGATION;
    }
    HRESULT result = E_NOINTERFACE;
    const HRESULT created = Guarded([&] {
      const auto checker = ComPtr<Checker>::Attach(new Checker(NamesBesideModule()));
      result = checker->QueryInterface(iid, object);
    });
    return FAILED(created) ? created : result;
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
    ModuleUse::Lock(lock != FALSE);
    return S_OK;
  }

 private:
  ~ClassObject() override = default;

  ModuleUse use_;
};

HRESULT Install(bool install, HKEY root) {
  HRESULT result = S_OK;
  const HRESULT run =
      Guarded([&] { result = install ? RegisterIn(root, ModulePath()) : UnregisterFrom(root); });
  return FAILED(run) ? run : result;
}

}  // namespace
}  // namespace kal

STDAPI DllGetClassObject(REFCLSID classId, REFIID iid, void** object) {
  if (object == nullptr) {
    return E_POINTER;
  }
  *object = nullptr;
  if (classId != kal::kClassId) {
    return CLASS_E_CLASSNOTAVAILABLE;
  }
  HRESULT result = E_NOINTERFACE;
  kal::KeepModuleLoaded();
  const HRESULT created = kal::Guarded([&] {
    const auto classObject = kal::ComPtr<kal::ClassObject>::Attach(new kal::ClassObject);
    result = classObject->QueryInterface(iid, object);
  });
  return FAILED(created) ? created : result;
}

STDAPI DllCanUnloadNow() { return kal::ModuleUse::Any() ? S_FALSE : S_OK; }

STDAPI DllRegisterServer() { return kal::Install(true, HKEY_LOCAL_MACHINE); }

STDAPI DllUnregisterServer() { return kal::Install(false, HKEY_LOCAL_MACHINE); }

// "user" is all that there is to say: the same for the current user alone.
STDAPI DllInstall(BOOL install, LPCWSTR what) {
  if (what == nullptr || _wcsicmp(what, L"user") != 0) {
    return E_INVALIDARG;
  }
  return kal::Install(install != FALSE, HKEY_CURRENT_USER);
}
