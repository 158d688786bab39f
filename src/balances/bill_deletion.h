// Generic bill deletion: the host names the tables, the rule asks whether the bill may go and
// deletes it from each.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/plug_in.h"
#include "foundation/verdict.h"

namespace tavcc {

// May this bill be deleted? Sends one statement for its head row and judges by that alone: FStatus
// (0 not audited) and FVoucherID (greater than 0: an accounting voucher was made from the bill),
// null counting as 0. Errors: the connection's.
Verdict CheckBeforeDelete(Connection& connection, std::string_view head_table, int32_t bill_id);

// May this bill be deleted? As CheckBeforeDelete answers: it is there, not audited and without a
// voucher. True leaves the message untouched, false puts the refusal or the description of an error
// there. Raises nothing.
bool VerifyDataBeforeDelete(PlugIn& self, int32_t lngFID, Connection& cn, std::string& strReturnMsg,
                            std::string_view HeadTableName);

// Deletes the bill "BillInterID" from the tables named by "HeadTableName", "Entry1TableName" and
// "Entry2TableName", in this order, a table whose key is absent being left out. False with the
// reason in `strReturnMsg` when the bill may not be deleted, which closes the connection, or after
// an error, which leaves it open; what was deleted until then stays deleted, unless the host's
// transaction takes it back. Raises nothing.
bool DeleteBill(PlugIn& self, Dictionary& oDict, std::string_view sDsn, std::string& strReturnMsg);

}  // namespace tavcc
