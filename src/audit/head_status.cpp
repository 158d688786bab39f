#include "audit/head_status.h"

#include "foundation/bill_kinds.h"
#include "foundation/text.h"

namespace tavcc {

namespace {

using namespace class_type;

// Follows the class alone; the table that the bill's dictionary names plays no part here.
std::string_view HeadTable(int32_t class_type) {
  switch (class_type) {
    case kSalesOrder:
      return "t_XS_Order";
    case kPurchaseOrder:
      return "t_CG_Order";
    case kAssembly:
    case kDisassembly:
      return "T_CC_ZZCX";
    default:
      return "T_CC_StockBill";
  }
}

// The reversed estimates share the state of the purchase.
bool TakesEstimatesAlong(const AuditedBill& bill) {
  return bill.class_type == kPurchaseBill && bill.bill_type == bill_types::kPurchaseOfEstimated;
}

}  // namespace

void SetCheckStatus(Connection& connection, const AuditedBill& bill, int32_t user_id) {
  std::string sql = Cat("Update ", HeadTable(bill.class_type), " set ");
  if (bill.IsUnAudit()) {
    CatTo(sql, "FCheckerID=0,FCheckDate=Null,FStatus=0");
  } else {
    CatTo(sql, "FCheckerID=", user_id, ",FCheckDate=GetDate(),FStatus=1");
  }
  CatTo(sql, "  where FID=", bill.bill_id, "\r\n");  // two blanks: as stored
  if (TakesEstimatesAlong(bill)) {
    CatTo(sql,
          "Update v1 Set v1.FCheckerID=v2.FCheckerID,v1.FCheckDate=v2.FCheckDate,"
          "v1.FStatus=v2.FStatus \r\n"
          "From t_CC_StockBill v1 Inner Join ICRelations r1 On v1.FClassTypeID=r1.FClassTypeID "
          "And v1.FID=r1.FID \r\n"
          "Inner Join ICRelations r2 On r1.FGroupNo=r2.FGroupNo \r\n"
          "Inner Join t_CC_StockBill v2 On v2.FClassTypeID=r2.FClassTypeID And v2.FID=r2.FID \r\n"
          "Where v2.FClassTypeID=1020002 And v1.FBillTypeID=2032 And v2.FID=",
          bill.bill_id);
  }
  connection.Execute(sql);
}

}  // namespace tavcc
