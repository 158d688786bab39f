// The latest prices that an audited bill leaves behind: by partner, or for the item alone.
#pragma once

#include "audit/audited_bill.h"
#include "foundation/connection.h"

namespace tavcc {

// Orders, purchase and sales bills rewrite the partner's history (t_LatestPrice) and the items'
// latest prices (t_ItemPrice); other stock bills only the items' partner-free rows. Every direction
// but 1 (audit), and bills that move value only, send nothing. Errors: the connection's; those of
// the conversions for the partner's id.
void UpdatePriceHistory(Connection& connection, const AuditedBill& bill);

}  // namespace tavcc
