// How much of an audited bill is still to be invoiced.
#pragma once

#include "audit/audited_bill.h"
#include "foundation/connection.h"

namespace tavcc {

// For bills that are invoiced: everything is to be invoiced, in either direction. Others send
// nothing. Errors: the connection's.
void SetInvoiceAmount(Connection& connection, const AuditedBill& bill);

// For an un-audited bill: no invoice, no amounts, no record of invoices drawn. One batch.
// Errors: the connection's.
void ResetInvoiceStatus(Connection& connection, const AuditedBill& bill);

}  // namespace tavcc
