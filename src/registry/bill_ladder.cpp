#include "registry/bill_ladder.h"

#include <string>
#include <utility>
#include <vector>

#include "audit/batch_audit.h"
#include "checks/overdue.h"
#include "checks/related_bills.h"
#include "foundation/bill_kinds.h"
#include "foundation/conversions.h"
#include "foundation/host_services.h"
#include "registry/class_registry.h"

namespace tavcc {

namespace {

// A gate that needs nothing before it.
LoneGate PlainGate(std::string_view name, std::string_view method, std::function<Verdict()> ask) {
  return {name, method, [ask = std::move(ask)] { return ask; }};
}

// A method whose result is the verdict and whose last parameter is the message.
Verdict Call(PlugIn& self, std::string_view class_name, std::string_view method_name,
             std::vector<Value> arguments) {
  const ClassDescription& cls = *FindClass(class_name);
  const Value passed = Invoke(cls, *FindMethod(cls, method_name), self, arguments);
  return ToBoolean(passed) ? Pass() : Refuse(ToText(arguments.back()));
}

// The plug-in of an assembly takes the dictionary, those of the others id and connection.
Ladder OwnGates(PlugIn& self, const DictionaryPtr& bill, int16_t direction, std::string sDsn) {
  constexpr int32_t kOrders[] = {class_type::kPurchaseOrder, class_type::kSalesOrder};
  const int32_t class_type = ToLong(bill->Item("ClassTypeID"));
  const int32_t bill_id = ToLong(bill->Item("BillInterID"));
  if (IsInArray(class_type, kOrders)) return {};
  if (class_type == class_type::kAssembly) {
    if (direction == kAudit) {
      return {PlainGate("bill by itself", "cls_ZZ.VerifyDataBeforeAudit", [=, &self] {
        return Call(self, "cls_ZZ", "VerifyDataBeforeAudit", {ObjectPtr(bill), sDsn, ""});
      })};
    }
    return {PlainGate("bill by itself", "cls_ZZ.VerifyDataBeforeUnAudit", [=, &self] {
      return Call(self, "cls_ZZ", "VerifyDataBeforeUnAudit", {bill_id, sDsn, ""});
    })};
  }
  const bool disassembly = class_type == class_type::kDisassembly;
  const auto gate = [&](std::string_view full_name) {
    return PlainGate("bill by itself", full_name, [=, &self] {
      const ConnectionPtr cn = self.db_context().GetConnection();
      const size_t dot = full_name.find('.');
      return Call(self, full_name.substr(0, dot), full_name.substr(dot + 1),
                  {bill_id, ObjectPtr(cn), ""});
    });
  };
  if (direction == kAudit) {
    return {gate(disassembly ? "cls_CX.VerifyDataBeforeAudit" : "cls_DB.VerifyDataBeforeAudit")};
  }
  return {gate(disassembly ? "cls_CX.VerifyDataBeforeUnAudit" : "cls_DB.VerifyDataBeforeUnAudit")};
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
          .own = OwnGates(self, bill, direction, dsn)};
}

}  // namespace tavcc
