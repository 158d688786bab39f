#include "audit/negative_stock.h"

#include "checks/stock_quantity_loader.h"
#include "checks/stock_quantity_query.h"
#include "foundation/conversions.h"
#include "foundation/error.h"

namespace tavcc {

namespace {
constexpr int32_t kSpecificIdentification = 80;  // a value of t_ICItem.FTrack
}  // namespace

StockAnswer CheckNegativeStock(PlugIn& self, Connection& connection, const AuditedBill& bill,
                               std::string_view sDsn, bool allow_negative, int16_t,
                               std::vector<int32_t>& negative_items) {
  const auto tables = ResolveBillTables(bill.class_type, bill.check_type);
  if (!tables) return StockAnswer::kEnough;
  std::string message;
  LoadBillFromDatabase(self.host(), connection, *tables, bill.class_type, bill.bill_id,
                       bill.check_type, message);
  if (!message.empty()) throw AutomationError(RuntimeError::kInternalError, message);

  const RecordsetPtr rows =
      QueryNegativeStock(connection, CountsUnauditedIssues(self.host(), sDsn));
  std::vector<int32_t> items;
  for (; !rows->AtEnd(); rows->MoveNext()) {
    if (LongOrZero(rows->Field("Ftrack")) == kSpecificIdentification) {
      return StockAnswer::kShortOfBatch;
    }
    items.push_back(ToLong(rows->Field("FITEMID")));
  }
  if (!items.empty() && !allow_negative) return StockAnswer::kShort;
  negative_items.insert(negative_items.end(), items.begin(), items.end());
  return StockAnswer::kEnough;
}

}  // namespace tavcc
