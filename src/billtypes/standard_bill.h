// The three gates and three actions of the plain bill classes, over whichever tables keep the bill.
//
// The gates only read; the actions run the matching gate and then write. What they do is told in
// bill_gates.h and bill_actions.h. Common to all six: `lngFID` is the bill's internal id; the
// result is true when allowed or done; `strReturnMsg` gets the reason of a refusal or the
// description of an error, and is empty when a gate passed. No error reaches the host.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "foundation/plug_in.h"

namespace tavcc::standard_bill {

// Where a class keeps its bills.
struct Tables {
  std::string_view head;
  std::span<const std::string_view> in_order_of_deletion;
};

bool AuditBill(PlugIn& self, const Tables& tables, int32_t lngFID, int32_t lngUserID,
               std::string_view sDsn, std::string& strReturnMsg);
bool DeleteBill(PlugIn& self, const Tables& tables, int32_t lngFID, std::string_view sDsn,
                std::string& strReturnMsg);
bool UnAuditBill(PlugIn& self, const Tables& tables, int32_t lngFID, std::string_view sDsn,
                 std::string& strReturnMsg);

bool VerifyDataBeforeAudit(const Tables& tables, int32_t lngFID, Connection& cn,
                           std::string& strReturnMsg);
bool VerifyDataBeforeDelete(const Tables& tables, int32_t lngFID, Connection& cn,
                            std::string& strReturnMsg);
bool VerifyDataBeforeUnAudit(const Tables& tables, int32_t lngFID, Connection& cn,
                             std::string& strReturnMsg);

}  // namespace tavcc::standard_bill
