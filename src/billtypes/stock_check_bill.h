// CheckProfit, CheckLoss and AdjustPrice: the stock-check gain, the stock-check loss and the price
// adjustment bill, kept in T_CC_StockBill. The three classes do the same.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/plug_in.h"

namespace tavcc::stock_check_bill {

// Audits (`CheckDir` 1) or un-audits (any other) the bill after its own checks. What came of it is
// told by `strReturnMsg` alone, in the host's language; the result is always 0. Raises nothing.
//
// The bill's number is read from a field that the statement does not select: deliberate, and kept,
// so that the call fails for every bill there is, unless the database answers with more than was
// asked.
int32_t CheckBill(PlugIn& self, std::string_view sDsn, int32_t lngInterID, int32_t CheckDir,
                  std::string& strReturnMsg, Dictionary* dctData, Dictionary* dctClassType);

// Writes the notes of the bill's rows, in one batch: `vctEntryNotes` is a vector of dictionaries
// with "FNote" and "FEntryID", or null. A quote in a note is not doubled, so that it breaks the
// batch. True when all were written or there were none, false after an error.
bool SaveNote(PlugIn& self, std::string_view sDsn, int32_t lngInterID, ObjectPtr vctEntryNotes);

}  // namespace tavcc::stock_check_bill
