#include "billtypes/cls_zz.h"

#include <optional>
#include <utility>

#include "billtypes/audit_rules.h"
#include "billtypes/bill_actions.h"
#include "billtypes/bill_gates.h"
#include "billtypes/delete_hook.h"
#include "billtypes/save_hook.h"
#include "billtypes/serial_numbers.h"
#include "billtypes/standard_bill.h"
#include "foundation/bill_kinds.h"
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

// The gates over the head row, and two more.
class AssemblyGates : public HeadGates {
 public:
  AssemblyGates(PlugIn& self, std::string_view sDsn, Read read)
      : HeadGates(std::move(read)), self_(self), sDsn_(sDsn) {}

  Verdict PeriodForAudit();
  Verdict PeriodForUnAudit();
  Verdict Maker();

 private:
  struct DateAndMaker {
    Value date;
    Value biller_id;
  };
  // Read once, before the rows are let go of.
  const DateAndMaker& ReadDateAndMaker();

  PlugIn& self_;
  std::string sDsn_;
  std::optional<DateAndMaker> date_and_maker_;
};

constexpr Gate<AssemblyGates> kBeforeAudit[] = {
    {"head: exists", &AssemblyGates::ExistsForAudit},
    {"head: state", &AssemblyGates::IsNotAudited},
    {"head: voucher", &AssemblyGates::HasNoVoucherForAudit},
    {"head: period", &AssemblyGates::PeriodForAudit},
    {"head: maker", &AssemblyGates::Maker},
};
constexpr Gate<AssemblyGates> kBeforeUnAudit[] = {
    {"head: exists", &AssemblyGates::ExistsForUnAudit},
    {"head: state", &AssemblyGates::IsAudited},
    {"head: voucher", &AssemblyGates::HasNoVoucherForUnAudit},
    {"head: period", &AssemblyGates::PeriodForUnAudit},
};

const AssemblyGates::DateAndMaker& AssemblyGates::ReadDateAndMaker() {
  if (date_and_maker_) return *date_and_maker_;
  const Recordset& head = Head();
  date_and_maker_ = {head.Field("FDate"), head.Field("FBillerID")};
  LetGo();
  return *date_and_maker_;
}

Verdict AssemblyGates::PeriodForAudit() {
  return CheckPeriod(self_, sDsn_, ReadDateAndMaker().date);
}

// In the words of the audit: deliberate.
Verdict AssemblyGates::PeriodForUnAudit() {
  const Value date = Head().Field("FDate");
  LetGo();
  return CheckPeriod(self_, sDsn_, date);
}

Verdict AssemblyGates::Maker() {
  return CheckMaker(self_, sDsn_, ReadDateAndMaker().biller_id);
}

AssemblyGates BeforeAudit(PlugIn& self, std::string_view sDsn, int32_t bill_id) {
  return {
      self, sDsn, [&self, dsn = std::string(sDsn), bill_id] {
        return ExecuteSQL(
            self.host(), dsn,
            Cat("Select FStatus,FVoucherID,FDate,FBillerID From T_CC_ZZCX where FID=", bill_id));
      }};
}

AssemblyGates BeforeUnAudit(PlugIn& self, std::string_view sDsn, int32_t bill_id) {
  return {self, sDsn, [&self, dsn = std::string(sDsn), bill_id] {
            return ExecuteSQL(
                self.host(), dsn,
                Cat("Select FStatus,FVoucherID,Fdate From T_CC_ZZCX where FID=", bill_id));
          }};
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
    AssemblyGates run = BeforeAudit(self, sDsn, BillID(oDict));
    return FirstRefusal(run, kBeforeAudit);
  });
}

bool VerifyDataBeforeDelete(PlugIn&, int32_t lngFID, Connection& cn, std::string& strReturnMsg) {
  return standard_bill::VerifyDataBeforeDelete(kTables, lngFID, cn, strReturnMsg);
}

bool VerifyDataBeforeUnAudit(PlugIn& self, int32_t lngFID, std::string_view sDsn,
                             std::string& strReturnMsg) {
  return AnswerGate(strReturnMsg, [&] {
    AssemblyGates run = BeforeUnAudit(self, sDsn, lngFID);
    return FirstRefusal(run, kBeforeUnAudit);
  });
}

Ladder GatesOf(PlugIn& self, int32_t lngFID, std::string_view sDsn, int32_t direction) {
  const auto start = [](AssemblyGates&) {};
  const std::string dsn(sDsn);
  if (direction == kAudit) {
    return LoneGates(
        kBeforeAudit, "cls_ZZ.VerifyDataBeforeAudit",
        [=, &self] { return BeforeAudit(self, dsn, lngFID); }, start);
  }
  return LoneGates(
      kBeforeUnAudit, "cls_ZZ.VerifyDataBeforeUnAudit",
      [=, &self] { return BeforeUnAudit(self, dsn, lngFID); }, start);
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
