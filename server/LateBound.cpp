#include "server/LateBound.h"

#include <cwchar>

#include "platform/RunTimeError.h"
#include "server/Boundary.h"

namespace kal {
namespace {

// Numbers of the language that only callers of objects raise.
constexpr std::int32_t kObjectRequired = 424;
constexpr std::int32_t kAutomationError = 440;

struct ScopedException {
  EXCEPINFO info{};

  ScopedException() = default;
  ScopedException(const ScopedException&) = delete;
  ScopedException& operator=(const ScopedException&) = delete;
  ~ScopedException() {
    SysFreeString(info.bstrSource);
    SysFreeString(info.bstrDescription);
    SysFreeString(info.bstrHelpFile);
  }
};

std::string InHex(HRESULT result) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  constexpr int kBitsOfDigit = 4;
  auto rest = static_cast<std::uint32_t>(result);
  std::string text(8, '0');
  for (std::size_t at = text.size(); at-- > 0; rest >>= kBitsOfDigit) {
    text[at] = kDigits[rest % kDigits.size()];
  }
  return "0x" + text;
}

}  // namespace

LateBound LateBound::Create(const wchar_t* progId) {
  CLSID id{};
  ComPtr<IDispatch> object;
  HRESULT result = CLSIDFromProgID(progId, &id);
  if (SUCCEEDED(result)) {
    result = CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER,
                              IID_IDispatch, reinterpret_cast<void**>(object.Put()));
  }
  if (FAILED(result)) {
    Raise(RunTime::CannotCreateObject,
          "Can't create object " + ToUtf8(progId) + " (" + InHex(result) + ")");
  }
  return {std::move(object), ToUtf8(progId)};
}

ScopedVariant LateBound::DefaultValue() {
  return Invoke(DISPID_VALUE, L"", DISPATCH_METHOD | DISPATCH_PROPERTYGET, nullptr, 0);
}

DISPID LateBound::IdOf(const wchar_t* member) {
  if (!object_) {
    Raise(RunTime::ObjectNotSet, "Object variable not set");
  }
  for (const auto& [name, id] : ids_) {
    if (name == member || std::wcscmp(name, member) == 0) {
      return id;
    }
  }
  std::wstring name = member;
  LPOLESTR names = name.data();
  DISPID id = DISPID_UNKNOWN;
  const HRESULT result = object_->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id);
  if (FAILED(result)) {
    RaiseFailure(result, EXCEPINFO{}, member);
  }
  ids_.emplace_back(member, id);
  return id;
}

ScopedVariant LateBound::Invoke(DISPID id, const wchar_t* member, WORD kind, VARIANT* reversed,
                                std::size_t count) {
  const bool assigns = (kind & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
  DISPID assigned = DISPID_PROPERTYPUT;
  DISPPARAMS parameters{};
  parameters.rgvarg = reversed;
  parameters.cArgs = static_cast<UINT>(count);
  if (assigns) {
    parameters.rgdispidNamedArgs = &assigned;
    parameters.cNamedArgs = 1;
  }
  ScopedVariant answer;
  ScopedException exception;
  UINT wrongArgument = 0;
  const HRESULT result =
      object_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, kind, &parameters,
                      assigns ? nullptr : &*answer, &exception.info, &wrongArgument);
  if (FAILED(result)) {
    if (result == DISP_E_EXCEPTION && exception.info.pfnDeferredFillIn != nullptr) {
      exception.info.pfnDeferredFillIn(&exception.info);
    }
    RaiseFailure(result, exception.info, member);
  }
  return answer;
}

ComPtr<IDispatch> LateBound::ObjectOf(const VARIANT& value) const {
  ComPtr<IDispatch> object;
  const bool isObject = value.vt == VT_DISPATCH || value.vt == VT_UNKNOWN;
  if (!isObject ||
      (value.punkVal != nullptr && FAILED(value.punkVal->QueryInterface(
                                       IID_IDispatch, reinterpret_cast<void**>(object.Put()))))) {
    throw RunTimeError(kObjectRequired, source_, "Object required");
  }
  return object;
}

void LateBound::RaiseFailure(HRESULT result, const EXCEPINFO& info, const wchar_t* member) const {
  std::int32_t number = NumberOfResult(result);
  std::string source;
  std::string description;
  if (result == DISP_E_EXCEPTION) {
    number = info.wCode != 0 ? info.wCode : NumberOfResult(info.scode);
    source = FromBstr(info.bstrSource);
    description = FromBstr(info.bstrDescription);
  }
  if (description.empty()) {
    description = "Automation error " + InHex(result == DISP_E_EXCEPTION ? info.scode : result) +
                  " in member '" + ToUtf8(member) + "'";
  }
  throw RunTimeError(number == 0 ? kAutomationError : number, source.empty() ? source_ : source,
                     description);
}

}  // namespace kal
