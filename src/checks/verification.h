// Verification before audit and un-audit: the generic gate, and the rule that a bill is un-audited
// by whom it was audited.
//
// The bill is a dictionary: "ClassTypeID", "HeadTableName", "BillInterID" and, for the related-bill
// checks, "BillType". `intCheckType` is kAudit or kUnAudit; any other value leaves out what belongs
// to one direction only. Neither method writes to the database.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/ladder.h"
#include "foundation/plug_in.h"

namespace tavcc {

// The answer of a check that must tell a refusal from a failure: a batch goes on after a refusal
// and ends on a failure.
namespace check_result {
inline constexpr int16_t kPassed = 1;
inline constexpr int16_t kBlocked = 0;
inline constexpr int16_t kFailed = -1;  // the message is the error's description
}  // namespace check_result

// The generic gate: the bill exists, its status and voucher, maker and auditor, prices of zero, the
// period, bills and documents made from it, then the related-bill check of its class. The first
// that fails decides. When the bill passes, the message is empty, or what the related-bill check
// left. `bCheckDaily` also refuses to un-audit a sales bill made by day-end processing. Raises
// nothing.
int16_t VerifyDataBeforeAudit(PlugIn& self, Dictionary& oDict, std::string_view sDsn,
                              int16_t intCheckType, std::string& strReturnMsg, bool bCheckDaily);

// May the current user un-audit the bill? Only the user who audited it may when the setting
// "IC"/"UnCheckOnlySelf" is 1. A bill that is missing or not audited is refused like one that
// somebody else audited. `bCheckDaily` is ignored. Raises nothing.
int16_t VerifyUnCheckForSelf(PlugIn& self, Dictionary& oDict, std::string_view sDsn,
                             int16_t intCheckType, std::string& strReturnMsg, bool bCheckDaily);

// The two as gates of another rule: what they answer 0 for they refuse, and an error goes to the
// caller.
Verdict GenericGate(PlugIn& self, const Dictionary& oDict, std::string_view sDsn, int16_t direction,
                    bool check_daily);
Verdict AuditorGate(PlugIn& self, const Dictionary& oDict, std::string_view sDsn,
                    int16_t direction);

// The generic gate's own gates, those of the related-bill check among them. `self` and `oDict` must
// outlive them. Errors: those of the conversions for the bill's keys.
Ladder GenericGates(PlugIn& self, const Dictionary& oDict, std::string_view sDsn, int16_t direction,
                    bool check_daily);

}  // namespace tavcc
