#include "audit/partner_balance.h"

#include <vector>

#include "foundation/conversions.h"
#include "foundation/error.h"
#include "foundation/host_services.h"
#include "foundation/text.h"

namespace tavcc {

namespace {

using namespace class_type;

constexpr int32_t kWithBalance[] = {kPurchaseBill, kPurchaseRebate, kSalesBill, kSalesRebate};
constexpr int32_t kWithPrepayment[] = {kPurchaseBill, kSalesBill};
constexpr int32_t kWithoutBalance[] = {2042, 3022};
// Returns and rebates lower what the others raise.
constexpr int32_t kReversedTypes[] = {3011, 3002, 3004, 2031, 2032, 2012, 2040, 2041, 3020, 3021};

// The direction as it was handed in is the factor: 0 moves nothing, 2 moves the amount twice.
Decimal Times(int32_t factor, const Decimal& amount) {
  const auto product = Decimal::Multiply(amount, factor);
  if (!product) throw AutomationError(RuntimeError::kOverflow);
  return *product;
}

// The amounts of the prepayments that the bill uses up. All are read before the first is settled,
// since both run on one connection.
std::vector<Decimal> PrepaymentAmounts(Connection& connection, int32_t bill_id) {
  std::vector<Decimal> amounts;
  const RecordsetPtr rows = connection.Execute(
      Cat(" Select FSourceClassTypeID2,FCurCheckAmount from ICCheckInfo where fid=", bill_id));
  for (; !rows->AtEnd(); rows->MoveNext()) {
    const Decimal amount = DecimalOrZero(rows->Field("FCurCheckAmount"));
    if (!amount.IsZero()) amounts.push_back(amount);
  }
  return amounts;
}

void SettlePrepayments(Connection& connection, const AuditedBill& bill, std::string_view table,
                       int32_t partner_id, int32_t factor) {
  const Decimal neutralized = ToDecimal(bill.dictionary.Item("FNeutralizeAmount"));
  if (neutralized.IsZero()) return;
  for (const Decimal& prepayment : PrepaymentAmounts(connection, bill.bill_id)) {
    const Decimal amount = Times(factor, prepayment);
    connection.Execute(Cat(" Update ", table, " Set FUnPrepCheckAmount=FUnPrepCheckAmount-(",
                           amount, ")", " , FPrepCheckAmount=FPrepCheckAmount+(", amount, ")",
                           " Where FItemID=", partner_id));
  }
  connection.Execute(Cat(" Update ", table, " Set FCurPrepAmount=FCurPrepAmount-(",
                         Times(factor, neutralized), ")", " Where FItemID=", partner_id));
}

}  // namespace

void UpdatePartnerBalance(Connection& connection, const AuditedBill& bill) {
  if (!IsInArray(bill.class_type, kWithBalance)) return;
  if (IsInArray(bill.bill_type, kWithoutBalance)) return;

  const bool purchase = bill.class_type == kPurchaseBill || bill.class_type == kPurchaseRebate;
  const std::string_view table = purchase ? "t_Supplier" : "t_Organization";
  const int32_t factor =
      IsInArray(bill.bill_type, kReversedTypes) ? -bill.check_type : bill.check_type;
  const int32_t partner_id = PartnerID(bill);
  const Decimal amount = Times(factor, ToDecimal(bill.dictionary.Item("AllAmount")));
  connection.Execute(Cat("Update ", table, " Set FCurReceAmount=IsNull(FCurReceAmount,0)+(", amount,
                         ")\r\n", "Where FItemID=", partner_id));
  if (IsInArray(bill.class_type, kWithPrepayment)) {
    SettlePrepayments(connection, bill, table, partner_id, factor);
  }
}

}  // namespace tavcc
