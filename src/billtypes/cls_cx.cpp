#include "billtypes/cls_cx.h"

#include "billtypes/bill_actions.h"
#include "billtypes/bill_gates.h"

namespace tavcc::cls_cx {

namespace {

constexpr std::string_view kHeadTable = "T_CC_ZZCX";
// The head goes first.
constexpr std::string_view kTables[] = {kHeadTable, "T_CC_ZZCX_Entry", "T_CC_ZZCX_Entry2"};

}  // namespace

bool AuditBill(PlugIn& self, int32_t lngFID, int32_t lngUserID, std::string_view sDsn,
               std::string& strReturnMsg) {
  const BillAction action{
      .gate = [&](Connection& cn) { return VerifyDataBeforeAudit(self, lngFID, cn, strReturnMsg); },
      .statements = {AuditStatement(kHeadTable, lngUserID, lngFID)},
      .on_refusal = OnRefusal::kLeaveOpen,  // deliberately unlike the other two
  };
  return RunBillAction(self, sDsn, strReturnMsg, action);
}

bool DeleteBill(PlugIn& self, int32_t lngFID, std::string_view sDsn, std::string& strReturnMsg) {
  const BillAction action{
      .gate =
          [&](Connection& cn) { return VerifyDataBeforeDelete(self, lngFID, cn, strReturnMsg); },
      .statements = DeleteStatements(kTables, lngFID),
      .on_refusal = OnRefusal::kClose,
  };
  return RunBillAction(self, sDsn, strReturnMsg, action);
}

bool UnAuditBill(PlugIn& self, int32_t lngFID, std::string_view sDsn, std::string& strReturnMsg) {
  const BillAction action{
      .gate =
          [&](Connection& cn) { return VerifyDataBeforeUnAudit(self, lngFID, cn, strReturnMsg); },
      .statements = {UnAuditStatement(kHeadTable, lngFID)},
      .on_refusal = OnRefusal::kClose,
  };
  return RunBillAction(self, sDsn, strReturnMsg, action);
}

bool VerifyDataBeforeAudit(PlugIn&, int32_t lngFID, Connection& cn, std::string& strReturnMsg) {
  return AnswerGate(strReturnMsg, [&] { return CheckBeforeAudit(cn, kHeadTable, lngFID); });
}

bool VerifyDataBeforeDelete(PlugIn&, int32_t lngFID, Connection& cn, std::string& strReturnMsg) {
  return AnswerGate(strReturnMsg, [&] { return CheckBeforeDelete(cn, kHeadTable, lngFID); });
}

bool VerifyDataBeforeUnAudit(PlugIn&, int32_t lngFID, Connection& cn, std::string& strReturnMsg) {
  return AnswerGate(strReturnMsg, [&] { return CheckBeforeUnAudit(cn, kHeadTable, lngFID); });
}

}  // namespace tavcc::cls_cx
