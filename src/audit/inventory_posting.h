// Posting: what an audited bill adds to the stock on hand, and what un-auditing takes away again.
//
// A bill's lines go into #TavTempBill with their signs, and from there into T_CC_Inventory in one
// batch.
#pragma once

#include <cstdint>
#include <string>

#include "foundation/connection.h"
#include "foundation/host.h"

namespace tavcc {

// Inserts the lines of a bill into #TavTempBill as they are to be added to the stock. `CheckType`
// is the direction. A class that moves no stock inserts nothing.
// False when the database refuses an insert: `message` is then the text of its errors, and nothing
// further is inserted. Errors: the connection's.
bool FillTempBill(Host& host, Connection& connection, int32_t class_type, int32_t bill_id,
                  int32_t bill_type, int32_t CheckType, std::string& message);

// Adds the rows of #TavTempBill to T_CC_Inventory. Rows that found a stock row are gone from the
// temporary table afterwards; those that became a stock row of their own remain in it.
// Errors: the connection's.
void ApplyTempBillToInventory(Connection& connection);

// Removes stock rows without quantity and value that no audited bill names any more.
// Errors: the connection's.
void CleanInventory(Connection& connection);

// Whether un-auditing such a bill calls for CleanInventory: it is one that brought goods in.
bool NeedsCleanInventory(int32_t class_type, int32_t bill_type);

}  // namespace tavcc
