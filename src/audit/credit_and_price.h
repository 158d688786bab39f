// The credit check and the limit-price check of a bill that is being audited.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "audit/audited_bill.h"
#include "foundation/plug_in.h"

namespace tavcc {

// The credit check, then the price check; each is first asked whether this bill needs it. 1: the
// bill may proceed; 0: it is refused, `message` says why; -1: a check failed, `message` is the
// error's description.
int16_t CheckCreditAndPrice(PlugIn& self, const AuditedBill& bill, std::string_view sDsn,
                            std::string& message);

}  // namespace tavcc
