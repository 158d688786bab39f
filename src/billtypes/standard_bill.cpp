#include "billtypes/standard_bill.h"

#include "billtypes/bill_actions.h"
#include "billtypes/bill_gates.h"

namespace tavcc::standard_bill {

bool AuditBill(PlugIn& self, const Tables& tables, int32_t lngFID, int32_t lngUserID,
               std::string_view sDsn, std::string& strReturnMsg) {
  const BillAction action{
      .gate =
          [&](Connection& cn) { return VerifyDataBeforeAudit(tables, lngFID, cn, strReturnMsg); },
      .write = [&](Connection& cn) { cn.Execute(AuditStatement(tables.head, lngUserID, lngFID)); },
      .on_refusal = OnRefusal::kLeaveOpen,  // deliberately unlike the other two
  };
  return RunBillAction(self, sDsn, strReturnMsg, action);
}

bool DeleteBill(PlugIn& self, const Tables& tables, int32_t lngFID, std::string_view sDsn,
                std::string& strReturnMsg) {
  const BillAction action{
      .gate =
          [&](Connection& cn) { return VerifyDataBeforeDelete(tables, lngFID, cn, strReturnMsg); },
      .write = [&](Connection& cn) { DeleteFromTables(cn, tables.in_order_of_deletion, lngFID); },
  };
  return RunBillAction(self, sDsn, strReturnMsg, action);
}

bool UnAuditBill(PlugIn& self, const Tables& tables, int32_t lngFID, std::string_view sDsn,
                 std::string& strReturnMsg) {
  const BillAction action{
      .gate =
          [&](Connection& cn) { return VerifyDataBeforeUnAudit(tables, lngFID, cn, strReturnMsg); },
      .write = [&](Connection& cn) { cn.Execute(UnAuditStatement(tables.head, lngFID)); },
  };
  return RunBillAction(self, sDsn, strReturnMsg, action);
}

bool VerifyDataBeforeAudit(const Tables& tables, int32_t lngFID, Connection& cn,
                           std::string& strReturnMsg) {
  return AnswerGate(strReturnMsg, [&] { return CheckBeforeAudit(cn, tables.head, lngFID); });
}

bool VerifyDataBeforeDelete(const Tables& tables, int32_t lngFID, Connection& cn,
                            std::string& strReturnMsg) {
  return AnswerGate(strReturnMsg, [&] { return CheckBeforeDelete(cn, tables.head, lngFID); });
}

bool VerifyDataBeforeUnAudit(const Tables& tables, int32_t lngFID, Connection& cn,
                             std::string& strReturnMsg) {
  return AnswerGate(strReturnMsg, [&] { return CheckBeforeUnAudit(cn, tables.head, lngFID); });
}

}  // namespace tavcc::standard_bill
