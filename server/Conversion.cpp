#include "server/Conversion.h"

#include <limits>
#include <new>

#include "platform/RunTimeError.h"
#include "server/LateBound.h"

namespace kal {
namespace {

// Every content of a BSTR has a text in the core, and that text gives it back unchanged: a
// surrogate without its other half is written as if it were a character, and the last byte of an
// odd length as one beyond the last character of all.
constexpr char32_t kReplacement = 0xFFFD;
constexpr char32_t kFirstOfPairs = 0x10000;
constexpr char32_t kLastByte = 0x110000;
constexpr unsigned kBitsOfTrail = 6;
constexpr char32_t kTrailMask = 0x3F;
constexpr unsigned kBitsOfHalf = 10;
constexpr char32_t kHalfMask = 0x3FF;
constexpr char32_t kHighHalf = 0xD800;
constexpr char32_t kLowHalf = 0xDC00;

bool IsHalf(char32_t unit, char32_t half) { return (unit & ~kHalfMask) == half; }

void AppendCharacter(std::string& text, char32_t character) {
  constexpr char32_t kLeast[] = {0x80, 0x800, kFirstOfPairs};
  constexpr char32_t kMarks[] = {0, 0xC0, 0xE0, 0xF0};
  unsigned trails = 0;
  while (trails < std::size(kLeast) && character >= kLeast[trails]) {
    ++trails;
  }
  text += static_cast<char>(kMarks[trails] | character >> (kBitsOfTrail * trails));
  while (trails-- > 0) {
    text += static_cast<char>(0x80 | (character >> (kBitsOfTrail * trails) & kTrailMask));
  }
}

// Takes the first character off the text. What is none costs one byte.
char32_t TakeCharacter(std::string_view& text) {
  const auto at = [&text](std::size_t place) { return static_cast<unsigned char>(text[place]); };
  const unsigned first = at(0);
  const std::size_t trails = first < 0x80 ? 0 : first < 0xE0 ? 1 : first < 0xF0 ? 2 : 3;
  char32_t character = first < 0x80 ? first : first & (kTrailMask >> trails);
  bool isOne = first < 0x80 || (first >= 0xC0 && first < 0xF8 && trails < text.size());
  for (std::size_t place = 1; isOne && place <= trails; ++place) {
    isOne = (at(place) & 0xC0) == 0x80;
    character = character << kBitsOfTrail | (at(place) & kTrailMask);
  }
  text.remove_prefix(isOne ? trails + 1 : 1);
  return isOne && character <= kLastByte + 0xFF ? character : kReplacement;
}

std::string BytesInAutomation(std::string_view text) {
  std::string bytes;
  bytes.reserve(text.size() * sizeof(wchar_t));
  const auto append = [&bytes](char32_t unit) {
    bytes += static_cast<char>(unit & 0xFF);
    bytes += static_cast<char>(unit >> 8);
  };
  while (!text.empty()) {
    const char32_t character = TakeCharacter(text);
    if (character >= kLastByte) {
      bytes += static_cast<char>(character & 0xFF);
      bytes.append(text.empty() ? 0 : 1,
                   '\0');  // within a text that was put together, a whole unit
    } else if (character >= kFirstOfPairs) {
      append(kHighHalf | (character - kFirstOfPairs) >> kBitsOfHalf);
      append(kLowHalf | (character & kHalfMask));
    } else {
      append(character);
    }
  }
  return bytes;
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
  std::string result;
  result.reserve(text.size());
  for (std::size_t at = 0; at < text.size(); ++at) {
    char32_t character = text[at];
    if (IsHalf(character, kHighHalf) && at + 1 < text.size() && IsHalf(text[at + 1], kLowHalf)) {
      character =
          kFirstOfPairs + ((character & kHalfMask) << kBitsOfHalf | (text[++at] & kHalfMask));
    }
    AppendCharacter(result, character);
  }
  return result;
}

std::wstring ToUtf16(std::string_view text) {
  const std::string bytes = BytesInAutomation(text);
  std::wstring result(bytes.size() / sizeof(wchar_t), L'\0');
  bytes.copy(reinterpret_cast<char*>(result.data()), result.size() * sizeof(wchar_t));
  return result;
}

std::string FromBstr(BSTR text) {
  if (text == nullptr) {
    return {};
  }
  std::string result = ToUtf8({text, SysStringLen(text)});
  const UINT bytes = SysStringByteLen(text);
  if (bytes % sizeof(wchar_t) != 0) {
    const char last = reinterpret_cast<const char*>(text)[bytes - 1];
    AppendCharacter(result, kLastByte + static_cast<unsigned char>(last));
  }
  return result;
}

BSTR ToAutomation(std::string_view text) {
  const std::string bytes = BytesInAutomation(text);
  BSTR const result = bytes.size() > std::numeric_limits<UINT>::max()
                          ? nullptr
                          : SysAllocStringByteLen(bytes.data(), static_cast<UINT>(bytes.size()));
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
