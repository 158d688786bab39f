#include "billtypes/stock_check_bill.h"

#include <array>
#include <optional>

#include "billtypes/audit_rules.h"
#include "billtypes/bill_actions.h"
#include "foundation/bill_kinds.h"
#include "foundation/conversions.h"
#include "foundation/host_services.h"
#include "foundation/localized_text.h"
#include "foundation/text.h"
#include "foundation/trap.h"

namespace tavcc::stock_check_bill {

namespace {

// The messages that frame an outcome, by direction.
struct Frames {
  std::string_view done;
  std::string_view failed;
};
constexpr Frames kAuditFrames{"单据[%1]审核成功!", "单据[%1]审核失败!"};
constexpr Frames kUnAuditFrames{"单据[%1]反审核成功!", "单据[%1]反审核失败!"};

// The language of the messages, as the host publishes it.
std::string Language(Host& host) {
  return ToText(GetHostValue(host, "LanguageID", "CHS"));
}

std::string Localized(Host& host, std::string_view text) {
  return LoadResText(host, text, Language(host));
}

std::string Framed(Host& host, std::string_view frame, const std::string& bill_no) {
  return LoadResTextFmt(host, frame, Language(host), std::array{Value(bill_no)});
}

// What is read of the bill before the rows are closed and the checks ask on.
struct Head {
  Value status;
  Value voucher_id;
  Value date;
  Value biller_id;
};

Verdict CheckAudit(PlugIn& self, std::string_view sDsn, const Head& head) {
  if (NumberOrZero(head.status) >= bill_status::kAudited) {
    return Refuse("该单据已经审核,不允许再次审核!");
  }
  Verdict verdict = CheckMaker(self, sDsn, head.biller_id);
  if (!verdict.passed) return verdict;
  return CheckPeriod(self, sDsn, head.date);
}

Verdict CheckUnAudit(const Head& head) {
  const double status = NumberOrZero(head.status);
  if (status == bill_status::kNotAudited) return Refuse("该单据未审核，不允许反审核！");
  if (status == bill_status::kLinked) return Refuse("该单据已被其他单据关联，不允许反审核！");
  // Negative ids count as well: deliberately unlike the other bill classes.
  if (NumberOrZero(head.voucher_id) != 0) {
    return Refuse("该单据已生成凭证，不允许反审核！");
  }
  return Pass();
}

std::string WriteStatement(bool audit, int16_t user_id, int32_t bill_id) {
  if (audit) {
    return Cat("Update T_CC_StockBill set FStatus=1,FCheckerID=", user_id,
               ",FCheckDate= getdate() where FID= ", bill_id, "\n");
  }
  return Cat("Update T_CC_StockBill set FStatus=0,FCheckerID=0,FCheckDate=NULL where FID= ",
             bill_id, "\n");
}

// Nothing where there is no such bill. `bill_no` is set as soon as it is known.
std::optional<Head> ReadHead(Connection& cn, int32_t bill_id, std::string& bill_no) {
  const RecordsetPtr head = cn.Execute(
      Cat("Select FStatus,FVoucherID,FDate,FBillerID From T_CC_StockBill where FID =", bill_id));
  if (head->AtEnd() || head->AtStart()) return std::nullopt;
  head->MoveFirst();
  bill_no = ToText(head->Field("FBillNo"));  // not selected: deliberate, see the header
  return Head{head->Field("FStatus"), head->Field("FVoucherID"), head->Field("FDate"),
              head->Field("FBillerID")};
}

// Checks and writes. `bill_no` as in ReadHead.
Verdict Act(PlugIn& self, std::string_view sDsn, int32_t bill_id, bool audit,
            std::string& bill_no) {
  self.InitObjects(sDsn);
  self.db_context().ReadyFirst();
  const int16_t user_id = self.user_id();
  const ConnectionPtr cn = self.db_context().GetConnection();
  const auto head = ReadHead(*cn, bill_id, bill_no);
  if (!head) return Refuse("该单据不存在，可能已经被删除！");

  Verdict verdict = audit ? CheckAudit(self, sDsn, *head) : CheckUnAudit(*head);
  if (!verdict.passed) return verdict;
  cn->Execute(WriteStatement(audit, user_id, bill_id));
  self.db_context().ReadySecond();
  return Pass();
}

std::string FailureMessage(PlugIn& self, std::string_view frame, const std::string& bill_no,
                           std::string_view reason) {
  const std::string localized = Localized(self.host(), reason);
  ReadyAfterFailure(self);
  return Framed(self.host(), frame, bill_no) + localized;
}

// Concatenation takes a null for the empty text.
std::string NotePart(const Dictionary& note, std::string_view key) {
  const Value value = note.Item(key);
  return value.IsNull() ? "" : ToText(value);
}

std::string NotesBatch(const Vector& notes, int32_t bill_id) {
  std::string batch;
  for (int i = notes.LBound(); i <= notes.UBound(); ++i) {
    const auto note = ToObject<Dictionary>(notes.Item(i));
    CatTo(batch, " Update t_CC_StockBillEntry Set FNote='", NotePart(*note, "FNote"),
          "' Where FID=", bill_id, "And FEntryID=", NotePart(*note, "FEntryID"),
          "\n");  // no blank before "And": as stored
  }
  return batch;
}

}  // namespace

int32_t CheckBill(PlugIn& self, std::string_view sDsn, int32_t lngInterID, int32_t CheckDir,
                  std::string& strReturnMsg, Dictionary*, Dictionary*) {
  const bool audit = CheckDir == kAudit;
  const Frames& frames = audit ? kAuditFrames : kUnAuditFrames;
  std::string bill_no;
  strReturnMsg = Trap(
      [&] {
        const Verdict verdict = Act(self, sDsn, lngInterID, audit, bill_no);
        return verdict.passed ? Framed(self.host(), frames.done, bill_no)
                              : FailureMessage(self, frames.failed, bill_no, verdict.message);
      },
      [&](const AutomationError& error) {
        // Where the host cannot even tell its language, the bare description has to do.
        return Trap(
            [&] { return FailureMessage(self, frames.failed, bill_no, error.description()); },
            [&](const AutomationError&) { return error.description(); });
      });
  return 0;
}

bool SaveNote(PlugIn& self, std::string_view sDsn, int32_t lngInterID, ObjectPtr vctEntryNotes) {
  return Trap(
      [&] {
        self.InitObjects(sDsn);
        self.db_context().ReadyFirst();
        const ConnectionPtr cn = self.db_context().GetConnection();
        if (vctEntryNotes != nullptr) {
          const auto notes = ToObject<Vector>(vctEntryNotes);
          const std::string batch = NotesBatch(*notes, lngInterID);
          if (!batch.empty()) cn->Execute(batch);
        }
        self.db_context().ReadySecond();
        return true;
      },
      [](const AutomationError&) { return false; });
}

}  // namespace tavcc::stock_check_bill
