// The border between C++ and COM: no exception leaves, no HRESULT gets lost.
#pragma once

#include <string>
#include <string_view>
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

// The error, with `source` where it has none of its own: a client's Err.Source is never empty.
AutomationError WithSource(AutomationError error, std::string_view source);

// An error as EXCEPINFO and as the thread's error information for early-bound callers.
void FillExcepInfo(const AutomationError& error, EXCEPINFO* info);
void SetThreadError(const AutomationError& error);

// The error that a failed late-bound call left.
[[noreturn]] void RaiseFrom(HRESULT result, EXCEPINFO& info);

// A system call's failure as an error with the system's text.
[[noreturn]] void RaiseHresult(HRESULT result);

// Runs the body of a COM method. Errors become DISP_E_EXCEPTION's early-bound counterpart: the
// error's HRESULT, with its source (`source` where it has none) and description as error
// information. What an earlier call left there is taken away first.
template <class Body>
HRESULT AtBorder(std::string_view source, Body&& body) noexcept {
  try {
    SetErrorInfo(0, nullptr);
    return std::forward<Body>(body)();
  } catch (...) {
    const AutomationError error = WithSource(internal::CurrentError(), source);
    SetThreadError(error);
    return ToHresult(error.number());
  }
}

}  // namespace tavcc::automation
