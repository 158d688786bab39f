#include "checks/credit.h"

#include <optional>

#include "checks/partner_bill.h"
#include "foundation/bill_kinds.h"
#include "foundation/conversions.h"
#include "foundation/host_services.h"
#include "foundation/text.h"
#include "foundation/trap.h"

namespace tavcc {

namespace {

using namespace class_type;

constexpr int32_t kSalesReturn = 3002;

bool NeedsCheck(int32_t class_type, int32_t bill_type, int16_t direction) {
  constexpr int32_t kOnAuditUnlessValueOnly[] = {kPurchaseOrder, kPurchaseRebate, kSalesOrder,
                                                 kSalesRebate,   kOtherReceipt,   kOtherIssue};
  constexpr int32_t kOnAudit[] = {2011, 2013, 2030, 3001, 3003, 3010};
  constexpr int32_t kOtherwise[] = {2012, 2031, 2032, 3002, 3004, 3011};
  if (IsInArray(class_type, kOnAuditUnlessValueOnly)) {
    return direction == kAudit && !IsInArray(bill_type, bill_types::kValueOnly);
  }
  return direction == kAudit ? IsInArray(bill_type, kOnAudit) : IsInArray(bill_type, kOtherwise);
}

struct Partner {
  int32_t id;
  bool is_supplier;
};

// A settlement's partner follows from its bill type: the stored lists are searched for "," and the
// number, so that the beginning of a listed number is found too.
std::optional<bool> SettlesWithSupplier(int32_t bill_type) {
  const std::string wanted = Cat(",", bill_type);
  if (std::string_view(",5024").find(wanted) != std::string_view::npos) return false;
  if (std::string_view(",5025").find(wanted) != std::string_view::npos) return true;
  return std::nullopt;
}

// Whose credit line counts; nothing for a bill that is not checked.
std::optional<Partner> FindPartner(const PartnerBill& bill, const Dictionary& oDict) {
  switch (bill.class_type) {
    case kPurchaseOrder:
    case kPurchaseBill:
    case kPurchaseEstimate:
      return Partner{bill.partner_id, true};
    case kSalesOrder:
    case kSalesBill:
    case kConsignment:
      return Partner{bill.partner_id, false};
    case kOtherReceipt: {
      const int32_t customer = ToLong(oDict.Item("CustID"));
      const int32_t supplier = ToLong(oDict.Item("SupplyID"));
      return Partner{customer == 0 ? supplier : customer, supplier != 0};
    }
    case kOtherIssue: {
      // Here the customer is what makes the partner a supplier: deliberately unlike other receipts.
      const int32_t customer = ToLong(oDict.Item("CustID"));
      const int32_t supplier = ToLong(oDict.Item("SupplyID"));
      return Partner{supplier == 0 ? customer : supplier, customer != 0};
    }
    case kSettlement: {
      const auto with_supplier = SettlesWithSupplier(bill.bill_type);
      if (!with_supplier) return std::nullopt;
      return Partner{bill.partner_id, *with_supplier};
    }
    default:
      return std::nullopt;
  }
}

std::string CreditQuery(const Partner& partner) {
  return Cat(
      "Select IsNull(FCreditAmount,0) as FCreditAmount,"
      "IsNull(FCurComeGoBalance,0) as FCurComeGoBalance "
      " from  ",
      partner.is_supplier ? "t_Supplier" : "t_Organization", "  Where FItemID=", partner.id);
}

// Exact where the amounts fit a decimal, otherwise as doubles. A line of 0 or less is no limit.
bool IsExceeded(const Value& credit, const Value& balance, double amount) {
  const auto exact_credit = ToDecimalIfItFits(credit);
  const auto exact_balance = ToDecimalIfItFits(balance);
  const auto exact_amount = ToDecimalIfItFits(amount);
  if (exact_credit && exact_balance && exact_amount) {
    if (const auto sum = Decimal::Add(*exact_balance, *exact_amount)) {
      return *exact_credit > 0 && *sum > *exact_credit;
    }
  }
  return ToDouble(credit) > 0 && ToDouble(balance) + amount > ToDouble(credit);
}

Verdict HoldAgainstCredit(PlugIn& self, const Dictionary& oDict, std::string_view sDsn, bool& Cg) {
  self.InitObjects(sDsn);
  const ConnectionPtr cn = self.db_context().GetConnection();
  self.db_context().ReadySecond();
  const PartnerBill bill = ReadPartnerBill(oDict);
  const auto partner = FindPartner(bill, oDict);
  if (!partner) return NotAsked();
  Cg = partner->is_supplier;

  const RecordsetPtr line = cn->Execute(CreditQuery(*partner));
  if (line->AtEnd() || bill.bill_type == kSalesReturn) return Pass();
  const Value credit = line->Field("FCreditAmount");
  if (!IsExceeded(credit, line->Field("FCurComeGoBalance"), bill.amount)) return Pass();
  return Refuse(Cat("当前", Cg ? "供应商" : "客户", "的信用额度为：", ToText(credit),
                    "，截止到本次往来余额已经超出。"));
}

}  // namespace

int16_t WhetherNeedCheckCredit(PlugIn& self, std::string_view sDsn, int16_t intCheckType,
                               Dictionary& oDict) {
  return Trap(
      [&]() -> int16_t {
        const int32_t bill_type = ToLong(oDict.Item("BillType"));
        const int32_t class_type = ToLong(oDict.Item("ClassTypeID"));
        if (NumberOrZero(GetProfile(self.host(), sDsn, "ControlPoint", "IC")) != 1) return 0;
        return NeedsCheck(class_type, bill_type, intCheckType) ? 1 : 0;
      },
      [](const AutomationError&) -> int16_t { return 0; });
}

int16_t CheckCredit(PlugIn& self, Dictionary& oDict, int16_t, std::string_view sDsn,
                    std::string& strReturnMsg, bool& Cg) {
  return AnswerPartnerCheck(strReturnMsg, [&] { return HoldAgainstCredit(self, oDict, sDsn, Cg); });
}

Verdict CreditGate(PlugIn& self, Dictionary& oDict, int16_t direction, std::string_view sDsn) {
  if (WhetherNeedCheckCredit(self, sDsn, direction, oDict) != 1) return NotAsked();
  bool is_supplier = false;
  return HoldAgainstCredit(self, oDict, sDsn, is_supplier);
}

}  // namespace tavcc
