// Boundary: where the core's errors become automation's, and the other way round.
//
// Every member of the component runs in Guarded. A run-time error leaves as a failed result
// together with an error object (number, source, description), which compiled callers ask for
// through IErrorInfo and of which the type library's Invoke makes an exception record for script
// hosts. No C++ exception ever leaves, and what the host has set in the processor is as before.

#pragma once

#include <cstdint>
#include <utility>

#include "server/Arithmetic.h"
#include "server/Automation.h"

namespace kal {

// The result that carries an error number: 1 to 65535 as 0x800A0000 + number, where automation
// keeps the language's errors; a negative number is a result already; any other gives E_FAIL.
[[nodiscard]] HRESULT ResultOfNumber(std::int32_t number);

// The number that a host sees for a failed result: the reverse of the above, and the language's
// own numbers for what automation itself reports (7, 13, 429, 438 and the like). Beyond 16 bits a
// number is none that a result can hold: what comes in with such a one is E_FAIL from then on.
[[nodiscard]] std::int32_t NumberOfResult(HRESULT result);

// For a catch-all handler: the error that is being handled as the thread's error object. Answers
// its result, also where there is no memory for the object.
HRESULT ReportCurrentError() noexcept;

template <class Body>
HRESULT Guarded(Body&& body) noexcept {
  const OwnArithmetic own;
  try {
    SetErrorInfo(0, nullptr);
    std::forward<Body>(body)();
    return S_OK;
  } catch (...) {
    return ReportCurrentError();
  }
}

}  // namespace kal
