// The border between C++ and COM: no exception leaves, no HRESULT gets lost.
#pragma once

#include <string>
#include <utility>

#include "automation/border/platform.h"
#include "foundation/error.h"
#include "foundation/trap.h"

namespace tavcc::automation {

// How a run-time number travels as an HRESULT. Numbers 1 to 65535 are those of FACILITY_CONTROL
// (0x800A0000 + number), which automation clients turn back into the bare number; a negative one is
// an HRESULT already (-5 is the hooks' refusal).
HRESULT ToHresult(int32_t number);
int32_t FromHresult(HRESULT result);

// An error as EXCEPINFO and as the thread's error information for early-bound callers.
void FillExcepInfo(const AutomationError& error, EXCEPINFO* info);
void SetThreadError(const AutomationError& error);

// The error that a failed late-bound call left.
[[noreturn]] void RaiseFrom(HRESULT result, EXCEPINFO& info);

// Runs the body of a COM method. Errors become DISP_E_EXCEPTION's early-bound counterpart: the
// error's HRESULT, with its source and description as error information.
template <class Body>
HRESULT AtBorder(Body&& body) noexcept {
  try {
    return std::forward<Body>(body)();
  } catch (...) {
    const AutomationError error = internal::CurrentError();
    SetThreadError(error);
    return ToHresult(error.number());
  }
}

}  // namespace tavcc::automation
