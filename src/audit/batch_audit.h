// The batch audit: audits or un-audits a list of bills in one call.
#pragma once

#include <cstdint>
#include <string_view>

#include "foundation/dictionary.h"
#include "foundation/ladder.h"
#include "foundation/plug_in.h"
#include "foundation/vector.h"

namespace tavcc {

// `billVect` holds one dictionary per bill. `CheckType` is 1 to audit, -1 to un-audit. `BatchCheck`
// asks for the generic gate of each bill, `NeedCheckDaily` is handed to the gates, and without
// `NeedCheckCrdPrc` credit and prices are not checked.
//
// A bill that is refused does not stop the run. Result: 1 when every bill passed, 0 when at least
// one was refused, -1 when a failed gate or an error ended the run.
//
// On every way out `dct` gets "BillInfo" (what it held there, and one line per bill, each ending
// with "|"), "ErrorMsg" (why the run ended early, otherwise empty), "SuccessCount" and "FailCount"
// (a bill that ended the run counts as neither) and "NegItemID" (the ids of the items that went
// below zero, joined by ","). No error reaches the host. What was written stays written; the
// host's transaction decides.
int16_t AuditBill(PlugIn& self, Vector& billVect, int16_t CheckType, std::string_view sDsn,
                  bool BatchCheck, DictionaryPtr& dct, bool NeedCheckDaily, bool NeedCheckCrdPrc);

// The gates of one bill of a batch, with everything checked that can be, each to be asked on its
// own: those of the generic gate stand in its place. `self` and `bill` must outlive them. Errors:
// those of the conversions for the bill's keys.
Ladder BatchAuditGates(PlugIn& self, Dictionary& bill, int16_t CheckType, std::string_view sDsn);

}  // namespace tavcc
