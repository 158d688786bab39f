// How many statements a bill costs, by class, type and direction: a statement more is a failing
// test. The run's own two (drop and create the temporary table) are not counted; the gates are left
// out.
#include <gtest/gtest.h>

#include "audit/batch_audit.h"
#include "foundation/bill_kinds.h"
#include "foundation/host_services.h"
#include "foundation/text.h"
#include "host/host_dictionary.h"
#include "host/host_vector.h"
#include "support/instant_host.h"

namespace tavcc {
namespace {

using namespace class_type;

struct Cost {
  int32_t class_type;
  int32_t bill_type;
  int audit;
  int un_audit;
};

constexpr Cost kCosts[] = {
    // orders: serial numbers, prices, quantities, state, twice the emptying
    {kPurchaseOrder, 0, 9, 8},
    {kSalesOrder, 0, 10, 9},  // and the rejected state
    // purchase
    {kPurchaseBill, 2011, 12, 16},
    {kPurchaseBill, 2012, 15, 13},
    {kPurchaseBill, 2013, 13, 14},  // and the related reversals
    {kPurchaseEstimate, 2030, 10, 14},
    {kPurchaseEstimate, 2031, 13, 11},
    {kPurchaseEstimate, 2032, 10, 11},
    {kPurchaseRebate, 2042, 8, 12},
    {kPurchaseRebate, 2043, 9, 15},
    {kPurchaseRebate, 2040, 6, 9},
    {kPurchaseRebate, 2041, 6, 9},
    {kPurchaseSettlement, 0, 4, 7},
    // sale
    {kSalesBill, 3001, 16, 12},
    {kSalesBill, 3002, 13, 15},
    {kSalesBill, 3003, 11, 10},
    {kSalesBill, 3010, 15, 11},
    {kSalesBill, 3011, 12, 14},
    {kConsignment, 3010, 13, 9},
    {kConsignment, 3011, 10, 12},
    {kSalesRebate, 3022, 11, 9},
    {kSalesRebate, 3020, 6, 9},
    {kConsignmentSettlement, 0, 4, 7},
    // stock
    {kOtherReceipt, 0, 8, 14},
    {kOtherReceipt, 2040, 5, 8},
    {kOtherIssue, 0, 11, 9},
    {kOtherIssue, 3021, 5, 8},
    {kCheckGain, 0, 8, 14},
    {kCheckLoss, 0, 11, 9},
    {kAssembly, 0, 12, 15},
    {kDisassembly, 0, 12, 15},
    {kTransfer, 0, 13, 16},
    {kPriceAdjustment, 0, 7, 8},
};

DictionaryPtr Bill(const Cost& cost, int32_t id) {
  auto bill = std::make_shared<HostDictionary>();
  bill->SetItem("ClassTypeID", cost.class_type);
  bill->SetItem("BillInterID", id);
  bill->SetItem("BillType", cost.bill_type);
  bill->SetItem("HeadTableName", "T_CC_StockBill");
  bill->SetItem("BillNo", "N");
  bill->SetItem("AllAmount", 100.5);
  return bill;
}

int StatementsPerBill(const Cost& cost, int16_t check_type) {
  constexpr int kStatementsOfRun = 2;
  constexpr int kBills = 3;
  ReleaseHostObjects();
  testing::InstantHost host;
  PlugIn object(host);
  HostVector bills;
  for (int32_t id = 1; id <= kBills; ++id) bills.Add(Bill(cost, id));
  DictionaryPtr results = std::make_shared<HostDictionary>();
  const int16_t answer = AuditBill(object, bills, check_type, "dsn", false, results, true, false);
  ReleaseHostObjects();
  EXPECT_EQ(answer, 1);
  EXPECT_EQ(results->Item("SuccessCount"), Value(kBills));
  const int sent = host.connection().sent - kStatementsOfRun;
  EXPECT_EQ(sent % kBills, 0);
  return sent / kBills;
}

TEST(StatementCount, PerBill) {
  for (const Cost& cost : kCosts) {
    SCOPED_TRACE(Cat("class ", cost.class_type, ", bill type ", cost.bill_type));
    EXPECT_EQ(StatementsPerBill(cost, 1), cost.audit);
    EXPECT_EQ(StatementsPerBill(cost, -1), cost.un_audit);
  }
}

}  // namespace
}  // namespace tavcc
