// What the batch audit and the stock check owe their host: the readying calls, the rights question,
// results on every way out, no error let through, no memory kept.
#include <gtest/gtest.h>
#include <malloc.h>

#include <optional>

#include "audit/audit_company.h"
#include "audit/batch_audit.h"
#include "checks/stock_quantity.h"
#include "foundation/bill_kinds.h"
#include "foundation/conversions.h"
#include "foundation/error.h"
#include "foundation/host_services.h"
#include "foundation/nothing.h"
#include "foundation/text.h"
#include "host/host_dictionary.h"
#include "host/host_vector.h"
#include "support/instant_host.h"

namespace tavcc::testing {
namespace {

DictionaryPtr Bill(int32_t class_type, int32_t id) {
  auto bill = std::make_shared<HostDictionary>();
  bill->SetItem("ClassTypeID", class_type);
  bill->SetItem("BillInterID", id);
  bill->SetItem("BillType", int32_t{0});
  bill->SetItem("HeadTableName", "T_CC_StockBill");
  bill->SetItem("BillNo", Cat("B", id));
  return bill;
}

HostVector OneBill(int32_t class_type) {
  HostVector bills;
  bills.Add(Bill(class_type, 1));
  return bills;
}

int16_t Audit(PlugIn& object, Vector& bills, DictionaryPtr& results) {
  return AuditBill(object, bills, 1, "company", false, results, true, false);
}

// A dictionary that takes its first keys and then refuses.
class FullDictionary final : public Dictionary {
 public:
  explicit FullDictionary(int room) : room_(room) {}
  Value Item(std::string_view) const override { return Empty{}; }
  void SetItem(std::string_view, Value) override {
    if (room_-- <= 0) throw AutomationError(5, "", "full");
  }
  Value ItemOr(std::string_view, Value fallback) const override { return fallback; }
  bool Lookup(std::string_view) const override { return false; }

 private:
  int room_;
};

// A dictionary that remembers whether the context had been readied when it was first touched.
class LateDictionary final : public Dictionary {
 public:
  explicit LateDictionary(const ReferenceHost& host) : host_(host) {}
  Value Item(std::string_view key) const override { return Touched().Item(key); }
  void SetItem(std::string_view key, Value value) override {
    Touched().SetItem(key, std::move(value));
  }
  Value ItemOr(std::string_view key, Value fallback) const override {
    return Touched().ItemOr(key, std::move(fallback));
  }
  bool Lookup(std::string_view key) const override { return Touched().Lookup(key); }
  std::optional<bool> was_ready() const { return was_ready_; }

 private:
  HostDictionary& Touched() const {
    if (!was_ready_) was_ready_ = !host_.ready_calls().empty();
    return items_;
  }

  const ReferenceHost& host_;
  mutable HostDictionary items_;
  mutable std::optional<bool> was_ready_;
};

TEST(HostContract, AuditBillTouchesItsResultsOnlyWhenItHasItsConnection) {
  Company company;
  PlugIn object(company.host());
  HostVector bills = OneBill(class_type::kStockBill1080001);
  const auto late = std::make_shared<LateDictionary>(company.host());
  DictionaryPtr results = late;
  company.host().ClearReadyCalls();
  EXPECT_EQ(Audit(object, bills, results), 1);
  EXPECT_EQ(late->was_ready(), true);
}

TEST(HostContract, AuditBillReadiesTheFirstWayBeforeItsFirstStatement) {
  Company company;
  PlugIn object(company.host());
  HostVector bills = OneBill(class_type::kStockBill1080001);
  DictionaryPtr results = std::make_shared<HostDictionary>();
  company.host().ClearReadyCalls();
  EXPECT_EQ(Audit(object, bills, results), 1);
  ASSERT_EQ(company.host().ready_calls().size(), 1u);
  EXPECT_EQ(company.host().ready_calls()[0].member, ReadyCall::Member::kFirst);
  EXPECT_EQ(company.host().ready_calls()[0].statements, 0u);
}

TEST(HostContract, CheckItemStockNumReadiesTheSecondWay) {
  Company company;
  PlugIn object(company.host());
  const DictionaryPtr bill = Bill(class_type::kOtherIssue, 1);
  std::string message;
  RecordsetPtr rows;
  company.host().ClearReadyCalls();
  EXPECT_EQ(CheckItemStockNum(object, bill.get(), 1, "company", message, rows, "", nullptr), 1);
  ASSERT_EQ(company.host().ready_calls().size(), 1u);
  EXPECT_EQ(company.host().ready_calls()[0].member, ReadyCall::Member::kSecond);
}

TEST(HostContract, TheRowsOfAShortageOutliveTheConnection) {
  Company company;
  company.Run("insert into t_ICItem(FItemID,FTrack) values(1,76)");
  company.Run("insert into T_CC_StockBill(FID,FClassTypeID) values(1,1040002)");
  company.Run(
      "insert into T_CC_StockBillEntry(FID,FItemID,FSCStockID,FCoefficient,FQty) "
      "values(1,1,1,1,5)");
  PlugIn object(company.host());
  const DictionaryPtr bill = Bill(class_type::kOtherIssue, 1);
  std::string message;
  RecordsetPtr rows;
  ASSERT_EQ(CheckItemStockNum(object, bill.get(), 1, "company", message, rows, "", nullptr), 2);
  company.connection()->Close();
  EXPECT_EQ(ToText(rows->Field("DIFFQTY")), "-5");
}

TEST(HostContract, AMissingComponentEndsTheRunWithItsError) {
  for (const char* component :
       {"DbContext", "TavEBCGLView.GLData", "TavMAPPConnection.APPConnection"}) {
    SCOPED_TRACE(component);
    Company company;
    PlugIn object(company.host());
    company.host().settings().missing_components = {component};
    HostVector bills = OneBill(class_type::kStockBill1080001);
    DictionaryPtr results = std::make_shared<HostDictionary>();
    results->SetItem("BillInfo", "先前|");
    EXPECT_EQ(Audit(object, bills, results), -1);
    EXPECT_EQ(ToText(results->Item("ErrorMsg")), "ActiveX component can't create object");
    EXPECT_EQ(ToText(results->Item("BillInfo")), "先前|");
    for (const char* key : {"SuccessCount", "FailCount", "NegItemID"}) {
      EXPECT_TRUE(results->Lookup(key)) << key;
    }
  }
}

TEST(HostContract, WithoutARightsServiceNobodyHasARight) {
  Company company;
  PlugIn object(company.host());
  company.host().settings().missing_components = {"TavClassTpl.DataSrv"};
  HostVector bills = OneBill(class_type::kStockBill1080001);
  DictionaryPtr results = std::make_shared<HostDictionary>();
  EXPECT_EQ(Audit(object, bills, results), 0);
  EXPECT_EQ(ToText(results->Item("BillInfo")),
            "编号为：B1的单据审核失败！失败原因：您没有该单据对应基础资料的权限|");
}

TEST(HostContract, NothingInPlaceOfAnObjectIsAFailedRun) {
  Company company;
  PlugIn object(company.host());
  DictionaryPtr results = std::make_shared<HostDictionary>();
  EXPECT_EQ(Audit(object, NoVector(), results), -1);
  EXPECT_EQ(ToText(results->Item("ErrorMsg")), "Object variable or With block variable not set");
  HostVector bills = OneBill(class_type::kStockBill1080001);
  DictionaryPtr nothing;
  EXPECT_EQ(Audit(object, bills, nothing), -1);
  EXPECT_EQ(nothing, nullptr);
}

TEST(HostContract, ADictionaryThatTakesNoResultsIsAFailedRun) {
  for (int room = 0; room < 6; ++room) {
    Company company;
    PlugIn object(company.host());
    HostVector bills = OneBill(class_type::kStockBill1080001);
    DictionaryPtr results = std::make_shared<FullDictionary>(room);
    EXPECT_EQ(Audit(object, bills, results), -1) << room;
  }
}

// After a batch of any size, what the library holds is what it held before.
TEST(HostContract, NoMemoryIsKept) {
  ReleaseHostObjects();
  InstantHost host;
  PlugIn object(host);
  const auto held = [&](int32_t count) {
    HostVector bills;
    for (int32_t id = 1; id <= count; ++id) bills.Add(Bill(class_type::kSalesBill, id));
    const size_t before = mallinfo2().uordblks;
    {
      DictionaryPtr results = std::make_shared<HostDictionary>();
      EXPECT_EQ(Audit(object, bills, results), 1);
    }
    return static_cast<int64_t>(mallinfo2().uordblks) - static_cast<int64_t>(before);
  };
  held(10);  // first use
  // The allocator's own small change aside.
  EXPECT_LT(held(20000), 4096);
  ReleaseHostObjects();
}

}  // namespace
}  // namespace tavcc::testing
