// The credit check: does a bill push its customer or supplier past the credit line?
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/plug_in.h"
#include "foundation/verdict.h"

namespace tavcc {

// Whether the credit check applies to a bill in this direction (1 audits): 1 it does, 0 it does
// not. Reads "BillType" and "ClassTypeID" of the bill. An error counts as 0.
int16_t WhetherNeedCheckCredit(PlugIn& self, std::string_view sDsn, int16_t intCheckType,
                               Dictionary& oDict);

// 1: the partner's balance and this bill's amount exceed the credit line, and the message names the
// line. 0: they do not, or nothing was checked. -1: an error, whose description is the message.
// `Cg` is set as soon as the partner's kind is known: true for a supplier, false for a customer.
// The direction is not consulted.
int16_t CheckCredit(PlugIn& self, Dictionary& oDict, int16_t intCheckType, std::string_view sDsn,
                    std::string& strReturnMsg, bool& Cg);

// The two as a gate of another rule: whether to check, then the check. An error of the check goes
// to the caller.
Verdict CreditGate(PlugIn& self, Dictionary& oDict, int16_t direction, std::string_view sDsn);

}  // namespace tavcc
