// An early-bound host in one page: it needs the header that comes with the DLL and the system's
// own.
//
//   Host ENTRY    checks the entry whose record sets the object of that class name hands out
//
// An accounting system has ADO record sets of its own in the place of that object.

#include <fcntl.h>
#include <io.h>

#include <cwchar>

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

// What a failed call leaves: the trail of operations, and what was wrong.
int Failed(HRESULT result) {
  BSTR source = nullptr;
  BSTR description = nullptr;
  IErrorInfo* error = nullptr;
  if (GetErrorInfo(0, &error) == S_OK) {
    error->GetSource(&source);
    error->GetDescription(&description);
    error->Release();
  }
  wprintf(L"Error 0x%08lX\n%ls\n%ls\n", static_cast<unsigned long>(result),
          source != nullptr ? source : L"", description != nullptr ? description : L"");
  SysFreeString(source);
  SysFreeString(description);
  return 1;
}

int Check(IKalCOGCheck* checker, IDispatch* entry) {
  const auto assign = [&](const wchar_t* name, auto member) {
    IDispatch* const set = RecordSet(entry, name);
    (checker->*member)(set);
    set->Release();
  };
  assign(L"RsTesta", &IKalCOGCheck::putref_RsTesta);
  assign(L"RsRIva", &IKalCOGCheck::putref_RsRIva);
  assign(L"RsRCont", &IKalCOGCheck::putref_RsRCont);
  assign(L"RsScadenze", &IKalCOGCheck::putref_RsScadenze);
  VARIANT_BOOL ok = VARIANT_FALSE;
  BSTR blocking = nullptr;
  HRESULT result = checker->OkAggiorna(VARIANT_TRUE, VARIANT_TRUE, &ok);
  if (FAILED(result) || FAILED(result = checker->get_ErrString(&blocking))) {
    return Failed(result);
  }
  wprintf(L"May be saved: %ls\n%ls\n", ok != VARIANT_FALSE ? L"True" : L"False", blocking);
  SysFreeString(blocking);
  return 0;
}

template <class Interface>
HRESULT Create(const CLSID& id, REFIID iid, Interface** object) {
  return CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, iid, reinterpret_cast<void**>(object));
}

}  // namespace

extern "C" int wmain(int count, wchar_t** arguments) {
  constexpr int kStandardOutput = 1;
  _setmode(kStandardOutput, _O_U8TEXT);
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  IKalCOGCheck* checker = nullptr;
  IDispatch* entry = nullptr;
  CLSID entryClass{};
  HRESULT result = Create(CLSID_KalCOGCheck, IID_IKalCOGCheck, &checker);
  if (FAILED(result) ||
      FAILED(result = CLSIDFromProgID(count > 1 ? arguments[1] : L"", &entryClass)) ||
      FAILED(result = Create(entryClass, IID_IDispatch, &entry))) {
    return Failed(result);
  }
  const int status = Check(checker, entry);
  entry->Release();
  checker->Release();
  CoUninitialize();
  return status;
}
