#include "host/ledger_check.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "embedded/embedded.h"
#include "foundation/text.h"
#include "host/company.h"
#include "host/schema.h"

namespace tavcc {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class LedgerCheckTest : public ::testing::Test {
 protected:
  LedgerCheckTest() { database_->RunScript(SampleScript()); }

  void Run(std::string_view sql) { session_->Execute(sql); }
  // "number stock batch: quantity expected -> actual, value expected -> actual" of each difference.
  std::vector<std::string> Differences() {
    std::vector<std::string> texts;
    for (const LedgerDifference& d : CheckLedger(*session_)) {
      texts.push_back(Cat(d.item_number, " ", d.stock_id, " ", d.batch, ": ", d.expected_quantity,
                          " -> ", d.actual_quantity, ", ", d.expected_value, " -> ",
                          d.actual_value));
    }
    return texts;
  }
  // Marks a stock bill as audited without posting it, and tells what the ledger then misses.
  std::vector<std::string> MissedOf(int32_t bill) {
    Run(Cat("update T_CC_StockBill set FStatus=1 where FID=", bill));
    Run(Cat("update T_CC_ZZCX set FStatus=1 where FID=", bill));
    return Differences();
  }

  std::shared_ptr<sql::Database> database_ = sql::Database::Open(CompanyOptions());
  ConnectionPtr session_ = database_->NewSession();
};

TEST_F(LedgerCheckTest, TheSampleCompanysLedgerHolds) {
  EXPECT_THAT(Differences(), IsEmpty());
}

TEST_F(LedgerCheckTest, NamesWhatDiffersInQuantityAndInValue) {
  Run("update T_CC_Inventory set FQty=FQty+1 where FItemID=1003");
  Run("update T_CC_Inventory set FBal=FBal-0.01 where FItemID=1006");
  EXPECT_THAT(Differences(), ElementsAre("01.003 2001 : 60 -> 61, 2700 -> 2700",
                                         "03.002 2001 RH2601: 48 -> 48, 720 -> 719.99"));
  const LedgerDifference difference = CheckLedger(*session_).at(0);
  EXPECT_EQ(difference.item_name, "链条");
  EXPECT_EQ(difference.stock_name, "主仓库");
}

TEST_F(LedgerCheckTest, ComparesStocksBatchesAndAuxiliaryPropertiesApart) {
  Run("update T_CC_Inventory set FStockID=2002 where FItemID=1009");
  Run("update T_CC_Inventory set FBatchNo='X' where FItemID=1008");
  Run("update T_CC_Inventory set FAuxPropID=7002 where FAuxPropID=7001");
  EXPECT_THAT(Differences(),
              ElementsAre("01.004 2001 TC4-001: 25.5 -> 0, 2805 -> 0",
                          "01.004 2001 X: 0 -> 25.5, 0 -> 2805",
                          "01.005 2001 : 200 -> 0, 1600 -> 0", "01.005 2002 : 0 -> 200, 0 -> 1600",
                          "03.001 2002 : 10 -> 0, 620 -> 0", "03.001 2002 : 0 -> 10, 0 -> 620"));
}

TEST_F(LedgerCheckTest, ARowOfAnUnknownItemIsReported) {
  Run("insert into T_CC_Inventory(FItemID,FStockID,FQty) values(999,888,1)");
  EXPECT_THAT(Differences(), ElementsAre(" 888 : 0 -> 1, 0 -> 0"));
}

TEST_F(LedgerCheckTest, ShelfLifeIsNotCompared) {
  Run("update T_CC_Inventory set FKFPeriod=1,FKFDate='2026-03-15',FPeriodDate='2026-03-16' "
      "where FItemID=1006");
  EXPECT_THAT(Differences(), IsEmpty());
}

// Each kind of bill counts with the sign and the price of its posting.
TEST_F(LedgerCheckTest, APurchaseCountsInBaseUnits) {
  EXPECT_THAT(MissedOf(104), ElementsAre("01.001 2001 : 60 -> 40, 17900 -> 12000",
                                         "01.002 2001 : 180 -> 120, 14100 -> 9600"));
}
TEST_F(LedgerCheckTest, APurchaseReturnLeaves) {
  EXPECT_THAT(MissedOf(106), ElementsAre("01.001 2001 : 38 -> 40, 11410 -> 12000"));
}
TEST_F(LedgerCheckTest, AnEstimateComesIn) {
  EXPECT_THAT(MissedOf(107), ElementsAre("01.004 2001 TC4-002: 10 -> 0, 1080 -> 0"));
}
TEST_F(LedgerCheckTest, AReversedEstimateGoesWithItsPurchase) {
  MissedOf(108);
  EXPECT_THAT(MissedOf(109), ElementsAre("01.004 2001 TC4-001: 25.5 -> 25.5, 2837 -> 2805"));
}
TEST_F(LedgerCheckTest, ARebateInMoneyMovesValueAlone) {
  EXPECT_THAT(MissedOf(111), ElementsAre("01.001 2001 : 40 -> 40, 11800 -> 12000"));
}
TEST_F(LedgerCheckTest, ASaleLeavesAtCost) {
  EXPECT_THAT(MissedOf(113), ElementsAre("02.002 2001 : 5 -> 6, 10500 -> 12600"));
}
TEST_F(LedgerCheckTest, ASalesReturnComesBackAtCost) {
  EXPECT_THAT(MissedOf(114), ElementsAre("03.001 2002 : 31 -> 30, 1860 -> 1800"));
}
TEST_F(LedgerCheckTest, ASalesRebateInGoodsLeavesAtItsPrice) {
  EXPECT_THAT(MissedOf(116), ElementsAre("03.001 2002 : 28 -> 30, 1680 -> 1800"));
}
TEST_F(LedgerCheckTest, AnOtherReceiptComesIn) {
  EXPECT_THAT(MissedOf(117), ElementsAre("01.003 2001 : 65 -> 60, 2920 -> 2700"));
}
TEST_F(LedgerCheckTest, AnOtherIssueLeaves) {
  EXPECT_THAT(MissedOf(118), ElementsAre("01.005 2001 : 190 -> 200, 1520 -> 1600"));
}
TEST_F(LedgerCheckTest, AStockCheckGainComesIn) {
  EXPECT_THAT(MissedOf(119), ElementsAre("01.005 2001 : 203 -> 200, 1624 -> 1600"));
}
TEST_F(LedgerCheckTest, AStockCheckLossLeaves) {
  EXPECT_THAT(MissedOf(120), ElementsAre("01.003 2001 : 58 -> 60, 2610 -> 2700"));
}
TEST_F(LedgerCheckTest, AnAssemblyTurnsComponentsIntoProducts) {
  EXPECT_THAT(MissedOf(121), ElementsAre("01.001 2001 : 38 -> 40, 11400 -> 12000",
                                         "01.002 2001 : 116 -> 120, 9280 -> 9600",
                                         "01.003 2001 : 58 -> 60, 2610 -> 2700",
                                         "02.001 2001 : 12 -> 10, 6210 -> 5200"));
}
TEST_F(LedgerCheckTest, ADisassemblyTurnsProductsIntoComponents) {
  EXPECT_THAT(MissedOf(122), ElementsAre("01.001 2001 : 41 -> 40, 12300 -> 12000",
                                         "01.002 2001 : 122 -> 120, 9760 -> 9600",
                                         "01.003 2001 : 61 -> 60, 2760 -> 2700",
                                         "02.001 2001 : 9 -> 10, 4680 -> 5200"));
}
TEST_F(LedgerCheckTest, ATransferChangesStocks) {
  EXPECT_THAT(MissedOf(123), ElementsAre("02.001 2001 : 8 -> 10, 4160 -> 5200",
                                         "02.001 2002 : 7 -> 5, 3640 -> 2600",
                                         "03.002 2001 RH2601: 36 -> 48, 540 -> 720",
                                         "03.002 2002 RH2601: 12 -> 0, 180 -> 0"));
}
TEST_F(LedgerCheckTest, APriceAdjustmentMovesValueAlone) {
  EXPECT_THAT(MissedOf(124), ElementsAre("01.003 2001 : 60 -> 60, 2750 -> 2700"));
}

}  // namespace
}  // namespace tavcc
