#include "billtypes/cls_db.h"

#include "billtypes/bill_gates.h"
#include "billtypes/delete_hook.h"
#include "billtypes/save_hook.h"
#include "billtypes/saved_bill.h"
#include "billtypes/serial_numbers.h"
#include "billtypes/standard_bill.h"
#include "foundation/bill_kinds.h"
#include "foundation/host_services.h"
#include "foundation/text.h"

namespace tavcc::cls_db {

namespace {

// The head goes first.
constexpr std::string_view kTableNames[] = {"T_CC_StockBill", "T_CC_StockBillEntry"};
constexpr standard_bill::Tables kTables{kTableNames[0], kTableNames};

constexpr SaveHook kSaveHook{
    .order = SaveOrder::kReadyThenConnection,
    .failure_source = "TavM_CC_PlugIns.cls_DB.AfterSave",
    .failure_text = "当前资料被保存后扩展处理方法出错:",
};

// These bills move goods at cost.
constexpr int32_t kCostBills[] = {class_type::kTransfer, class_type::kCheckGain,
                                  class_type::kCheckLoss};

// Rows whose item is under shelf-life control and that name a batch take production date, shelf
// life and expiry date from the same batch in the same stock: present stock, registered batches,
// audited receipts and issues.
std::string ShelfLifeStatement(int32_t bill_id) {
  return Cat(
      "Update v1 \r\n"
      " Set v1.FKFDate=i.FKFDate,v1.FKFPeriod=i.FKFPeriod,v1.FPeriodDate=i.FPeriodDate \r\n"
      " From t_CC_StockBillEntry v1 \r\n"
      " Inner Join t_ICItem t ON t.FItemID=v1.FItemID And t.FIsKFPeriod=1 \r\n"
      " Inner Join (Select * From (Select FItemID,FStockID,FBatchNo,FKFDate,FKFPeriod,FPeriodDate"
      " From T_CC_Stock Where IsNull(FBatchNo,'')<>'' \r\n"
      " Union Select FItemID,FStockID,FBatchNo,FKFDate,FKFPeriod,FPeriodDate"
      " From T_CC_Stock_batchno Where IsNull(FBatchNo,'')<>'' \r\n"
      " Union Select FItemID,FStockID,FBatchNo,FKFDate,FKFPeriod,FPeriodDate"
      " From vw_cc_Receive Where IsNull(FStatus,0)>0 And IsNull(FBatchNo,'')<>'' \r\n"
      " Union Select FItemID,FStockID,FBatchNo,FKFDate,FKFPeriod,FPeriodDate"
      " From vw_cc_Send Where IsNull(FStatus,0)>0 And IsNull(FBatchNo,'')<>'' \r\n"
      " )t Group By FItemID,FStockID,FBatchNo,FKFDate,FKFPeriod,FPeriodDate) i"
      " ON i.FItemID=v1.FItemID And i.FBatchNo=v1.FBatchNo And i.FStockID=v1.FDCStockID \r\n"
      " Where v1.FID = ",
      bill_id, " And ISNUll(v1.FBatchNo,'')<>'' ");
}

std::string CostAsPriceStatement(int32_t bill_id) {
  return Cat(
      "Update v1 \r\n"
      " Set v1.FPrice=v1.FCostPrice,v1.FAmount=v1.FCostAmount \r\n"
      " From t_CC_StockBillEntry v1 \r\n"
      " Inner Join t_CC_StockBill v2 ON v1.FID=v2.FID And v2.FBillTypeID = 1 \r\n"
      " Where v1.FID = ",
      bill_id, " ");
}

}  // namespace

bool AuditBill(PlugIn& self, int32_t lngFID, int32_t lngUserID, std::string_view sDsn,
               std::string& strReturnMsg) {
  return standard_bill::AuditBill(self, kTables, lngFID, lngUserID, sDsn, strReturnMsg);
}

bool DeleteBill(PlugIn& self, int32_t lngFID, std::string_view sDsn, std::string& strReturnMsg) {
  return standard_bill::DeleteBill(self, kTables, lngFID, sDsn, strReturnMsg);
}

bool UnAuditBill(PlugIn& self, int32_t lngFID, std::string_view sDsn, std::string& strReturnMsg) {
  return standard_bill::UnAuditBill(self, kTables, lngFID, sDsn, strReturnMsg);
}

bool VerifyDataBeforeAudit(PlugIn&, int32_t lngFID, Connection& cn, std::string& strReturnMsg) {
  return standard_bill::VerifyDataBeforeAudit(kTables, lngFID, cn, strReturnMsg);
}

bool VerifyDataBeforeDelete(PlugIn&, int32_t lngFID, Connection& cn, std::string& strReturnMsg) {
  return standard_bill::VerifyDataBeforeDelete(kTables, lngFID, cn, strReturnMsg);
}

bool VerifyDataBeforeUnAudit(PlugIn&, int32_t lngFID, Connection& cn, std::string& strReturnMsg) {
  return standard_bill::VerifyDataBeforeUnAudit(kTables, lngFID, cn, strReturnMsg);
}

Ladder GatesOf(PlugIn& self, int32_t lngFID, int32_t direction) {
  return direction == kAudit
             ? GatesBeforeAudit(self, kTables.head, lngFID, "cls_DB.VerifyDataBeforeAudit")
             : GatesBeforeUnAudit(self, kTables.head, lngFID, "cls_DB.VerifyDataBeforeUnAudit");
}

Value AfterSave(PlugIn& self, std::string_view sDsn, Dictionary& dctClassType, Vector&,
                Dictionary& dctTableInfo, Dictionary& dctData, Dictionary&) {
  return RunAfterSave(self, sDsn, kSaveHook, [&](Connection& cn) {
    const int32_t bill_id = FieldNumber(dctData.Item("FID"));
    const int32_t class_type = FieldNumber(dctClassType.Item("FTemplateID"));
    if (class_type == class_type::kPriceAdjustment) cn.Execute(ShelfLifeStatement(bill_id));
    if (IsInArray(class_type, kCostBills)) {
      cn.Execute(CostAsPriceStatement(bill_id));
      SaveSerialNumData(cn, dctTableInfo, dctData);
    }
  });
}

Value BeforeDel(PlugIn& self, std::string_view sDsn, int32_t nClassID, Dictionary&,
                int32_t nInterID) {
  return RunBeforeDel(self, sDsn, nClassID, nInterID, "t_CC_StockBill",
                      "TavM_CC_PlugIns.cls_DB.BeforeDel");
}

}  // namespace tavcc::cls_db
