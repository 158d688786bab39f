#include "audit/order_quantities.h"

#include "foundation/host_services.h"
#include "foundation/text.h"

namespace tavcc {

namespace {

// The steel trade also keeps the quantities in base units.
constexpr int32_t kSteel = 1;

// What is still to be had (FInTotalQty) falls as a sales order's quantity rises, deliberately
// unlike a purchase order's.
std::string SalesStatement(int32_t f, int32_t id) {
  return Cat("Update  a set a.FXSOrderQty=a.FXSOrderQty+(", f,
             "*b.FQty/a.FCoefficient),a.FInTotalQty=a.FInTotalQty-(", f,
             "*b.FQty/a.FCoefficient) from t_XS_OrderEntry a left join (select "
             "FItemID,FAuxPropID,sum(FQty) as FQty from t_XS_OrderEntry where FID=",
             id,
             " group by FItemID,FAuxPropID) b on a.FItemid=b.FItemid and "
             "a.FAuxPropID=b.FAuxPropID Where a.FID= ",
             id);
}

std::string SteelSalesStatement(int32_t f, int32_t id) {
  return Cat("Update  a set a.FXSOrderQty=a.FXSOrderQty+(", f,
             "*b.FQty/a.FCoefficient),a.FBaseXSOrderQty=a.FBaseXSOrderQty+(", f,
             "*b.FQty),a.FInTotalQty=a.FInTotalQty-(", f,
             "*b.FQty/a.FCoefficient),a.FBaseInTotalQty=a.FBaseInTotalQty-(", f,
             "*b.FQty) from t_XS_OrderEntry a left join (select FItemID,FAuxPropID,sum(FQty) as "
             "FQty from t_XS_OrderEntry where FID=",
             id,
             " group by FItemID,FAuxPropID) b on a.FItemid=b.FItemid and "
             "a.FAuxPropID=b.FAuxPropID Where a.FID= ",
             id);
}

std::string PurchaseStatement(int32_t f, int32_t id) {
  return Cat("Update  a set a.FCgOrderQty=a.FCgOrderQty+(", f,
             "*b.FQty/a.FCoefficient),a.FInTotalQty=a.FInTotalQty+(", f,
             "*b.FQty/a.FCoefficient) from t_CG_OrderEntry a left join (select "
             "FItemID,FAuxPropID,sum(FQty) as FQty from t_CG_OrderEntry where FID=",
             id,
             " group by FItemID,FAuxPropID) b on a.FItemid=b.FItemid and "
             "a.FAuxPropID=b.FAuxPropID Where a.FID= ",
             id);
}

std::string SteelPurchaseStatement(int32_t f, int32_t id) {
  return Cat("Update  a set a.FCgOrderQty=a.FCgOrderQty+(", f,
             "*b.FQty/a.FCoefficient),a.FBaseCgOrderQty=a.FBaseCgOrderQty+(", f,
             "*b.FQty),a.FInTotalQty=a.FInTotalQty+(", f,
             "*b.FQty/a.FCoefficient),a.FBaseInTotalQty=a.FBaseInTotalQty+(", f,
             "*b.FQty) from t_CG_OrderEntry a left join (select FItemID,FAuxPropID,sum(FQty) as "
             "FQty from t_CG_OrderEntry where FID=",
             id,
             " group by FItemID,FAuxPropID) b on a.FItemid=b.FItemid and "
             "a.FAuxPropID=b.FAuxPropID Where a.FID= ",
             id);
}

}  // namespace

void WriteBackOrderQuantities(Host& host, Connection& connection, const AuditedBill& bill) {
  const bool sales = bill.class_type == class_type::kSalesOrder;
  if (!sales && bill.class_type != class_type::kPurchaseOrder) return;

  const bool steel = GetIndustryType(host) == kSteel;
  const int32_t f = bill.check_type;
  const int32_t id = bill.bill_id;
  if (sales) {
    connection.Execute(steel ? SteelSalesStatement(f, id) : SalesStatement(f, id));
  } else {
    connection.Execute(steel ? SteelPurchaseStatement(f, id) : PurchaseStatement(f, id));
  }
}

}  // namespace tavcc
