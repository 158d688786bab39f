#include "checks/overdue.h"

#include "checks/partner_bill.h"
#include "foundation/bill_kinds.h"
#include "foundation/conversions.h"
#include "foundation/host_services.h"
#include "foundation/text.h"
#include "foundation/trap.h"

namespace tavcc {

namespace {

using namespace class_type;

bool NeedsCheck(int32_t bill_type, int16_t direction) {
  constexpr int32_t kOnAudit[] = {2011, 2013, 3001, 3003};
  constexpr int32_t kOtherwise[] = {2012, 3002, 3004};
  if (IsInArray(bill_type, kOnAudit)) return direction == kAudit;
  return IsInArray(bill_type, kOtherwise) && direction != kAudit;
}

// Unaudited bills count too: deliberately unlike the customer's query.
std::string SupplierQuery(int32_t supplier_id) {
  return Cat(
      "Select 'X' "
      "from t_cc_stockbill where FClassTypeID = 1020002 AND FBillTypeID IN (2011,2013) "
      "and FUnCheckAmount > 0 AND FSettleLimitDate < getdate() \r\n"
      "and FSupplyID=",
      supplier_id);
}

// It looks at sales bills, whichever of the three customer classes is being audited.
std::string CustomerQuery(int32_t customer_id) {
  return Cat(
      "Select 'X' "
      "from t_cc_stockbill where FClassTypeID = 1030002 AND FBillTypeID IN (3001,3002) "
      "and FUnCheckAmount > 0 AND FSettleLimitDate < getdate() \r\n"
      "and FCustID=",
      customer_id, " and FStatus>0");
}

std::string CustomerMessage(int32_t class_type) {
  const std::string_view document = class_type == kConsignment  ? "委托代销"
                                    : class_type == kSalesOrder ? "销售订单"
                                                                : "销售单";
  return Cat("截止到今天", document, "存在超期的未收的款项，控制不允许出库");
}

Verdict LookForOverdue(PlugIn& self, const Dictionary& oDict, std::string_view sDsn, bool& Cg) {
  self.InitObjects(sDsn);
  const ConnectionPtr cn = self.db_context().GetConnection();
  self.db_context().ReadySecond();
  if (NumberOrZero(GetICProfile(self.host(), "AlertOverdue", int32_t{0})) == 0) return NotAsked();
  const PartnerBill bill = ReadPartnerBill(oDict);
  switch (bill.class_type) {
    case kPurchaseBill:
      Cg = true;
      if (cn->Execute(SupplierQuery(bill.partner_id))->AtEnd()) return Pass();
      // The doubled word is part of the stored text.
      return Refuse("截止到今天购货单存在存在超期的未付的款项，控制不允许入货");
    case kSalesOrder:
    case kSalesBill:
    case kConsignment:
      Cg = false;
      if (cn->Execute(CustomerQuery(bill.partner_id))->AtEnd()) return Pass();
      return Refuse(CustomerMessage(bill.class_type));
    default:
      return NotAsked();
  }
}

}  // namespace

int16_t WhetherNeedCheckUnCheckAmountOutOfDate(PlugIn& self, std::string_view sDsn,
                                               int16_t intCheckType, Dictionary& oDict) {
  return Trap(
      [&]() -> int16_t {
        const int32_t bill_type = ToLong(oDict.Item("BillType"));
        const int32_t class_type = ToLong(oDict.Item("ClassTypeID"));
        const Value control_point = GetProfile(self.host(), sDsn, "ControlPoint", "IC");
        if (NumberOrZero(control_point) != 1) return 0;
        if (class_type != kPurchaseBill && class_type != kSalesBill) return 0;
        return NeedsCheck(bill_type, intCheckType) ? 1 : 0;
      },
      [](const AutomationError&) -> int16_t { return 0; });
}

int16_t CheckUnCheckAmountOutOfDate(PlugIn& self, Dictionary& oDict, int16_t, std::string_view sDsn,
                                    std::string& strReturnMsg, bool& Cg) {
  return AnswerPartnerCheck(strReturnMsg, [&] { return LookForOverdue(self, oDict, sDsn, Cg); });
}

Verdict OverdueGate(PlugIn& self, Dictionary& oDict, int16_t direction, std::string_view sDsn) {
  if (WhetherNeedCheckUnCheckAmountOutOfDate(self, sDsn, direction, oDict) != 1) return NotAsked();
  bool is_supplier = false;
  return LookForOverdue(self, oDict, sDsn, is_supplier);
}

}  // namespace tavcc
