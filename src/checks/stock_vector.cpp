#include "checks/stock_vector.h"

#include <optional>
#include <string>

#include "foundation/bill_kinds.h"
#include "foundation/conversions.h"
#include "foundation/dictionary.h"
#include "foundation/error.h"
#include "foundation/text.h"

namespace tavcc {

namespace {

using namespace class_type;

// Whether the quantity of a line leaves the warehouse that it names as its destination. Lines of
// other classes are not loaded.
std::optional<bool> LeavesDestination(int32_t class_type) {
  switch (class_type) {
    case kAssembly:
    case kDisassembly:
    case kPurchaseBill:
      return false;
    case kTransfer:
    case kPurchaseRebate:
    case kSalesBill:
    case kConsignment:
    case kSalesRebate:
    case kOtherIssue:
      return true;
    default:
      return std::nullopt;
  }
}

// ---- Reading an entry: what is left empty takes its default ------------------------------------

// A text of blanks is a value like any other.
bool IsLeftEmpty(const Value& value) {
  return value.IsEmpty() || value.IsNull() || (value.IsText() && value.text().empty());
}

int32_t LongItem(const Dictionary& entry, std::string_view key) {
  const Value value = entry.Item(key);
  return IsLeftEmpty(value) ? 0 : ToLong(value);
}

Decimal DecimalItem(const Dictionary& entry, std::string_view key, const Decimal& fallback) {
  const Value value = entry.Item(key);
  return IsLeftEmpty(value) ? fallback : ToDecimal(value);
}

std::string TextItem(const Dictionary& entry, std::string_view key) {
  const Value value = entry.Item(key);
  return IsLeftEmpty(value) ? "" : ToText(value);
}

// "YYYY-MM-DD"
std::string DayItem(const Dictionary& entry, std::string_view key) {
  const Value value = entry.Item(key);
  return IsLeftEmpty(value) ? "1900-01-01" : ToDate(value).ToText().substr(0, 10);
}

// The price of the base unit, to the ten decimals that the column keeps.
Decimal BasePrice(const Dictionary& entry) {
  const Decimal price = DecimalItem(entry, "FPrice", 0);
  const Decimal coefficient = DecimalItem(entry, "FCoefficient", 1);
  if (coefficient.IsZero()) throw AutomationError(11, "", "Division by zero");
  const auto quotient = Decimal::Divide(price, coefficient, 11);
  const auto rounded = quotient ? quotient->Rescaled(10) : std::nullopt;
  if (!rounded) throw AutomationError(RuntimeError::kOverflow);
  return *rounded;
}

// ---- Staging -----------------------------------------------------------------------------------

// Adds one row for the warehouse that the entry names under `stock_key`, if it names one.
void StageRow(std::string& inserts, const Dictionary& entry, std::string_view stock_key,
              bool leaves) {
  if (!entry.Lookup(stock_key)) return;
  const Decimal quantity = DecimalItem(entry, "FQty", 0);
  if (!inserts.empty()) inserts += '\n';
  CatTo(inserts, "INSERT INTO #TavTempBill0622 values(", LongItem(entry, "Fitemid"), ",'",
        TextItem(entry, "FBatchNo"), "',", LongItem(entry, "FAuxPropID"), ",",
        LongItem(entry, stock_key), ",", LongItem(entry, "FKFPeriod"), ", '",
        DayItem(entry, "FKFDate"), "','", DayItem(entry, "FPeriodDate"), "' ,",
        leaves ? quantity.Negated() : quantity, ",", DecimalItem(entry, "FSecQty", 0), ",",
        BasePrice(entry), ",'", TextItem(entry, "FBatchNoIndex"), "',",
        LongItem(entry, "ClassTypeID"), ")");
}

void CreateStagingTable(Connection& connection) {
  connection.Execute(
      "if object_id('tempdb.dbo.#TavTempBill0622') is not null drop table [dbo].[#TavTempBill0622] "
      "\n"
      "CREATE TABLE #TavTempBill0622("
      "FItemID INT NOT NULL DEFAULT(0),"
      "FBatchNo NVARCHAR(255) NOT NULL DEFAULT(''),"
      "FAuxPropID INT NOT NULL DEFAULT(0),"
      "FStockID INT NOT NULL DEFAULT(0),"
      "FKFPeriod INT NOT NULL DEFAULT(0),"
      "FKFDate VARCHAR(20) NOT NULL DEFAULT(''),"
      "FPeriodDate VARCHAR(20) NOT NULL DEFAULT(''),"
      "FQty DECIMAL(28,10) NOT NULL DEFAULT(0),"
      "FSecQty DECIMAL(28,10) NOT NULL DEFAULT(0),"
      "FPrice DECIMAL(28,10) NOT NULL DEFAULT(0),"
      "FBatchNoIndex VARCHAR(30) NOT NULL DEFAULT(''),"
      "FClassTypeID int not null default(0))");
}

void CopyStagedRows(Connection& connection, int32_t bill_id) {
  connection.Execute(
      Cat("INSERT INTO #TavTempBill(FBrNo,FInterID,FEntryID,FTranType,FItemID,FBatchNo,\r\n"
          "FAuxPropID,FStockID,FStockPlaceID,FKFPeriod,FKFDate,FPeriodDate,FQty,FSecQty,Fprice,"
          "FBatchNoIndex)\r\n"
          " SELECT '','",
          bill_id,
          "','',0 AS FTranType,u1.FItemID,ISNULL(u1.FBatchNo,'') AS FBatchNo,\r\n"
          " u1.FAuxPropID,ISNULL(u1.FStockID ,0) AS FDCStockID,0 AS FDCSPID,u1.FKFPeriod ,\r\n"
          " u1.FKFDate AS FKFDate,\r\n"
          " u1.FPeriodDate  AS FPeriodDate,\r\n"
          "u1.FQty AS FQty,u1.FSecQty AS FSecQty,u1.FPrice, u1.FBatchNoIndex  AS "
          "FBatchNoIndex\r\n"
          " FROM  #TavTempBill0622 u1 Inner Join t_icItem u3 On u1.FItemID=u3.FItemID \r\n"));
}

}  // namespace

void LoadBillFromVector(Connection& connection, int32_t class_type, int32_t bill_id,
                        const Vector& entries) {
  const std::optional<bool> leaves = LeavesDestination(class_type);
  if (!leaves) return;
  CreateStagingTable(connection);
  std::string inserts;
  const int count = entries.Size();
  for (int i = 1; i <= count; ++i) {
    const auto entry = ToObject<Dictionary>(entries.Item(i));
    StageRow(inserts, *entry, "FSCStockID", false);
    StageRow(inserts, *entry, "FDCStockID", *leaves);
  }
  if (!inserts.empty()) connection.Execute(inserts);
  CopyStagedRows(connection, bill_id);
}

}  // namespace tavcc
