// The gates of the bill classes: may this bill be audited, deleted, un-audited?
//
// They judge by the head row alone: its FStatus (0 not audited, 1 audited, 2 audited and linked by
// other bills) and its FVoucherID (greater than 0: an accounting voucher was made from the bill). A
// null counts as 0. The gate before a deletion is that of the generic deletion, CheckBeforeDelete.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "balances/bill_deletion.h"
#include "foundation/connection.h"
#include "foundation/ladder.h"
#include "foundation/plug_in.h"
#include "foundation/recordset.h"
#include "foundation/trap.h"
#include "foundation/verdict.h"

namespace tavcc {

// Each sends one statement for the head row of `bill_id` in `head_table`. Errors: the connection's.
Verdict CheckBeforeAudit(Connection& connection, std::string_view head_table, int32_t bill_id);
Verdict CheckBeforeUnAudit(Connection& connection, std::string_view head_table, int32_t bill_id);

// The gates that the two consist of, each to be asked on its own, as gates of the published
// `method`. `self`, whose context is tied to a database when they are asked, must outlive them.
Ladder GatesBeforeAudit(PlugIn& self, std::string_view head_table, int32_t bill_id,
                        std::string_view method);
Ladder GatesBeforeUnAudit(PlugIn& self, std::string_view head_table, int32_t bill_id,
                          std::string_view method);

// One run of the gates over a bill's head row, which is read once, when the first gate needs it.
class HeadGates {
 public:
  using Read = std::function<RecordsetPtr()>;
  explicit HeadGates(Read read) : read_(std::move(read)) {}

  // Before an audit.
  Verdict ExistsForAudit();
  Verdict IsNotAudited();
  Verdict HasNoVoucherForAudit();
  // Before an un-audit.
  Verdict ExistsForUnAudit();
  Verdict IsAudited();
  Verdict HasNoVoucherForUnAudit();

 protected:
  Recordset& Head();
  // The rows are let go of before other questions are asked.
  void LetGo() { head_.reset(); }

 private:
  Read read_;
  RecordsetPtr head_;
};

// A gate as a public method: puts the verdict's message into `message`, the empty one too. An error
// in `check` refuses with its description.
template <class Check>
bool AnswerGate(std::string& message, Check&& check) {
  return Trap(
      [&] {
        Verdict verdict = check();
        message = std::move(verdict.message);
        return verdict.passed;
      },
      [&](const AutomationError& error) {
        message = error.description();
        return false;
      });
}

}  // namespace tavcc
