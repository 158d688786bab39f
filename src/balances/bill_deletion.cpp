#include "balances/bill_deletion.h"

#include "foundation/bill_kinds.h"
#include "foundation/conversions.h"
#include "foundation/text.h"
#include "foundation/trap.h"

namespace tavcc {

namespace {

// The head goes before its entries.
constexpr std::string_view kTableKeys[] = {"HeadTableName", "Entry1TableName", "Entry2TableName"};

bool Delete(PlugIn& self, Dictionary& oDict, std::string_view sDsn, std::string& strReturnMsg) {
  self.InitObjects(sDsn);
  self.db_context().ReadyFirst();
  const ConnectionPtr cn = self.db_context().GetConnection();
  const int32_t bill_id = ToLong(oDict.Item("BillInterID"));
  const std::string head_table = ToText(oDict.Item("HeadTableName"));
  const Verdict verdict = CheckBeforeDelete(*cn, head_table, bill_id);
  if (!verdict.passed) {
    strReturnMsg = verdict.message;
    if (cn->State() == Connection::kStateOpen) cn->Close();
    return false;
  }
  for (const std::string_view key : kTableKeys) {
    // Only the key's presence counts: an empty name goes into the statement as it is.
    if (!oDict.Lookup(key)) continue;
    cn->Execute(Cat("Delete From ", ToText(oDict.Item(key)), " where FID=", bill_id));
  }
  self.db_context().ReadySecond();
  return true;
}

}  // namespace

Verdict CheckBeforeDelete(Connection& connection, std::string_view head_table, int32_t bill_id) {
  const RecordsetPtr head =
      connection.Execute(Cat("Select FStatus,FVoucherID From ", head_table,
                             "  where FID=", bill_id));  // two blanks: as stored
  if (head->AtEnd()) return Refuse("该单据已被删除！");
  if (NumberOrZero(head->Field("FStatus")) != bill_status::kNotAudited) {
    return Refuse("该单据已被审核，不能删除！");
  }
  if (NumberOrZero(head->Field("FVoucherID")) > 0) return Refuse("该单据已生成凭证，不能删除！");
  return Pass();
}

bool VerifyDataBeforeDelete(PlugIn&, int32_t lngFID, Connection& cn, std::string& strReturnMsg,
                            std::string_view HeadTableName) {
  return Trap(
      [&] {
        Verdict verdict = CheckBeforeDelete(cn, HeadTableName, lngFID);
        if (!verdict.passed) strReturnMsg = std::move(verdict.message);
        return verdict.passed;
      },
      [&](const AutomationError& error) {
        strReturnMsg = error.description();
        return false;
      });
}

bool DeleteBill(PlugIn& self, Dictionary& oDict, std::string_view sDsn, std::string& strReturnMsg) {
  return Trap([&] { return Delete(self, oDict, sDsn, strReturnMsg); },
              [&](const AutomationError& error) {
                strReturnMsg = error.description();
                return false;
              });
}

}  // namespace tavcc
