// The sample company's bills, audited and un-audited in one batch each.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "audit/batch_audit.h"
#include "embedded/embedded.h"
#include "foundation/conversions.h"
#include "foundation/host_services.h"
#include "foundation/text.h"
#include "host/company.h"
#include "host/host_dictionary.h"
#include "host/host_vector.h"
#include "host/ledger_check.h"
#include "host/reference_host.h"
#include "host/schema.h"

namespace tavcc {
namespace {

using ::testing::IsEmpty;

// All bills of the company that are audited by hand and are not audited yet, with what the host's
// bill dictionary tells of them.
constexpr std::string_view kBills =
    "select FID,FClassTypeID,FBillTypeID,FBillNo,'T_CC_StockBill' as FHead,FCustID,FSupplyID,"
    "FAllAmount,FNeutralizeAmount from T_CC_StockBill where FStatus=0 and FBillTypeID<>2032 "
    "union all select FID,FClassTypeID,FBillTypeID,FBillNo,'T_CC_ZZCX',0,0,0,0 from T_CC_ZZCX "
    "union all select FID,FClassTypeID,FBillTypeID,FBillNo,'t_CG_Order',0,FSupplyID,FAllAmount,0 "
    "from t_CG_Order "
    "union all select FID,FClassTypeID,FBillTypeID,FBillNo,'t_XS_Order',FCustID,0,FAllAmount,0 "
    "from t_XS_Order";
// From this id on, the company's bills are there to be refused.
constexpr int32_t kFirstRefused = 131;

// Everything that an audit changes and an un-audit must bring back.
constexpr const char* kState[] = {
    "select FItemID,FStockID,FBatchNo,FAuxPropID,FKFPeriod,FKFDate,FPeriodDate,FQty,FSecQty,FBal "
    "from T_CC_Inventory order by FItemID,FStockID,FBatchNo,FAuxPropID",
    "select FItemID,FCurReceAmount,FCurPrepAmount,FPrepCheckAmount,FUnPrepCheckAmount "
    "from t_Organization order by FItemID",
    "select FItemID,FCurReceAmount,FCurPrepAmount,FPrepCheckAmount,FUnPrepCheckAmount "
    "from t_Supplier order by FItemID",
    "select FID,FIndex,FXSOrderQty,FInTotalQty from t_XS_OrderEntry order by FID,FIndex",
    "select FID,FIndex,FCgOrderQty,FInTotalQty from t_CG_OrderEntry order by FID,FIndex",
    "select FID,FStatus,FCheckerID,FCheckDate,FNoInvoiceAmt from T_CC_StockBill order by FID",
    "select FID,FStatus,FCheckerID,FCheckDate from T_CC_ZZCX order by FID",
};

class SampleCompanyTest : public ::testing::Test {
 protected:
  SampleCompanyTest() { database_->RunScript(SampleScript()); }
  ~SampleCompanyTest() override { ReleaseHostObjects(); }

  static DictionaryPtr BillOf(const Recordset& row) {
    auto bill = std::make_shared<HostDictionary>();
    bill->SetItem("ClassTypeID", row.Field("FClassTypeID"));
    bill->SetItem("BillInterID", row.Field("FID"));
    bill->SetItem("BillType", row.Field("FBillTypeID"));
    bill->SetItem("BillTypeID", row.Field("FBillTypeID"));
    bill->SetItem("BillNo", row.Field("FBillNo"));
    bill->SetItem("HeadTableName", row.Field("FHead"));
    bill->SetItem("CustID", row.Field("FCustID"));
    bill->SetItem("SupplyID", row.Field("FSupplyID"));
    bill->SetItem("CustOrSupplyID", ToLong(row.Field("FCustID")) + ToLong(row.Field("FSupplyID")));
    bill->SetItem("AllAmount", row.Field("FAllAmount"));
    bill->SetItem("FNeutralizeAmount", row.Field("FNeutralizeAmount"));
    return bill;
  }

  // The bills with ids from `first` to `last`, in their order.
  std::shared_ptr<HostVector> Bills(int32_t first, int32_t last) {
    auto bills = std::make_shared<HostVector>();
    const auto rows = session_->Execute(Cat("select * from (", kBills, ") b where FID between ",
                                            first, " and ", last, " order by FID"));
    for (; !rows->AtEnd(); rows->MoveNext()) bills->Add(BillOf(*rows));
    return bills;
  }

  // Audits or un-audits the bills; returns the result lines, one per bill.
  std::string Audit(HostVector& bills, int16_t direction) {
    DictionaryPtr results = std::make_shared<HostDictionary>();
    PlugIn public_sys_info(host_);
    AuditBill(public_sys_info, bills, direction, "sample", true, results, true, true);
    std::string lines;
    for (const char c : ToText(results->Item("BillInfo"))) {
      lines += c;
      if (c == '|') lines += '\n';
    }
    return lines + ToText(results->Item("ErrorMsg"));
  }

  std::vector<std::string> State() {
    std::vector<std::string> state;
    for (const char* query : kState) {
      for (const auto rows = session_->Execute(query); !rows->AtEnd(); rows->MoveNext()) {
        std::string row;
        for (int i = 0; i < rows->FieldCount(); ++i) {
          CatTo(row, rows->FieldName(i), "=", host_.FieldText(rows->Field(i)), " ");
        }
        state.push_back(std::move(row));
      }
    }
    return state;
  }

  std::shared_ptr<sql::Database> database_ = sql::Database::Open(CompanyOptions());
  ConnectionPtr session_ = database_->NewSession();
  ReferenceHost host_{[this](std::string_view) { return session_; },
                      [this](Connection& session) { database_->Reopen(session); }};
};

TEST_F(SampleCompanyTest, EachBillPassesOrIsRefusedAsItsCommentSays) {
  const auto bills = Bills(1, 999);
  EXPECT_EQ(Audit(*bills, 1),
            "编号为：CD260301的采购订单单据审核成功！|\n"
            "编号为：XD260301的销售订单单据审核成功！|\n"
            "编号为：CG260302的购货单单据审核成功！|\n"
            "编号为：CG260303的购货单单据审核成功！|\n"
            "编号为：CT260301的购货单单据审核成功！|\n"
            "编号为：CU260301的采购估价单单据审核成功！|\n"
            "编号为：CG260304的购货单单据审核成功！|\n"
            "编号为：CF260301的采购返利单单据审核成功！|\n"
            "编号为：CF260302的采购返利单单据审核成功！|\n"
            "编号为：XS260301的销售单单据审核成功！|\n"
            "编号为：XS260302的销售单单据审核成功！|\n"
            "编号为：XT260301的销售单单据审核成功！|\n"
            "编号为：WT260301的委托代销单单据审核成功！|\n"
            "编号为：XF260301的销售返利单单据审核成功！|\n"
            "编号为：QR260301的其他入库单单据审核成功！|\n"
            "编号为：QC260301的其他出库单单据审核成功！|\n"
            "编号为：PY260301的盘盈单单据审核成功！|\n"
            "编号为：PK260301的盘亏单单据审核成功！|\n"
            "编号为：ZZ260301的组装单单据审核成功！|\n"
            "编号为：CX260301的拆卸单单据审核成功！|\n"
            "编号为：DB260301的调拨单单据审核成功！|\n"
            "编号为：TJ260301的调价单单据审核成功！|\n"
            "编号为：XS260303的销售单单据审核失败！失败原因：该单据为驳回状态!|\n"
            "编号为：XD260302的销售订单单据审核失败！失败原因：该单据为驳回状态!|\n"
            "编号为：XS260304的销售单单据审核失败！失败原因：该单据存在未设置SN号的商品!|\n"
            "编号为：XS260305的销售单单据审核失败！失败原因：审核出现负库存商品！|\n"
            "编号为：XS260306的销售单单据审核失败！失败原因："
            "分批认定法计价的商品,不允许负库存出库！|\n"
            "编号为：CG260201的购货单单据审核失败！失败原因：不能审核以前期间的单据！|\n"
            "编号为：CG260305的购货单单据审核失败！失败原因：审核人与制单人不能为同一人！|\n"
            "编号为：XS260307的销售单单据审核失败！失败原因："
            "当前客户的信用额度为：20000，截止到本次往来余额已经超出。|\n"
            "编号为：XS260308的销售单单据审核失败！失败原因：出现销售价格低于限价的商品|\n"
            "编号为：QR260302的其他入库单单据审核失败！失败原因："
            "第2行商品单价为零,审核不成功！|\n");
}

TEST_F(SampleCompanyTest, UnauditingTheBatchBringsEverythingBackAndTheLedgerHoldsThroughout) {
  const std::vector<std::string> before = State();
  const auto bills = Bills(1, kFirstRefused - 1);
  Audit(*bills, 1);
  EXPECT_THAT(CheckLedger(*session_), IsEmpty());
  EXPECT_NE(State(), before);

  EXPECT_EQ(bills->Size(), 22);
  EXPECT_THAT(Audit(*bills, -1), ::testing::Not(::testing::HasSubstr("失败")));
  EXPECT_THAT(CheckLedger(*session_), IsEmpty());
  EXPECT_EQ(State(), before);
}

}  // namespace
}  // namespace tavcc
