// The overdue check: no goods for a customer, and none from a supplier, while bills of that partner
// are past their settlement deadline with an amount still uncleared.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/plug_in.h"
#include "foundation/verdict.h"

namespace tavcc {

// Whether the overdue check applies to a bill in this direction: 1 it does, 0 it does not. Reads
// "BillType" and "ClassTypeID" of the bill. An error counts as 0.
int16_t WhetherNeedCheckUnCheckAmountOutOfDate(PlugIn& self, std::string_view sDsn,
                                               int16_t intCheckType, Dictionary& oDict);

// 1: overdue amounts block the bill, the message says which. 0: there are none, or nothing was
// checked. -1: an error, whose description is the message. `Cg` is set to true for the supplier's
// case and to false for the customer's. The direction is not consulted.
int16_t CheckUnCheckAmountOutOfDate(PlugIn& self, Dictionary& oDict, int16_t intCheckType,
                                    std::string_view sDsn, std::string& strReturnMsg, bool& Cg);

// The two as a gate: whether to check, then the check. An error of the check goes to the caller.
Verdict OverdueGate(PlugIn& self, Dictionary& oDict, int16_t direction, std::string_view sDsn);

}  // namespace tavcc
