#include "billtypes/bill_actions.h"

#include "foundation/text.h"
#include "foundation/trap.h"

namespace tavcc {

namespace {

bool Act(PlugIn& self, std::string_view sDsn, const BillAction& action) {
  self.InitObjects(sDsn);
  self.db_context().ReadyFirst();
  const ConnectionPtr cn = self.db_context().GetConnection();
  if (!action.gate(*cn)) {
    if (action.on_refusal == OnRefusal::kClose && cn->State() == Connection::kStateOpen) {
      cn->Close();
    }
    return false;
  }
  action.write(*cn);
  self.db_context().ReadySecond();
  return true;
}

}  // namespace

bool RunBillAction(PlugIn& self, std::string_view sDsn, std::string& message,
                   const BillAction& action) {
  return Trap([&] { return Act(self, sDsn, action); },
              [&](const AutomationError& error) {
                ReadyAfterFailure(self);
                message = error.description();
                return false;
              });
}

void ReadyAfterFailure(PlugIn& self) {
  Trap([&] { return self.db_context().ReadyFirst(), true; },
       [](const AutomationError&) { return false; });
}

std::string AuditStatement(std::string_view head_table, int32_t user_id, int32_t bill_id) {
  return Cat("Update ", head_table, " set FCheckerID=", user_id,
             ",FCheckDate=GetDate(),FStatus=1  where FID=", bill_id);  // two blanks: as stored
}

std::string UnAuditStatement(std::string_view head_table, int32_t bill_id) {
  return Cat("Update ", head_table, " set FCheckerID=0,FCheckDate=Null,FStatus=0",
             "  where FID=", bill_id);  // two blanks: as stored
}

void DeleteFromTables(Connection& cn, std::span<const std::string_view> tables, int32_t bill_id) {
  for (const std::string_view table : tables) {
    cn.Execute(Cat("Delete From", table, " where FID=", bill_id));  // no blank: as stored
  }
}

}  // namespace tavcc
