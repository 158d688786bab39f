// The lines of bills as posting stages them, in a temporary table: what both sides of the ledger
// check sum up.
#pragma once

#include <string>

namespace tavcc {

// A batch that makes #LedgerLine with all lines of the stock bills and of the assembly bills for
// which the conditions on the head v hold. Its columns: FHead (1 for bills of T_CC_ZZCX, 0 for
// those of T_CC_StockBill), FBillID, the bill with which a line is summed, and those of posting;
// FQty is signed and in base units, FPrice that of the base unit.
std::string LedgerLines(const std::string& stock_bills, const std::string& assembly_bills);

}  // namespace tavcc
