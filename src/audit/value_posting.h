// Bills that move value but no quantity: rebates and price adjustments.
#pragma once

#include <string>

#include "audit/audited_bill.h"
#include "foundation/connection.h"
#include "foundation/host.h"

namespace tavcc {

// Has the ERP database's own procedure post such a bill; any other bill sends nothing. The result
// is the procedure's reason against the bill, empty when it has none. Errors: the connection's.
std::string PostValue(Host& host, Connection& connection, const AuditedBill& bill);

}  // namespace tavcc
