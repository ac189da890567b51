// The entry points of the DLL, and the class object that makes checkers.

#include "server/Automation.h"
#include "server/Checker.h"
#include "server/ComPtr.h"
#include "server/Counted.h"
#include "server/Module.h"
#include "server/Registration.h"
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
      const auto checker = ComPtr<Checker>::Attach(new Checker);
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
  const HRESULT created = kal::Guarded([&] {
    const auto classObject = kal::ComPtr<kal::ClassObject>::Attach(new kal::ClassObject);
    result = classObject->QueryInterface(iid, object);
  });
  return FAILED(created) ? created : result;
}

STDAPI DllCanUnloadNow() { return kal::ModuleUse::Any() ? S_FALSE : S_OK; }

STDAPI DllRegisterServer() {
  HRESULT result = S_OK;
  const HRESULT run = kal::Guarded([&] { result = kal::RegisterComponent(kal::ModulePath()); });
  return FAILED(run) ? run : result;
}

STDAPI DllUnregisterServer() {
  HRESULT result = S_OK;
  const HRESULT run = kal::Guarded([&] { result = kal::UnregisterComponent(); });
  return FAILED(run) ? run : result;
}
