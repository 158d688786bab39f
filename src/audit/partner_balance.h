// What an audited bill does to its partner's balance: what is owed, and what was paid beforehand.
#pragma once

#include "audit/audited_bill.h"
#include "foundation/connection.h"

namespace tavcc {

// Adds the bill's amount, times the direction, to what the partner owes or is owed, and settles the
// prepayments that the bill uses up. Un-auditing (-1) takes the same back. Bills that touch no
// partner's balance send nothing. Errors: the connection's; those of the conversions for the bill's
// keys.
void UpdatePartnerBalance(Connection& connection, const AuditedBill& bill);

}  // namespace tavcc
