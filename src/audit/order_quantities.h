// The quantities that an audited order writes back onto its own rows.
#pragma once

#include "audit/audited_bill.h"
#include "foundation/connection.h"
#include "foundation/host.h"

namespace tavcc {

// Sends one statement for a sales or a purchase order, none for any other bill. Each row receives
// the total of its item and auxiliary property over the whole order.
// Errors: the connection's; the host's for the industry variant.
void WriteBackOrderQuantities(Host& host, Connection& connection, const AuditedBill& bill);

}  // namespace tavcc
