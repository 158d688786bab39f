// Related-bill checks: per class of stock bill, may it be audited or un-audited, judged by its own
// state and by the bills and the receivable, payable and settlement documents made from it.
//
// Common to the four gates: the bill is `BillInterID` of class `ClassBillType` and type
// `BillTypeID` in t_CC_StockBill; `Check` is the direction, kAudit or, as each gate says, un-audit.
// True leaves `sMsg` untouched; false puts the reason there, or a preamble and the description of
// an error. Statements run on the connection of the kept context, which an earlier InitObjects has
// tied to a database. They write nothing and raise nothing.
#pragma once

#include <cstdint>
#include <string>

#include "foundation/ladder.h"
#include "foundation/plug_in.h"

namespace tavcc {

// Purchase bills. Any `Check` but kAudit is un-audit.
bool CanCheckGH(PlugIn& self, int32_t ClassBillType, int32_t BillTypeID, int32_t BillInterID,
                int32_t Check, std::string& sMsg);

// Purchase estimates. Any `Check` but kAudit is un-audit; a bill that the system made is refused in
// both directions.
bool CanCheckGJ(PlugIn& self, int32_t ClassBillType, int32_t BillTypeID, int32_t BillInterID,
                int32_t Check, std::string& sMsg);

// Rebates. Only kUnAudit is looked at: has the rebate been paid or received? Any other `Check`
// passes.
bool CanCheckFL(PlugIn& self, int32_t ClassBillType, int32_t BillTypeID, int32_t BillInterID,
                int32_t Check, std::string& sMsg);

// Other receipts and issues. Any `Check` but kAudit is un-audit.
bool OtherBillCanCheck(PlugIn& self, int32_t ClassBillType, int32_t BillInterID, int32_t Check,
                       std::string& sMsg);

// The gates of each of the four, each to be asked on its own: an error goes to the caller then.
// `self`, whose context is tied to a database when they are asked, must outlive them.
Ladder PurchaseBillGates(PlugIn& self, int32_t class_type, int32_t bill_type, int32_t bill_id,
                         int32_t direction);
Ladder PurchaseEstimateGates(PlugIn& self, int32_t class_type, int32_t bill_type, int32_t bill_id,
                             int32_t direction);
Ladder RebateGates(PlugIn& self, int32_t class_type, int32_t bill_type, int32_t bill_id,
                   int32_t direction);
Ladder OtherBillGates(PlugIn& self, int32_t class_type, int32_t bill_id, int32_t direction);

// Whether the bill "BillInterID" of class "ClassTypeID" has been invoiced: 1 with a message that
// forbids its un-audit; 0 when not, the message untouched; -1 after an error, with its description.
int32_t WhetherBillInvoiceStatus(PlugIn& self, Dictionary& oDict, std::string& strRtnTempMsg);

// The same as a gate: an invoiced bill is refused, and an error goes to the caller.
Verdict InvoiceGate(PlugIn& self, const Dictionary& oDict);

}  // namespace tavcc
