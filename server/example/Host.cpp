// An early-bound host in one page: it needs the header that comes with the DLL and the system's
// own.
//
//   Host ENTRY    checks the entry whose record sets the object of that class name hands out
//
// An accounting system has ADO record sets of its own in the place of that object.

#include <cstdio>

#include "IKalCOGCheck.h"

namespace {

IDispatch* RecordSet(IDispatch* entry, const wchar_t* name) {
  wchar_t word[] = L"RecordSet";
  LPOLESTR member = word;
  DISPID id = 0;
  VARIANT argument{};
  VARIANT set{};
  DISPPARAMS parameters{&argument, nullptr, 1, 0};
  argument.vt = VT_BSTR;
  argument.bstrVal = SysAllocString(name);
  entry->GetIDsOfNames(IID_NULL, &member, 1, LOCALE_USER_DEFAULT, &id);
  entry->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, &set, nullptr,
                nullptr);
  VariantClear(&argument);
  return set.pdispVal;
}

// What a failed call leaves: the number, the trail of operations, and what was wrong.
int Failed(HRESULT result) {
  BSTR source = nullptr;
  BSTR description = nullptr;
  IErrorInfo* error = nullptr;
  if (GetErrorInfo(0, &error) == S_OK) {
    error->GetSource(&source);
    error->GetDescription(&description);
    error->Release();
  }
  std::printf("Error 0x%08lX\n%ls\n%ls\n", static_cast<unsigned long>(result),
              source != nullptr ? source : L"", description != nullptr ? description : L"");
  SysFreeString(source);
  SysFreeString(description);
  return 1;
}

int Check(IKalCOGCheck* checker, IDispatch* entry) {
  using Assign = HRESULT (STDMETHODCALLTYPE IKalCOGCheck::*)(IDispatch*);
  const struct {
    const wchar_t* name;
    Assign assign;
  } sets[] = {{L"RsTesta", &IKalCOGCheck::putref_RsTesta},
              {L"RsRIva", &IKalCOGCheck::putref_RsRIva},
              {L"RsRCont", &IKalCOGCheck::putref_RsRCont},
              {L"RsScadenze", &IKalCOGCheck::putref_RsScadenze}};
  for (const auto& [name, assign] : sets) {
    IDispatch* const set = RecordSet(entry, name);
    (checker->*assign)(set);
    set->Release();
  }
  VARIANT_BOOL ok = VARIANT_FALSE;
  BSTR blocking = nullptr;
  HRESULT result = checker->OkAggiorna(VARIANT_TRUE, VARIANT_TRUE, &ok);
  if (SUCCEEDED(result)) {
    result = checker->get_ErrString(&blocking);
  }
  if (FAILED(result)) {
    return Failed(result);
  }
  std::printf("May be saved: %s\n%ls\n", ok != VARIANT_FALSE ? "True" : "False", blocking);
  SysFreeString(blocking);
  return 0;
}

}  // namespace

extern "C" int wmain(int count, wchar_t** arguments) {
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  IKalCOGCheck* checker = nullptr;
  IDispatch* entry = nullptr;
  CLSID entryClass{};
  HRESULT result = CoCreateInstance(CLSID_KalCOGCheck, nullptr, CLSCTX_INPROC_SERVER,
                                    IID_IKalCOGCheck, reinterpret_cast<void**>(&checker));
  if (SUCCEEDED(result)) {
    result = CLSIDFromProgID(count > 1 ? arguments[1] : L"", &entryClass);
  }
  if (SUCCEEDED(result)) {
    result = CoCreateInstance(entryClass, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                              reinterpret_cast<void**>(&entry));
  }
  const int status = SUCCEEDED(result) ? Check(checker, entry) : Failed(result);
  if (entry != nullptr) {
    entry->Release();
  }
  if (checker != nullptr) {
    checker->Release();
  }
  CoUninitialize();
  return status;
}
