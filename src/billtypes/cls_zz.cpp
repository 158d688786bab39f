#include "billtypes/cls_zz.h"

#include "billtypes/audit_rules.h"
#include "billtypes/bill_actions.h"
#include "billtypes/bill_gates.h"
#include "billtypes/delete_hook.h"
#include "billtypes/save_hook.h"
#include "billtypes/serial_numbers.h"
#include "billtypes/standard_bill.h"
#include "foundation/conversions.h"
#include "foundation/host_services.h"
#include "foundation/text.h"

namespace tavcc::cls_zz {

namespace {

// The head goes first.
constexpr std::string_view kTableNames[] = {"T_CC_ZZCX", "T_CC_ZZCX_Entry", "T_CC_ZZCX_Entry2"};
constexpr standard_bill::Tables kTables{kTableNames[0], kTableNames};

constexpr SaveHook kSaveHook{
    .order = SaveOrder::kConnectionThenReady,
    .failure_source = "TavM_CC_PlugIns.cls_ZZ.AfterSave",
    .failure_text = "当前资料被保存后扩展处理方法出错：",  // a full-width colon
};

int32_t BillID(const Dictionary& bill) {
  return ToLong(bill.Item("BillInterID"));
}

Verdict CheckAudit(PlugIn& self, std::string_view sDsn, int32_t bill_id) {
  Value date;
  Value biller_id;
  {
    const RecordsetPtr head = ExecuteSQL(
        self.host(), sDsn,
        Cat("Select FStatus,FVoucherID,FDate,FBillerID From T_CC_ZZCX where FID=", bill_id));
    Verdict verdict = JudgeAudit(*head);
    if (!verdict.passed) return verdict;
    date = head->Field("FDate");
    biller_id = head->Field("FBillerID");
  }
  Verdict verdict = CheckPeriod(self, sDsn, date);
  if (!verdict.passed) return verdict;
  return CheckMaker(self, sDsn, biller_id);
}

Verdict CheckUnAudit(PlugIn& self, std::string_view sDsn, int32_t bill_id) {
  Value date;
  {
    const RecordsetPtr head =
        ExecuteSQL(self.host(), sDsn,
                   Cat("Select FStatus,FVoucherID,Fdate From T_CC_ZZCX where FID=", bill_id));
    Verdict verdict = JudgeUnAudit(*head);
    if (!verdict.passed) return verdict;
    date = head->Field("FDate");
  }
  return CheckPeriod(self, sDsn, date);  // in the words of the audit: deliberate
}

}  // namespace

bool AuditBill(PlugIn& self, Dictionary& oDict, std::string_view sDsn, std::string& strReturnMsg) {
  const BillAction action{
      .gate = [&](Connection&) { return VerifyDataBeforeAudit(self, oDict, sDsn, strReturnMsg); },
      .write =
          [&](Connection& cn) {
            cn.Execute(AuditStatement(kTables.head, self.user_id(), BillID(oDict)));
          },
  };
  return RunBillAction(self, sDsn, strReturnMsg, action);
}

bool DeleteBill(PlugIn& self, int32_t lngFID, std::string_view sDsn, std::string& strReturnMsg) {
  return standard_bill::DeleteBill(self, kTables, lngFID, sDsn, strReturnMsg);
}

bool UnAuditBill(PlugIn& self, int32_t lngFID, std::string_view sDsn, std::string& strReturnMsg) {
  const BillAction action{
      .gate =
          [&](Connection&) { return VerifyDataBeforeUnAudit(self, lngFID, sDsn, strReturnMsg); },
      .write = [&](Connection& cn) { cn.Execute(UnAuditStatement(kTables.head, lngFID)); },
  };
  return RunBillAction(self, sDsn, strReturnMsg, action);
}

bool VerifyDataBeforeAudit(PlugIn& self, Dictionary& oDict, std::string_view sDsn,
                           std::string& strReturnMsg) {
  return AnswerGate(strReturnMsg, [&] {
    self.InitObjects(sDsn);  // the maker is held against the user
    return CheckAudit(self, sDsn, BillID(oDict));
  });
}

bool VerifyDataBeforeDelete(PlugIn&, int32_t lngFID, Connection& cn, std::string& strReturnMsg) {
  return standard_bill::VerifyDataBeforeDelete(kTables, lngFID, cn, strReturnMsg);
}

bool VerifyDataBeforeUnAudit(PlugIn& self, int32_t lngFID, std::string_view sDsn,
                             std::string& strReturnMsg) {
  return AnswerGate(strReturnMsg, [&] { return CheckUnAudit(self, sDsn, lngFID); });
}

Value BeforeDel(PlugIn& self, std::string_view sDsn, int32_t nClassID, Dictionary&,
                int32_t nInterID) {
  return RunBeforeDel(self, sDsn, nClassID, nInterID, kTables.head,
                      "TavM_CC_PlugIns.cls_ZZ.BeforeDel");
}

Value AfterSave(PlugIn& self, std::string_view sDsn, Dictionary&, Vector&, Dictionary& dctTableInfo,
                Dictionary& dctData, Dictionary&) {
  return RunAfterSave(self, sDsn, kSaveHook,
                      [&](Connection& cn) { SaveSerialNumData(cn, dctTableInfo, dctData); });
}

}  // namespace tavcc::cls_zz
