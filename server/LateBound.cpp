#include "server/LateBound.h"

#include <algorithm>
#include <cstdint>

#include "platform/RunTimeError.h"
#include "server/Arithmetic.h"
#include "server/Boundary.h"

namespace kal {
namespace {

// Numbers of the language that only callers of objects raise.
constexpr std::int32_t kObjectRequired = 424;
constexpr std::int32_t kNoSuchMember = 438;
constexpr std::int32_t kAutomationError = 440;

constexpr WORD kReads = DISPATCH_METHOD | DISPATCH_PROPERTYGET;

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

// Values as arguments in automation's order.
class Arguments {
 public:
  explicit Arguments(std::span<const Variant> values) {
    owned_.reserve(values.size());
    for (const Variant& value : values) {
      owned_.push_back(ToVariant(value));
    }
    for (std::size_t at = owned_.size(); at-- > 0;) {
      reversed_.push_back(*owned_[at]);
    }
  }

  [[nodiscard]] std::span<VARIANT> Reversed() { return reversed_; }
  [[nodiscard]] VARIANT& Last() { return *owned_.back(); }

 private:
  std::vector<ScopedVariant> owned_;
  std::vector<VARIANT> reversed_;
};

// A reference to the value that a variant holds, as typed callers pass a variable; to the whole
// variant where it holds none.
VARIANT ReferenceTo(VARIANT& value) {
  VARIANT reference{};
  if (value.vt == VT_EMPTY || value.vt == VT_NULL) {
    reference.pvarVal = &value;
    reference.vt = VT_BYREF | VT_VARIANT;
  } else {
    reference.byref = value.vt == VT_DECIMAL ? static_cast<void*>(&value.decVal) : &value.byref;
    reference.vt = static_cast<VARTYPE>(VT_BYREF | value.vt);
  }
  return reference;
}

}  // namespace

LateBound LateBound::Create(std::string_view progId) {
  CLSID id{};
  ComPtr<IDispatch> object;
  const std::wstring name = ToUtf16(progId);
  const HRESULT result = [&] {
    const HostsArithmetic hosts;
    const HRESULT known = CLSIDFromProgID(name.c_str(), &id);
    return FAILED(known) ? known
                         : CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER,
                                            IID_IDispatch, reinterpret_cast<void**>(object.Put()));
  }();
  if (FAILED(result)) {
    throw RunTimeError(NumberOfResult(result), std::string(kComponentName),
                       "Can't create object " + std::string(progId) + " (" + InHex(result) + ")");
  }
  return {std::move(object), progId};
}

bool LateBound::Has(std::string_view member) {
  DISPID id = DISPID_UNKNOWN;
  const HRESULT result = LookUp(member, id);
  const bool isUnknown = NumberOfResult(result) == kNoSuchMember || result == E_NOTIMPL;
  if (FAILED(result) && !isUnknown) {
    RaiseFailure(result, EXCEPINFO{}, member);
  }
  return !isUnknown;
}

Variant LateBound::Get(std::string_view member, Values values) {
  return FromVariant(*CallWith(member, kReads, values));
}

ScopedVariant LateBound::GetAsItIs(std::string_view member) { return CallWith(member, kReads, {}); }

ComPtr<IDispatch> LateBound::GetObject(std::string_view member, Values values) {
  return ObjectOf(*CallWith(member, kReads, values));
}

ComPtr<IDispatch> LateBound::GetObject(std::string_view member, const ComPtr<IDispatch>& argument) {
  const ScopedVariant held = ToVariant(argument);
  VARIANT only = *held;
  return ObjectOf(*Invoke(IdOf(member), member, kReads, {&only, 1}));
}

void LateBound::Do(std::string_view member, Values values) {
  CallWith(member, DISPATCH_METHOD, values);
}

Variant LateBound::DoForOutput(std::string_view member, Values values) {
  Arguments arguments(values);
  arguments.Reversed().front() = ReferenceTo(arguments.Last());
  Invoke(IdOf(member), member, DISPATCH_METHOD, arguments.Reversed());
  return FromVariant(arguments.Last());
}

void LateBound::Put(std::string_view member, const Variant& value) {
  CallWith(member, DISPATCH_PROPERTYPUT, {&value, 1});
}

void LateBound::PutRef(std::string_view member, const ComPtr<IDispatch>& object) {
  const ScopedVariant held = ToVariant(object);
  VARIANT only = *held;
  Invoke(IdOf(member), member, DISPATCH_PROPERTYPUTREF, {&only, 1});
}

ScopedVariant LateBound::DefaultValue() { return Invoke(DISPID_VALUE, "", kReads, {}); }

ScopedVariant LateBound::CallWith(std::string_view member, WORD kind, Values values) {
  Arguments arguments(values);
  return Invoke(IdOf(member), member, kind, arguments.Reversed());
}

HRESULT LateBound::LookUp(std::string_view member, DISPID& id) {
  if (!object_) {
    Raise(RunTime::ObjectNotSet, "Object variable not set");
  }
  const auto known = std::ranges::find(ids_, member, &std::pair<std::string, DISPID>::first);
  if (known != ids_.end()) {
    id = known->second;
    return S_OK;
  }
  std::wstring name = ToUtf16(member);
  LPOLESTR names = name.data();
  const HRESULT result = [&] {
    const HostsArithmetic hosts;
    return object_->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id);
  }();
  if (SUCCEEDED(result)) {
    ids_.emplace_back(member, id);
  }
  return result;
}

DISPID LateBound::IdOf(std::string_view member) {
  DISPID id = DISPID_UNKNOWN;
  const HRESULT result = LookUp(member, id);
  if (FAILED(result)) {
    RaiseFailure(result, EXCEPINFO{}, member);
  }
  return id;
}

ScopedVariant LateBound::Invoke(DISPID id, std::string_view member, WORD kind,
                                std::span<VARIANT> reversed) {
  const bool assigns = (kind & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
  DISPID assigned = DISPID_PROPERTYPUT;
  DISPPARAMS parameters{};
  parameters.rgvarg = reversed.data();
  parameters.cArgs = static_cast<UINT>(reversed.size());
  if (assigns) {
    parameters.rgdispidNamedArgs = &assigned;
    parameters.cNamedArgs = 1;
  }
  ScopedVariant answer;
  ScopedException exception;
  UINT wrongArgument = 0;
  const HRESULT result = [&] {
    const HostsArithmetic hosts;
    return object_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, kind, &parameters,
                           assigns ? nullptr : &*answer, &exception.info, &wrongArgument);
  }();
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

void LateBound::RaiseFailure(HRESULT result, const EXCEPINFO& info, std::string_view member) const {
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
                  " in member '" + std::string(member) + "'";
  }
  number = number == 0 ? kAutomationError : NumberOfResult(ResultOfNumber(number));
  throw RunTimeError(number, source.empty() ? source_ : source, description);
}

}  // namespace kal
