#include "billtypes/cls_cx.h"

#include "billtypes/bill_gates.h"
#include "billtypes/standard_bill.h"
#include "foundation/bill_kinds.h"

namespace tavcc::cls_cx {

namespace {

// The head goes first.
constexpr std::string_view kTableNames[] = {"T_CC_ZZCX", "T_CC_ZZCX_Entry", "T_CC_ZZCX_Entry2"};
constexpr standard_bill::Tables kTables{kTableNames[0], kTableNames};

}  // namespace

bool AuditBill(PlugIn& self, int32_t lngFID, int32_t lngUserID, std::string_view sDsn,
               std::string& strReturnMsg) {
  return standard_bill::AuditBill(self, kTables, lngFID, lngUserID, sDsn, strReturnMsg);
}

bool DeleteBill(PlugIn& self, int32_t lngFID, std::string_view sDsn, std::string& strReturnMsg) {
  return standard_bill::DeleteBill(self, kTables, lngFID, sDsn, strReturnMsg);
}

bool UnAuditBill(PlugIn& self, int32_t lngFID, std::string_view sDsn, std::string& strReturnMsg) {
  return standard_bill::UnAuditBill(self, kTables, lngFID, sDsn, strReturnMsg);
}

bool VerifyDataBeforeAudit(PlugIn&, int32_t lngFID, Connection& cn, std::string& strReturnMsg) {
  return standard_bill::VerifyDataBeforeAudit(kTables, lngFID, cn, strReturnMsg);
}

bool VerifyDataBeforeDelete(PlugIn&, int32_t lngFID, Connection& cn, std::string& strReturnMsg) {
  return standard_bill::VerifyDataBeforeDelete(kTables, lngFID, cn, strReturnMsg);
}

bool VerifyDataBeforeUnAudit(PlugIn&, int32_t lngFID, Connection& cn, std::string& strReturnMsg) {
  return standard_bill::VerifyDataBeforeUnAudit(kTables, lngFID, cn, strReturnMsg);
}

Ladder GatesOf(PlugIn& self, int32_t lngFID, int32_t direction) {
  return direction == kAudit
             ? GatesBeforeAudit(self, kTables.head, lngFID, "cls_CX.VerifyDataBeforeAudit")
             : GatesBeforeUnAudit(self, kTables.head, lngFID, "cls_CX.VerifyDataBeforeUnAudit");
}

}  // namespace tavcc::cls_cx
