// What holds for every batch of bills, tried on random ones: what auditing posts is the signed sum
// of the lines, and un-auditing takes all of it back.
#include <gtest/gtest.h>

#include <algorithm>

#include "audit/random_bills.h"
#include "foundation/bill_kinds.h"
#include "foundation/conversions.h"
#include "foundation/text.h"
#include "host/ledger_check.h"

namespace tavcc::testing {
namespace {

constexpr int kBatches = 40;

// Everything that an un-audit gives back. Stock rows that hold nothing count as absent: whether
// they stay is the clean-up's own rule.
std::vector<std::string> State(Company& company) {
  std::vector<std::string> all;
  for (const std::string_view sql : {
           "select FItemID,FStockID,FBatchNo,FAuxPropID,FKFPeriod,FKFDate,FPeriodDate,"
           "FBatchNoIndex,FQty,FSecQty,FBal from T_CC_Inventory "
           "where FQty<>0 or FSecQty<>0 or FBal<>0",
           "select 'customer',FItemID,FCurReceAmount,FCurPrepAmount,FPrepCheckAmount,"
           "FUnPrepCheckAmount from t_Organization",
           "select 'supplier',FItemID,FCurReceAmount,FCurPrepAmount,FPrepCheckAmount,"
           "FUnPrepCheckAmount from t_Supplier",
           "select 'sale',FID,FEntryID,FXSOrderQty,FBaseXSOrderQty,FInTotalQty,FBaseInTotalQty "
           "from t_XS_OrderEntry",
           "select 'purchase',FID,FEntryID,FCgOrderQty,FBaseCgOrderQty,FInTotalQty,"
           "FBaseInTotalQty from t_CG_OrderEntry",
           "select 'bill',FID,FStatus,FCheckerID from T_CC_StockBill",
           "select 'assembly',FID,FStatus,FCheckerID from T_CC_ZZCX",
       }) {
    std::vector<std::string> rows = company.Rows(sql);
    std::sort(rows.begin(), rows.end());
    all.insert(all.end(), rows.begin(), rows.end());
  }
  return all;
}

std::map<StockKey, Decimal> StockOf(Company& company) {
  std::map<StockKey, Decimal> stock;
  const RecordsetPtr rows = company.connection()->Execute(
      "select FItemID,FStockID,sum(FQty) from T_CC_Inventory group by FItemID,FStockID");
  for (; !rows->AtEnd(); rows->MoveNext()) {
    stock[{ToLong(rows->Field(0)), ToLong(rows->Field(1))}] = ToDecimal(rows->Field(2));
  }
  return stock;
}

bool HasNegativeStock(Company& company) {
  return !company.Rows("select FItemID from T_CC_Inventory where FQty<0").empty();
}

void ExpectLedger(Company& company) {
  for (const LedgerDifference& difference : CheckLedger(*company.connection())) {
    ADD_FAILURE() << "item " << difference.item_id << " in stock " << difference.stock_id
                  << ": expected " << difference.expected_quantity.ToText() << " worth "
                  << difference.expected_value.ToText() << ", found "
                  << difference.actual_quantity.ToText() << " worth "
                  << difference.actual_value.ToText();
  }
}

class RandomBatch : public ::testing::TestWithParam<bool> {};

TEST_P(RandomBatch, PostsTheSumOfItsLinesAndTakesItBack) {
  const bool negative_allowed = GetParam();
  int passed = 0;
  int refused = 0;
  for (uint32_t seed = 1; seed <= kBatches; ++seed) {
    SCOPED_TRACE(Cat("seed ", static_cast<int32_t>(seed)));
    RandomCompany random(seed, !negative_allowed);
    Company company;
    company.Run(Cat("update t_SystemProfile set FValue='", negative_allowed ? "1" : "0",
                    "' where FKey='UnderStock'"));
    random.Found(company);
    std::vector<RandomBill> bills;
    const auto count = static_cast<int32_t>(random.Below(12)) + 1;
    for (int32_t id = 1; id <= count; ++id) bills.push_back(random.AddBill(company, id));

    const auto before = State(company);
    auto stock = StockOf(company);
    std::vector<BillKey> audited;
    for (const RandomBill& bill : bills) {
      const AuditAnswer answer = company.Audit({bill.key}, kAudit, false);
      ASSERT_NE(answer.result, -1) << answer.error;
      passed += answer.passed;
      refused += answer.refused;
      if (answer.passed == 0) continue;
      if (!negative_allowed && HasNegativeStock(company)) {
        // Some types that issue goods are never checked; below zero, later bills could not be taken
        // back. Such a bill goes at once.
        ASSERT_EQ(company.Audit({bill.key}, kUnAudit, false).result, 1);
        continue;
      }
      audited.push_back(bill.key);
      for (const auto& [key, quantity] : bill.movement) {
        stock[key] = *Decimal::Add(stock[key], quantity);
      }
    }
    auto posted = StockOf(company);
    for (const auto& [key, quantity] : stock) {
      EXPECT_EQ(posted[key].ToText(), quantity.Rescaled(10)->ToText())
          << "item " << key.first << " in stock " << key.second;
    }
    ExpectLedger(company);

    // The last first, since what a bill brought may have been issued by a later one.
    std::reverse(audited.begin(), audited.end());
    const AuditAnswer back = company.Audit(audited, kUnAudit, false);
    ASSERT_EQ(back.result, 1) << back.lines << back.error;
    EXPECT_EQ(State(company), before);
    ExpectLedger(company);
    if (HasFailure()) return;
  }
  // The batches are worth something only when most of their bills pass and some are refused.
  EXPECT_GT(passed, 3 * kBatches);
  if (!negative_allowed) {
    EXPECT_GT(refused, kBatches / 4);
  }
}

INSTANTIATE_TEST_SUITE_P(UnderStock, RandomBatch, ::testing::Values(false, true));

}  // namespace
}  // namespace tavcc::testing
