#include "registry/bill_ladder.h"

#include <string>
#include <utility>

#include "audit/batch_audit.h"
#include "billtypes/cls_cx.h"
#include "billtypes/cls_db.h"
#include "billtypes/cls_zz.h"
#include "checks/overdue.h"
#include "checks/related_bills.h"
#include "foundation/bill_kinds.h"
#include "foundation/conversions.h"

namespace tavcc {

namespace {

// A gate that needs nothing before it.
LoneGate PlainGate(std::string_view name, std::string_view method, std::function<Verdict()> ask) {
  return {name, method, [ask = std::move(ask)] { return ask; }};
}

// Orders have no class of their own.
Ladder OwnGates(PlugIn& self, const Dictionary& bill, int16_t direction, std::string_view sDsn) {
  const int32_t bill_id = ToLong(bill.Item("BillInterID"));
  switch (ToLong(bill.Item("ClassTypeID"))) {
    case class_type::kPurchaseOrder:
    case class_type::kSalesOrder:
      return {};
    case class_type::kAssembly:
      return cls_zz::GatesOf(self, bill_id, sDsn, direction);
    case class_type::kDisassembly:
      return cls_cx::GatesOf(self, bill_id, direction);
    default:
      return cls_db::GatesOf(self, bill_id, direction);
  }
}

}  // namespace

BillLadder LadderOf(PlugIn& self, const DictionaryPtr& bill, int16_t direction,
                    std::string_view sDsn) {
  std::string dsn(sDsn);
  return {.batch = BatchAuditGates(self, *bill, direction, sDsn),
          .host = {PlainGate("overdue amounts", "PublicSysInfo.CheckUnCheckAmountOutOfDate",
                             [=, &self] { return OverdueGate(self, *bill, direction, dsn); }),
                   PlainGate("invoices", "PublicSysInfo.WhetherBillInvoiceStatus",
                             [=, &self] {
                               return direction == kUnAudit ? InvoiceGate(self, *bill) : NotAsked();
                             })},
          .own = OwnGates(self, *bill, direction, dsn)};
}

}  // namespace tavcc
