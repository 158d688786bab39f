// The query that sets the rows of #TavTempBill against the stock on hand.
#pragma once

#include <string_view>

#include "foundation/connection.h"
#include "foundation/host.h"

namespace tavcc {

// The setting "StockQtyIncludeUnCheck": other bills' issuing lines that are not audited yet count
// as gone. Errors: the host's.
bool CountsUnauditedIssues(Host& host, std::string_view sDsn);

// One row per item, stock, batch, auxiliary property, shelf life and shown unit of #TavTempBill
// whose quantity is more than the stock on hand holds: the item's number, name, model and costing
// method (Ftrack), the stock's name, STOCKQTY, STOCKSHOWQTY, DIFFQTY, the bill's sums, and all
// columns of the bill's row. Errors: the connection's.
RecordsetPtr QueryNegativeStock(Connection& connection, bool count_unaudited_issues);

}  // namespace tavcc
