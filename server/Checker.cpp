#include "server/Checker.h"

#include "server/modClassIdGenerator.h"

namespace kal {

HRESULT STDMETHODCALLTYPE Checker::QueryInterface(REFIID iid, void** object) {
  if (object == nullptr) {
    return E_POINTER;
  }
  if (iid == IID_IUnknown || iid == IID_IDispatch || iid == kInterfaceId) {
    *object = static_cast<IKalCOGCheck*>(this);
  } else if (iid == IID_ISupportErrorInfo) {
    *object = static_cast<ISupportErrorInfo*>(this);
  } else if (iid == IID_IProvideClassInfo) {
    *object = static_cast<IProvideClassInfo*>(this);
  } else {
    *object = nullptr;
    return E_NOINTERFACE;
  }
  AddRef();
  return S_OK;
}

ULONG STDMETHODCALLTYPE Checker::Release() {
  const ULONG left = --references_;
  if (left == 0) {
    delete this;
  }
  return left;
}

HRESULT Checker::TypeInfo(ComPtr<ITypeInfo>& info) {
  if (!typeInfo_) {
    ComPtr<ITypeLib> library;
    HRESULT result = LoadLibraryOfModule(library);
    if (SUCCEEDED(result)) {
      result = library->GetTypeInfoOfGuid(kInterfaceId, typeInfo_.Put());
    }
    if (FAILED(result)) {
      return result;
    }
  }
  info = typeInfo_;
  return S_OK;
}

HRESULT STDMETHODCALLTYPE Checker::GetTypeInfoCount(UINT* count) {
  if (count == nullptr) {
    return E_POINTER;
  }
  *count = 1;
  return S_OK;
}

HRESULT STDMETHODCALLTYPE Checker::GetTypeInfo(UINT index, LCID /*locale*/, ITypeInfo** info) {
  if (info == nullptr) {
    return E_POINTER;
  }
  *info = nullptr;
  if (index != 0) {
    return DISP_E_BADINDEX;
  }
  ComPtr<ITypeInfo> description;
  const HRESULT result = TypeInfo(description);
  *info = description.Detach();
  return result;
}

HRESULT STDMETHODCALLTYPE Checker::GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count,
                                                 LCID /*locale*/, DISPID* ids) {
  if (iid != IID_NULL) {
    return DISP_E_UNKNOWNINTERFACE;
  }
  ComPtr<ITypeInfo> description;
  const HRESULT result = TypeInfo(description);
  return FAILED(result) ? result : description->GetIDsOfNames(names, count, ids);
}

HRESULT STDMETHODCALLTYPE Checker::Invoke(DISPID id, REFIID iid, LCID /*locale*/, WORD flags,
                                          DISPPARAMS* parameters, VARIANT* result,
                                          EXCEPINFO* exception, UINT* argument) {
  if (iid != IID_NULL) {
    return DISP_E_UNKNOWNINTERFACE;
  }
  ComPtr<ITypeInfo> description;
  const HRESULT loaded = TypeInfo(description);
  if (FAILED(loaded)) {
    return loaded;
  }
  const ComPtr<Checker> held(this);
  return description->Invoke(static_cast<IKalCOGCheck*>(this), id, flags, parameters, result,
                             exception, argument);
}

HRESULT STDMETHODCALLTYPE Checker::InterfaceSupportsErrorInfo(REFIID iid) {
  return iid == kInterfaceId ? S_OK : S_FALSE;
}

HRESULT STDMETHODCALLTYPE Checker::GetClassInfo(ITypeInfo** info) {
  if (info == nullptr) {
    return E_POINTER;
  }
  *info = nullptr;
  ComPtr<ITypeLib> library;
  const HRESULT loaded = LoadLibraryOfModule(library);
  return FAILED(loaded) ? loaded : library->GetTypeInfoOfGuid(kClassId, info);
}

BSTR Checker::MakeText(std::string_view text, OperationTag tag) {
  try {
    return ToAutomation(text);
  } catch (...) {
    RaiseError(CurrentError(), tag.Text());
  }
}

HRESULT Checker::Assign(IDispatch* set, void (KalCOGCheck::*member)(Unread<RecordsetRef>)) {
  return Run(
      [&] { (core_.*member)([&] { return sets_.BorrowFromHost(ComPtr<IDispatch>(set)); }); });
}

}  // namespace kal
