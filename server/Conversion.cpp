#include "server/Conversion.h"

#include <limits>
#include <new>

#include "platform/RunTimeError.h"
#include "server/LateBound.h"

namespace kal {
namespace {

int TextLength(std::size_t length) {
  if (length > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
    throw std::bad_alloc();
  }
  return static_cast<int>(length);
}

DECIMAL ToDecimal(const Decimal& value) {
  DECIMAL result{};
  result.Hi32 = value.High();
  result.Lo64 = value.Low();
  result.scale = value.Scale();
  result.sign = value.Negative() ? DECIMAL_NEG : 0;
  return result;
}

Decimal FromDecimal(const DECIMAL& value) {
  return Decimal::FromParts(value.Hi32, value.Lo64, value.scale, value.sign != 0);
}

Variant FromUnsigned(std::uint64_t value) {
  if (value <= static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) {
    return static_cast<std::int64_t>(value);
  }
  return Decimal::FromParts(0, value, 0, false);
}

// What a reference points to, as a value.
Variant FromReference(VARIANT reference) {
  ScopedVariant target;
  const HRESULT copied = VariantCopyInd(&*target, &reference);
  if (copied == E_OUTOFMEMORY) {
    throw std::bad_alloc();
  }
  if (FAILED(copied)) {
    Raise(RunTime::TypeMismatch, "Type mismatch: a reference to no value");
  }
  return FromVariant(*target);
}

Variant FromObject(IUnknown* object) {
  if (object == nullptr) {
    Raise(RunTime::ObjectNotSet, "Object variable not set");
  }
  ComPtr<IDispatch> dispatch;
  if (FAILED(object->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(dispatch.Put())))) {
    Raise(RunTime::TypeMismatch, "Type mismatch: an object without a value");
  }
  const ScopedVariant value = LateBound(std::move(dispatch), kComponentName).DefaultValue();
  if (value->vt == VT_DISPATCH || value->vt == VT_UNKNOWN || (value->vt & VT_BYREF) != 0) {
    Raise(RunTime::TypeMismatch, "Type mismatch: an object without a value");
  }
  return FromVariant(*value);
}

}  // namespace

std::string ToUtf8(std::wstring_view text) {
  if (text.empty()) {
    return {};
  }
  const int length = TextLength(text.size());
  const int size =
      WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
  std::string result(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.data(), length, result.data(), size, nullptr, nullptr);
  return result;
}

std::wstring ToUtf16(std::string_view text) {
  if (text.empty()) {
    return {};
  }
  const int length = TextLength(text.size());
  const int size = MultiByteToWideChar(CP_UTF8, 0, text.data(), length, nullptr, 0);
  std::wstring result(static_cast<std::size_t>(size), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text.data(), length, result.data(), size);
  return result;
}

std::string FromBstr(BSTR text) {
  return text == nullptr ? std::string() : ToUtf8({text, SysStringLen(text)});
}

BSTR ToAutomation(std::string_view text) {
  const std::wstring wide = ToUtf16(text);
  BSTR const result = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
  if (result == nullptr) {
    throw std::bad_alloc();
  }
  return result;
}

ScopedVariant ToVariant(const Variant& value) {
  ScopedVariant result;
  VARIANT& target = *result;
  const auto hold = [&target](VARTYPE type, auto& member, auto content) {
    member = content;
    target.vt = type;
  };
  switch (value.VarType()) {
    case Variant::Type::Empty:
      break;
    case Variant::Type::NullValue:
      target.vt = VT_NULL;
      break;
    case Variant::Type::Boolean:
      hold(VT_BOOL, target.boolVal, ToAutomation(*value.As<bool>()));
      break;
    case Variant::Type::TinyInt:
      hold(VT_I1, target.cVal, static_cast<char>(*value.As<std::int8_t>()));
      break;
    case Variant::Type::SmallInt:
      hold(VT_I2, target.iVal, *value.As<std::int16_t>());
      break;
    case Variant::Type::Integer:
      hold(VT_I4, target.lVal, *value.As<std::int32_t>());
      break;
    case Variant::Type::BigInt:
      hold(VT_I8, target.llVal, *value.As<std::int64_t>());
      break;
    case Variant::Type::Single:
      hold(VT_R4, target.fltVal, *value.As<float>());
      break;
    case Variant::Type::Double:
      hold(VT_R8, target.dblVal, *value.As<double>());
      break;
    case Variant::Type::Currency:
      hold(VT_CY, target.cyVal, ToAutomation(*value.As<Currency>()));
      break;
    case Variant::Type::Decimal:  // overlays the type, which therefore comes second
      hold(VT_DECIMAL, target.decVal, ToDecimal(*value.As<Decimal>()));
      break;
    case Variant::Type::Date:
      hold(VT_DATE, target.date, value.As<Date>()->Serial());
      break;
    case Variant::Type::Text:
      hold(VT_BSTR, target.bstrVal, ToAutomation(*value.AsText()));
      break;
  }
  return result;
}

ScopedVariant ToVariant(const ComPtr<IDispatch>& object) {
  ScopedVariant result;
  result->pdispVal = ComPtr<IDispatch>(object).Detach();
  result->vt = VT_DISPATCH;
  return result;
}

Variant FromVariant(const VARIANT& value) {
  if ((value.vt & VT_BYREF) != 0) {
    return FromReference(value);
  }
  switch (value.vt) {
    case VT_EMPTY:
      return {};
    case VT_NULL:
      return Null;
    case VT_BOOL:
      return value.boolVal != VARIANT_FALSE;
    case VT_I1:
      return static_cast<std::int8_t>(value.cVal);
    case VT_UI1:
      return static_cast<std::int16_t>(value.bVal);
    case VT_I2:
      return static_cast<std::int16_t>(value.iVal);
    case VT_UI2:
      return static_cast<std::int32_t>(value.uiVal);
    case VT_I4:
    case VT_INT:
      return static_cast<std::int32_t>(value.lVal);
    case VT_UI4:
    case VT_UINT:
      return static_cast<std::int64_t>(value.ulVal);
    case VT_I8:
      return static_cast<std::int64_t>(value.llVal);
    case VT_UI8:
      return FromUnsigned(value.ullVal);
    case VT_R4:
      return value.fltVal;
    case VT_R8:
      return value.dblVal;
    case VT_CY:
      return Currency::FromUnits(value.cyVal.int64);
    case VT_DECIMAL:
      return FromDecimal(value.decVal);
    case VT_DATE:
      return CDate(value.date);
    case VT_BSTR:
      return FromBstr(value.bstrVal);
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return FromObject(value.punkVal);
    default:
      Raise(RunTime::TypeMismatch, "Type mismatch: a value of automation type " +
                                       std::to_string(static_cast<unsigned>(value.vt)));
  }
}

}  // namespace kal
