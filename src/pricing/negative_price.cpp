#include "pricing/negative_price.h"

#include <string>

#include "foundation/bill_kinds.h"
#include "foundation/conversions.h"
#include "foundation/text.h"

namespace tavcc {

namespace {

using namespace class_type;

// The lines to look at, up to the list of bill ids; the empty text for a class that is not checked.
std::string_view LinesOf(int32_t class_type) {
  switch (class_type) {
    case kSalesBill:
    case kConsignment:
    case kCheckLoss:
      return "Select u.FItemID,u.FSCStockID As FStockID,u.FBatchNo Into #TempNegItem \r\n"
             "From t_CC_StockBillEntry u Inner Join t_CC_StockBIll v On v.FID=u.FID \r\n"
             "Inner Join t_ICItem i On u.FItemID=i.FItemID And i.FTrack IN(76,80)\r\n"
             "Inner Join t_Stock s On u.FSCStockID=s.FItemID And s.FTypeID<>502 \r\n"
             "Where IsNull(v.FStatus,0)=0 And u.FID In(0,";
    case kDisassembly:
      return "Select u.FItemID,u.FDCStockID As FStockID,u.FBatchNo Into #TempNegItem \r\n"
             "From t_CC_ZZCX_Entry u Inner Join t_CC_ZZCX v On v.FID=u.FID \r\n"
             "Inner Join t_ICItem i On u.FItemID=i.FItemID And i.FTrack IN(76,80)\r\n"
             "Inner Join t_Stock s On u.FDCStockID=s.FItemID And s.FTypeID<>502 \r\n"
             "Where IsNull(v.FStatus,0)=0 And u.FID In(0,";
    default:
      return "";
  }
}

constexpr std::string_view kCostScan =
    ")\r\n\r\n"
    "If Object_ID('temp..#TempItemID') Is Not Null Drop Table #TempItemID \r\n"
    "Create Table #TempItemID(FItemID int) \r\n\r\n"
    "Declare @StockID int,@ItemID int,@BatchNo varchar(80),@Price Decimal(28,10) \r\n"
    "Declare MyCur Cursor  For \r\n"
    "Select * From #TempNegItem  \r\n"
    "Open MyCur   \r\n\r\n"
    "Fetch next From MyCur Into @ItemID,@StockID,@BatchNo \r\n"
    "While @@Fetch_Status=0 \r\n"
    "Begin \r\n"
    "  Exec sp_GetLastCost @StockID,@ItemID,@BatchNo,@Price Output \r\n"
    "  If IsNull(@Price,0)<=0  Insert Into #TempItemID Values(@ItemID)  \r\n"
    "  Fetch next From MyCur Into @ItemID,@StockID,@BatchNo \r\n"
    "End \r\n"
    "Close MyCur \r\n"
    "DealLocate MyCur ";

// The bill type's text is searched for in the stored list. A bill without one is not checked: two
// commas in a row are not in the list.
bool IsChecked(const Value& bill_type) {
  constexpr std::string_view kChecked = ",3001,3010,0,";
  const std::string text = bill_type.IsNull() ? "" : ToText(bill_type);
  return kChecked.find(Cat(",", text, ",")) != std::string_view::npos;
}

// The list starts with the 0 that the lines' text ends in, so it is well formed without any bill.
std::string CostScan(std::string_view lines, const Vector& bills) {
  std::string batch(lines);
  for (int i = 1; i <= bills.Size(); ++i) {
    const auto bill = ToObject<Dictionary>(bills.Item(i));
    if (!IsChecked(bill->Item("BillType"))) continue;
    CatTo(batch, ToLong(bill->Item("BillInterID")), ",");
  }
  batch.pop_back();  // the last comma
  return batch.append(kCostScan);
}

DictionaryPtr ItemOf(Host& host, const Recordset& row) {
  const DictionaryPtr item = host.NewDictionary();
  for (const std::string_view key : {"FItemID", "FNumber", "FName", "FModel"}) {
    item->SetItem(key, row.Field(key));
  }
  return item;
}

}  // namespace

bool CheckNegPrice(PlugIn& self, std::string_view sDsn, Vector& vctBill, VectorPtr& NegVct) {
  self.InitObjects(sDsn);
  const ConnectionPtr cn = self.db_context().GetConnection();
  self.db_context().ReadySecond();
  const auto first = ToObject<Dictionary>(vctBill.Item(1));
  const std::string_view lines = LinesOf(ToLong(first->Item("ClassTypeID")));
  if (lines.empty()) {
    NegVct = self.host().NewVector();
    return false;
  }
  const std::string scan = CostScan(lines, vctBill);
  NegVct = self.host().NewVector();
  cn->Execute(scan);
  const RecordsetPtr items = cn->OpenClientRecordset(
      "Set NOCount On \r\n"
      "Select Distinct t.FItemID,i.FNumber,i.FName,IsNull(i.FModel,'') As FModel From "
      "#TempItemID t Inner Join t_ICItem i On t.FItemID=i.FItemID \r\n"
      "Drop Table #TempNegItem   Drop Table #TempItemID     Set NOCount Off ");
  for (; !items->AtEnd(); items->MoveNext()) NegVct->Add(ItemOf(self.host(), *items));
  return NegVct->Size() > 0;
}

}  // namespace tavcc
