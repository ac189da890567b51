// Counted: the life of an automation object with one interface, from its first reference, which its
// maker holds, to its last Release.

#pragma once

#include <atomic>

#include "server/Automation.h"

namespace kal {

template <class Interface, const IID& kInterface>
class Counted : public Interface {
 public:
  Counted() = default;
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    if (object == nullptr) {
      return E_POINTER;
    }
    *object = iid == IID_IUnknown || iid == kInterface ? this : nullptr;
    if (*object == nullptr) {
      return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) {
      delete this;
    }
    return left;
  }

 protected:
  virtual ~Counted() = default;

 private:
  std::atomic<ULONG> references_{1};
};

}  // namespace kal
