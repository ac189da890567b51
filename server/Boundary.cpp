#include "server/Boundary.h"

#include <string>

#include "platform/RunTimeError.h"
#include "server/ComPtr.h"
#include "server/Conversion.h"
#include "server/modClassIdGenerator.h"

namespace kal {
namespace {

constexpr std::int32_t kNumberMask = 0xFFFF;
// Severity and facility of the results that hold the language's numbers, as a negative number.
constexpr std::int32_t kNumberBase = -0x7FF60000;
static_assert(static_cast<std::uint32_t>(kNumberBase) == 0x800A0000U);

constexpr HRESULT kServerUnavailable = HRESULT_FROM_WIN32(RPC_S_SERVER_UNAVAILABLE);

struct KnownResult {
  HRESULT result;
  std::int32_t number;
};
// clang-format off
constexpr KnownResult kKnownResults[] = {
    {E_INVALIDARG, 5},
    {DISP_E_OVERFLOW, 6},
    {E_OUTOFMEMORY, 7},
    {DISP_E_BADINDEX, 9},
    {DISP_E_ARRAYISLOCKED, 10},
    {DISP_E_TYPEMISMATCH, 13},
    {E_ACCESSDENIED, 70},
    {CO_E_CLASSSTRING, 429},
    {REGDB_E_CLASSNOTREG, 429},
    {E_NOINTERFACE, 430},
    {DISP_E_UNKNOWNNAME, 438},
    {DISP_E_MEMBERNOTFOUND, 438},
    {E_NOTIMPL, 445},
    {DISP_E_NONAMEDARGS, 446},
    {DISP_E_UNKNOWNLCID, 447},
    {DISP_E_PARAMNOTFOUND, 448},
    {DISP_E_PARAMNOTOPTIONAL, 449},
    {DISP_E_BADPARAMCOUNT, 450},
    {DISP_E_BADVARTYPE, 458},
    {kServerUnavailable, 462},
};
// clang-format on

void SetErrorObject(const RunTimeError& raised) {
  ComPtr<ICreateErrorInfo> creator;
  if (FAILED(CreateErrorInfo(creator.Put()))) {
    return;
  }
  std::wstring source = ToUtf16(raised.Source());
  std::wstring description = ToUtf16(raised.Description());
  creator->SetGUID(kInterfaceId);
  creator->SetSource(source.data());
  creator->SetDescription(description.data());
  ComPtr<IErrorInfo> error;
  if (SUCCEEDED(creator->QueryInterface(IID_IErrorInfo, reinterpret_cast<void**>(error.Put())))) {
    SetErrorInfo(0, error.Get());
  }
}

}  // namespace

HRESULT ResultOfNumber(std::int32_t number) {
  if (number > 0 && number <= kNumberMask) {
    return kNumberBase + number;
  }
  return number < 0 ? number : E_FAIL;
}

std::int32_t NumberOfResult(HRESULT result) {
  const auto number = static_cast<std::int32_t>(result);
  if (number > kNumberBase && number <= kNumberBase + kNumberMask) {
    return number - kNumberBase;
  }
  for (const KnownResult& known : kKnownResults) {
    if (known.result == result) {
      return known.number;
    }
  }
  return number;
}

HRESULT ReportCurrentError() noexcept {
  try {
    const RunTimeError error = CurrentError();
    SetErrorObject(error);
    return ResultOfNumber(error.Number());
  } catch (...) {  // there is no memory left to say what went wrong
    return ResultOfNumber(static_cast<std::int32_t>(RunTime::OutOfMemory));
  }
}

}  // namespace kal
