// The head row of an audited bill: who audited it and when, its state.
#pragma once

#include <cstdint>

#include "audit/audited_bill.h"
#include "foundation/connection.h"

namespace tavcc {

// Sends one batch. `user_id` is the current user's, who becomes the auditor.
// Errors: the connection's.
void SetCheckStatus(Connection& connection, const AuditedBill& bill, int32_t user_id);

}  // namespace tavcc
