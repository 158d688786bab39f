// The ERP database as a script makes it: everything that the rules' statements name is there, and
// means "nothing" where it is left out.
#include "host/schema.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "embedded/embedded.h"
#include "foundation/conversions.h"
#include "foundation/error.h"
#include "foundation/text.h"

namespace tavcc {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// Table or view, and the columns that statements read or write.
constexpr const char* kColumns[][2] = {
    {"t_SystemProfile", "FCategory FKey FValue"},
    {"t_PeriodDate", "FYear FPeriod FStartDate FEndDate"},
    {"t_ICItem",
     "FItemID FNumber FName FModel FUnitID FTrack FISBatchManager FIsKFPeriod FIsSerialNumMgr "
     "FCalDate"},
    {"t_MeasureUnit", "FMeasureUnitID"},
    {"t_auxItem", "FItemID FNumber FName"},
    {"t_barcode", "FItemID FIndex FUnitID FCoefficient"},
    {"t_Stock", "FItemID FName FTypeID"},
    {"t_ClientType", "FItemID FCoefficient"},
    {"t_Organization",
     "FItemID FTypeID FCreditAmount FCurComeGoBalance FCurReceAmount FCurPrepAmount "
     "FPrepCheckAmount FUnPrepCheckAmount FIntent"},
    {"t_Supplier",
     "FItemID FCreditAmount FCurComeGoBalance FCurReceAmount FCurPrepAmount FPrepCheckAmount "
     "FUnPrepCheckAmount"},
    {"T_ItemPrice",
     "FItemID FUnitID FXSLimitPrice FCGLimitPrice FLatestInPrice FLowestInPrice FCGLatestPrice "
     "FXSLatestPrice FXSIncludeTaxLastPrice"},
    {"t_LatestPrice",
     "FCustID FSupplyID FItemID FUnitID FPrice FIncludeTaxPrice FDiscountRate FDate FCheckDate "
     "FIsLast"},
    {"T_CC_Inventory",
     "FBrNo FItemID FBatchNo FAuxPropID FStockID FKFPeriod FKFDate FPeriodDate FBatchNoIndex FQty "
     "FBal FSecQty FLockQty"},
    {"ICInvInitial", "FItemID FStockID FPrice"},
    {"T_CC_Stock", "FItemID FStockID FBatchNo FKFDate FKFPeriod FPeriodDate"},
    {"T_CC_Stock_batchno", "FItemID FStockID FBatchNo FKFDate FKFPeriod FPeriodDate"},
    {"T_CC_StockBill",
     "FID FClassTypeID FBillTypeID FBillNo FDate FSaveDate FCustID FSupplyID FStatus FRejected "
     "FBillerID FCheckerID FCheckDate FVoucherID FAllAmount FUnCheckAmount FSettleLimitDate "
     "FInvoiceSatus FInvoiceAmt FNoInvoiceAmt"},
    {"T_CC_StockBillEntry",
     "FID FEntryID FIndex FItemID FAuxPropID FBatchNo FBatchNoIndex FDCStockID FSCStockID "
     "FKFPeriod FKFDate FPeriodDate FUnitID FShowUnitID FCoefficient FQty FShowQty FSecQty FPrice "
     "FPriceDiscount FBasePrice FIncludeTaxPrice FDiscountRate FAmount FCostPrice FCostAmount "
     "FProfitLossQty FProfitLossSecQty FClassID_SRC FID_SRC FNote"},
    {"T_CC_ZZCX",
     "FID FClassTypeID FBillTypeID FBillNo FDate FSaveDate FStatus FBillerID FCheckerID "
     "FCheckDate FVoucherID"},
    {"T_CC_ZZCX_Entry",
     "FID FEntryID FIndex FItemID FAuxPropID FBatchNo FBatchNoIndex FDCStockID FKFPeriod FProDate "
     "FExpDate FShowUnitID FCoefficient FQty FShowQty FSecQty FPrice"},
    {"T_CC_ZZCX_Entry2",
     "FID FEntryID FIndex FItemID FAuxPropID FBatchNo FBatchNoIndex FSCStockID FKFPeriod FProDate "
     "FExpDate FShowUnitID FCoefficient FQty FShowQty FSecQty FPrice"},
    {"t_CG_Order",
     "FID FClassTypeID FBillTypeID FDate FSupplyID FStatus FBillerID FCheckerID FCheckDate"},
    {"t_CG_OrderEntry",
     "FID FIndex FItemID FAuxPropID FUnitID FShowUnitID FCoefficient FQty FPrice FPriceDiscount "
     "FBasePrice FIncludeTaxPrice FDiscountRate FCgOrderQty FBaseCgOrderQty FInTotalQty "
     "FBaseInTotalQty"},
    {"t_XS_Order",
     "FID FClassTypeID FBillTypeID FDate FCustID FStatus FRejected FBillerID FCheckerID "
     "FCheckDate"},
    {"t_XS_OrderEntry",
     "FID FIndex FItemID FAuxPropID FUnitID FShowUnitID FCoefficient FQty FPrice FPriceDiscount "
     "FBasePrice FIncludeTaxPrice FDiscountRate FXSOrderQty FBaseXSOrderQty FInTotalQty "
     "FBaseInTotalQty"},
    {"T_CC_Templet", "FID"},
    {"T_CC_TempletEntry", "FID"},
    {"ICRelations", "FGroupNo FClassTypeID FID"},
    {"t_RP_PBillEntry", "FSourceClassTypeID FSourceBillID"},
    {"t_RP_RBillEntry", "FID FSourceClassTypeID FSourceBillID"},
    {"t_RP_CheckBillEntry1", "FID FSourceClassTypeID FSourceBillID"},
    {"t_RP_CheckBillEntry2", "FID FSourceClassTypeID FSourceBillID"},
    {"ICCheckInfo", "FID FSourceClassTypeID2 FCurCheckAmount"},
    {"t_CC_InvoiceFlow", "FID FBillTypeID"},
    {"t_cc_bal", "FClassTypeID FID"},
    {"ICSpeedBal", "FClassTypeID FID"},
    {"ICCalFlag", "FStockID FItemID FTrack FBatchNo FLastDate FID"},
    {"t_SerialNumList",
     "FID FBillID FBillIndexID FItemID FStockID FAuxPropID FSerialNo FNote FClassTypeID FStatus "
     "FCanDeleteFlag"},
    {"VW_UNIT", "FSrcItemID FItemID FCoefficient"},
    {"vw_cc_Send_audit",
     "FID FClassTypeID FBillTypeID FStatus FItemID FUnitID FStockID FAuxPropID FBatchNo FKFPeriod "
     "FKFDate FPeriodDate FQty"},
    {"vw_cc_Receive", "FStatus FItemID FStockID FBatchNo FKFDate FKFPeriod FPeriodDate"},
    {"vw_cc_Send", "FStatus FItemID FStockID FBatchNo FKFDate FKFPeriod FPeriodDate"},
};

class SchemaTest : public ::testing::Test {
 protected:
  SchemaTest() { database_->RunScript(SchemaScript()); }

  // The first column of all rows, as text.
  std::vector<std::string> Column(std::string_view sql) {
    std::vector<std::string> texts;
    for (const auto rows = session_->Execute(sql); !rows->AtEnd(); rows->MoveNext()) {
      texts.push_back(rows->Field(0).IsNull() ? "null" : ToText(rows->Field(0)));
    }
    return texts;
  }
  // The first row, its fields as text.
  std::vector<std::string> Row(std::string_view sql) {
    const auto rows = session_->Execute(sql);
    std::vector<std::string> texts;
    for (int i = 0; i < rows->FieldCount(); ++i) {
      texts.push_back(rows->Field(i).IsNull() ? "null" : ToText(rows->Field(i)));
    }
    return texts;
  }
  void Run(std::string_view sql) { session_->Execute(sql); }
  void RunSample() {
    database_->RunScript(BaseScript());
    database_->RunScript(SampleScript());
  }

  std::shared_ptr<sql::Database> database_ = sql::Database::Open({});
  ConnectionPtr session_ = database_->NewSession();
};

TEST_F(SchemaTest, HoldsEveryColumnThatStatementsName) {
  for (const auto& [table, columns] : kColumns) {
    std::istringstream names(columns);
    for (std::string name; names >> name;) {
      try {
        Run(Cat("select top 1 ", name, " from ", table));
      } catch (const AutomationError& error) {
        ADD_FAILURE() << table << "." << name << ": " << error.description();
      }
    }
  }
}

TEST_F(SchemaTest, OrdersHaveNoVoucherColumn) {
  EXPECT_THROW(Run("select FVoucherID from t_XS_Order"), AutomationError);
  EXPECT_THROW(Run("select FVoucherID from t_CG_Order"), AutomationError);
}

TEST_F(SchemaTest, WhatAnInsertLeavesOutIsNothing) {
  Run("insert into T_CC_StockBill(FID) values(1)");
  EXPECT_THAT(Row("select FStatus,FVoucherID,FBillNo,FDate,FCheckDate,FAllAmount,FCheckerID "
                  "from T_CC_StockBill"),
              ElementsAre("0", "0", "", "null", "null", "0", "0"));
  Run("insert into T_CC_StockBillEntry(FID) values(1)");
  EXPECT_THAT(Row("select FEntryID,FBatchNo,FKFDate,FPrice,FDCStockID from T_CC_StockBillEntry"),
              ElementsAre("0", "", "null", "0", "0"));
  Run("insert into t_SerialNumList(FBillID,FSerialNo) values(1,'A001')");
  EXPECT_THAT(Row("select FID,FCanDeleteFlag,FNote from t_SerialNumList"),
              ElementsAre("1", "0", ""));
}

TEST_F(SchemaTest, ANewLatestPriceIsTheLast) {
  Run("insert into t_LatestPrice(FItemID) values(1)");
  EXPECT_THAT(Column("select FIsLast from t_LatestPrice"), ElementsAre("1"));
}

TEST_F(SchemaTest, NullSafeColumnsAcceptNull) {
  Run("insert into T_CC_StockBill(FID,FStatus,FVoucherID,FBillerID,FCheckerID) "
      "values(1,null,null,null,null)");
  Run("insert into T_CC_StockBillEntry(FID,FBatchNo,FDCStockID,FSCStockID,FPrice,FBasePrice,"
      "FPriceDiscount) values(1,null,null,null,null,null,null)");
  Run("insert into T_CC_ZZCX(FID,FStatus,FVoucherID,FBillerID) values(2,null,null,null)");
  Run("insert into T_ItemPrice(FItemID,FUnitID,FXSLimitPrice,FLatestInPrice,FLowestInPrice,"
      "FCGLimitPrice) values(1,1,null,null,null,null)");
  Run("insert into ICInvInitial(FItemID,FPrice) values(1,null)");
  Run("insert into t_Organization(FItemID,FTypeID,FCreditAmount,FCurComeGoBalance,FCurReceAmount) "
      "values(1,null,null,null,null)");
  Run("insert into t_SystemProfile(FCategory,FKey,FValue) values('IC','UnderStock',null)");
  EXPECT_THAT(Column("select FID from T_CC_StockBill where FStatus is null"), ElementsAre("1"));
}

TEST_F(SchemaTest, CostingFlagsHaveNoUniqueKey) {
  Run("insert into ICCalFlag(FStockID,FItemID,FBatchNo,FID) values(0,1,'',5)");
  Run("insert into ICCalFlag(FStockID,FItemID,FBatchNo,FID) values(0,1,'',5)");
  EXPECT_THAT(Column("select FID from ICCalFlag"), ElementsAre("5", "5"));
}

TEST_F(SchemaTest, TheBaseRowsAreThePeriodsAndSettingsOf2026) {
  database_->RunScript(BaseScript());
  EXPECT_THAT(Column("select FCategory+'.'+FKey+'='+FValue from t_SystemProfile "
                     "order by FCategory,FKey"),
              ElementsAre("General.SingleMan=1", "IC.CalculateType=0", "IC.CurrentPeriod=3",
                          "IC.CurrentYear=2026", "IC.UnderStock=0"));
  EXPECT_THAT(Row("select FStartDate,FEndDate from t_PeriodDate where FYear=2026 and FPeriod=2"),
              ElementsAre("2026-02-01", "2026-02-28"));
  // Each period begins on the day after the one before it ends.
  EXPECT_THAT(Column("select count(*) from t_PeriodDate a inner join t_PeriodDate b "
                     "on b.FYear=a.FYear and b.FPeriod=a.FPeriod+1 "
                     "where DateDiff(Day,a.FEndDate,b.FStartDate)=1"),
              ElementsAre("11"));
}

TEST_F(SchemaTest, TheSampleBillsHaveFIDsOfTheirOwn) {
  RunSample();
  EXPECT_THAT(Column("select FID from (select FID from T_CC_StockBill union all "
                     "select FID from T_CC_ZZCX union all select FID from t_CG_Order union all "
                     "select FID from t_XS_Order) b group by FID having count(*)>1"),
              IsEmpty());
  EXPECT_THAT(Column("select FID from T_CC_StockBillEntry where FID not in "
                     "(select FID from T_CC_StockBill)"),
              IsEmpty());
}

TEST_F(SchemaTest, TheSampleRowsCountBaseUnits) {
  RunSample();
  EXPECT_THAT(Column("select FID from T_CC_StockBillEntry where FQty<>FShowQty*FCoefficient "
                     "or FBasePrice*FCoefficient<>FPrice"),
              IsEmpty());
  EXPECT_THAT(Row("select FQty,FShowQty,FCoefficient from T_CC_StockBillEntry where FID=105"),
              ElementsAre("48", "2", "24"));
}

TEST_F(SchemaTest, AnItemsUnitsAreThoseOfItsGroup) {
  RunSample();
  EXPECT_THAT(Column("select FCoefficient from VW_UNIT where FSrcItemID=1006 order by FItemID"),
              ElementsAre("1", "24"));
}

TEST_F(SchemaTest, IssuingAndReceivingLinesFollowTheBillsDirection) {
  RunSample();
  const auto stocks = [&](std::string_view view, int32_t bill) {
    return Column(
        Cat("select convert(varchar(10),FStockID)+':'+convert(varchar(10),FItemID)+':'+"
            "convert(varchar(10),convert(int,FQty)) from ",
            view, " where FID=", bill, " order by FItemID"));
  };
  EXPECT_THAT(stocks("vw_cc_Receive", 105), ElementsAre("2001:1006:48"));  // purchase
  EXPECT_THAT(stocks("vw_cc_Send", 105), IsEmpty());
  EXPECT_THAT(stocks("vw_cc_Send", 106), ElementsAre("2001:1001:2"));  // purchase return
  EXPECT_THAT(stocks("vw_cc_Receive", 106), IsEmpty());
  EXPECT_THAT(stocks("vw_cc_Send_audit", 113), ElementsAre("2001:1007:1"));  // sale
  EXPECT_THAT(stocks("vw_cc_Receive", 114), ElementsAre("2002:1005:1"));     // sales return
  EXPECT_THAT(stocks("vw_cc_Send_audit", 114), IsEmpty());
  EXPECT_THAT(stocks("vw_cc_Send_audit", 120), ElementsAre("2001:1003:2"));  // stock-check loss
  EXPECT_THAT(stocks("vw_cc_Send_audit", 121),
              ElementsAre("2001:1001:2", "2001:1002:4", "2001:1003:2"));  // assembly
  EXPECT_THAT(stocks("vw_cc_Receive", 121), ElementsAre("2001:1004:2"));
  EXPECT_THAT(stocks("vw_cc_Send_audit", 122), ElementsAre("2001:1004:1"));  // disassembly
  EXPECT_THAT(stocks("vw_cc_Receive", 122),
              ElementsAre("2001:1001:1", "2001:1002:2", "2001:1003:1"));
  EXPECT_THAT(stocks("vw_cc_Send_audit", 123), ElementsAre("2001:1004:2", "2001:1006:12"));
  EXPECT_THAT(stocks("vw_cc_Receive", 123), ElementsAre("2002:1004:2", "2002:1006:12"));
}

TEST_F(SchemaTest, TheLastCostIsValueOverQuantityOrNull) {
  Run("insert into T_CC_Inventory(FItemID,FStockID,FBatchNo,FQty,FBal) values(1,2,'B',4,10)");
  Run("insert into T_CC_Inventory(FItemID,FStockID,FBatchNo,FQty,FBal) values(1,3,'B',0,10)");
  const auto last_cost = [&](std::string_view stock) {
    return Column(Cat("declare @p decimal(28,10) set @p=7 exec sp_GetLastCost ", stock,
                      ",1,'B',@p output select @p"));
  };
  EXPECT_THAT(last_cost("2"), ElementsAre("2.5"));
  EXPECT_THAT(last_cost("3"), ElementsAre("null"));
  EXPECT_THAT(last_cost("4"), ElementsAre("null"));
}

TEST_F(SchemaTest, AValueOnlyBillMovesTheValueOfItsStockRowAndBackAgain) {
  Run("insert into T_CC_Inventory(FItemID,FStockID,FKFDate,FPeriodDate,FQty,FBal) "
      "values(1,2,'1900-01-01','1900-01-01',4,10.25)");
  Run("insert into T_CC_StockBillEntry(FID,FItemID,FDCStockID,FAmount) values(9,1,2,-0.75)");
  Run("insert into T_CC_StockBillEntry(FID,FItemID,FDCStockID,FAmount) values(9,1,2,-1)");
  Run("insert into T_CC_StockBillEntry(FID,FItemID,FDCStockID,FAmount) values(9,1,3,5)");
  const auto post = [&](int32_t direction) {
    ProcedureParameter parameters[] = {
        {.name = "@ClassTypeID", .value = int32_t{1020004}},
        {.name = "@billTypeID", .value = int32_t{2040}},
        {.name = "@FID", .value = int32_t{9}},
        {.name = "@AuditOrUnAddit", .value = direction},
        {.name = "@ErrorMessage", .value = "left over", .output = true},
    };
    session_->CallProcedure("sp_UpdateInventoryForFLTJ", parameters);
    return ToText(parameters[4].value);
  };
  EXPECT_EQ(post(1), "");
  EXPECT_THAT(Row("select FQty,FBal from T_CC_Inventory"), ElementsAre("4", "8.5"));
  EXPECT_EQ(post(-1), "");
  EXPECT_THAT(Row("select FQty,FBal from T_CC_Inventory"), ElementsAre("4", "10.25"));
}

}  // namespace
}  // namespace tavcc
