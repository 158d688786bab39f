// The ladder of a bill against the batch audit: the same gates, in the same order, with the same
// answers, asked one by one.
#include "registry/bill_ladder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "audit/batch_audit.h"
#include "foundation/bill_kinds.h"
#include "foundation/conversions.h"
#include "host/erp.h"
#include "host/host_dictionary.h"
#include "host/schema.h"

namespace tavcc {
namespace {

using ::testing::ElementsAreArray;

std::shared_ptr<HostDictionary> BillOf(int32_t class_type, int32_t bill_type, int32_t id) {
  auto bill = std::make_shared<HostDictionary>();
  bill->SetItem("ClassTypeID", class_type);
  bill->SetItem("BillType", bill_type);
  bill->SetItem("BillTypeID", bill_type);
  bill->SetItem("BillInterID", id);
  bill->SetItem("HeadTableName", "T_CC_StockBill");
  bill->SetItem("BillNo", "B" + std::to_string(id));
  return bill;
}

std::vector<std::string> NamesOf(const Ladder& ladder) {
  std::vector<std::string> names;
  for (const LoneGate& gate : ladder) names.emplace_back(gate.name);
  return names;
}

std::vector<std::string> BatchNames(const std::vector<std::string>& related) {
  std::vector<std::string> names = {"right",
                                    "auditor",
                                    "exists",
                                    "state",
                                    "voucher",
                                    "maker",
                                    "zero prices",
                                    "period",
                                    "downstream bills",
                                    "downstream payments",
                                    "day-end bill"};
  names.insert(names.end(), related.begin(), related.end());
  for (const char* name :
       {"credit", "limit prices", "negative stock", "rejected", "serial numbers"}) {
    names.emplace_back(name);
  }
  return names;
}

class BillLadderTest : public ::testing::Test {
 protected:
  BillLadderTest() { object_.InitObjects(erp_.dsn()); }

  Erp erp_{sql::OpenOptions{.clock = [] { return *DateTime::Parse("2026-03-15 10:00:00"); }}};
  PlugIn object_{erp_.host()};
};

TEST_F(BillLadderTest, HasTheGatesOfTheClass) {
  const std::vector<std::string> stock_bill = {"related: state", "related: voucher",
                                               "related: maker", "related: period"};
  std::vector<std::string> purchase = stock_bill;
  purchase.insert(purchase.end(), {"related: downstream bills", "related: voucher of the reversal",
                                   "related: payments"});
  std::vector<std::string> estimate = stock_bill;
  estimate.insert(estimate.begin(), "related: made by the system");
  estimate.push_back("related: downstream bills");
  const std::vector<std::string> rebate = {"related: payments"};
  const struct {
    int32_t class_type;
    std::vector<std::string> related;
  } rows[] = {
      {1020001, {}},         {1020002, purchase},   {1020003, estimate}, {1020004, rebate},
      {1030001, {}},         {1030002, {}},         {1030003, {}},       {1030004, rebate},
      {1040001, stock_bill}, {1040002, stock_bill}, {1040003, {}},       {1040004, {}},
      {1040005, {}},         {1040006, {}},         {1040007, {}},       {1040008, {}},
  };
  for (const auto& row : rows) {
    for (const int16_t direction : {int16_t{1}, int16_t{-1}}) {
      const BillLadder ladder =
          LadderOf(object_, BillOf(row.class_type, 0, 1), direction, erp_.dsn());
      EXPECT_THAT(NamesOf(ladder.batch), ElementsAreArray(BatchNames(row.related)))
          << row.class_type << " in direction " << direction;
      EXPECT_THAT(NamesOf(ladder.host), ElementsAreArray({"overdue amounts", "invoices"}));
    }
  }
}

TEST_F(BillLadderTest, HasTheGatesOfTheClassItself) {
  const std::vector<std::string> head = {"head: exists", "head: state", "head: voucher"};
  std::vector<std::string> with_period = head;
  with_period.push_back("head: period");
  std::vector<std::string> with_maker = with_period;
  with_maker.push_back("head: maker");
  const struct {
    int32_t class_type;
    int16_t direction;
    std::vector<std::string> gates;
    std::string method;
  } rows[] = {
      {1040005, 1, with_maker, "cls_ZZ.VerifyDataBeforeAudit"},
      {1040005, -1, with_period, "cls_ZZ.VerifyDataBeforeUnAudit"},
      {1040006, 1, head, "cls_CX.VerifyDataBeforeAudit"},
      {1040006, -1, head, "cls_CX.VerifyDataBeforeUnAudit"},
      {1040007, 1, head, "cls_DB.VerifyDataBeforeAudit"},
      {1040007, -1, head, "cls_DB.VerifyDataBeforeUnAudit"},
      {1020001, 1, {}, ""},
      {1030001, -1, {}, ""},
  };
  for (const auto& row : rows) {
    const Ladder own =
        LadderOf(object_, BillOf(row.class_type, 0, 1), row.direction, erp_.dsn()).own;
    EXPECT_THAT(NamesOf(own), ElementsAreArray(row.gates));
    for (const LoneGate& gate : own) EXPECT_EQ(gate.method, row.method);
  }
}

// What the batch audit says of the bill, and what the first gate that refuses says when each is
// asked on its own.
TEST_F(BillLadderTest, AnswersAsTheBatchAuditDoes) {
  for (const auto script : {SchemaScript(), BaseScript(), SampleScript()}) erp_.RunScript(script);
  const RecordsetPtr heads = erp_.connection()->OpenClientRecordset(
      SqlText("select FID, FClassTypeID, FBillTypeID from T_CC_StockBill order by FID"));
  int refused = 0, passed = 0;
  for (; !heads->AtEnd(); heads->MoveNext()) {
    const int32_t id = ToLong(heads->Field(0));
    const auto bill = BillOf(ToLong(heads->Field(1)), ToLong(heads->Field(2)), id);
    for (const int16_t direction : {int16_t{1}, int16_t{-1}}) {
      SCOPED_TRACE(std::to_string(id) + " in direction " + std::to_string(direction));
      std::string reason;
      for (const LoneGate& gate : LadderOf(object_, bill, direction, erp_.dsn()).batch) {
        erp_.BeginTransaction();
        const Verdict verdict = gate.prepare()();
        erp_.Rollback();
        if (!verdict.passed && reason.empty()) reason = verdict.message;
      }

      const auto bills = erp_.host().NewVector();
      bills->Add(Value(bill));
      DictionaryPtr results = std::make_shared<HostDictionary>();
      erp_.BeginTransaction();
      const int16_t answer =
          AuditBill(object_, *bills, direction, erp_.dsn(), true, results, true, true);
      erp_.Rollback();
      const std::string line = ToText(results->Item("BillInfo"));
      ASSERT_NE(answer, -1) << ToText(results->Item("ErrorMsg"));
      EXPECT_EQ(answer == 1, reason.empty()) << line << "\n" << reason;
      EXPECT_NE(line.find(reason), std::string::npos) << line << "\n" << reason;
      ++(answer == 1 ? passed : refused);
    }
  }
  EXPECT_GT(passed, 10);
  EXPECT_GT(refused, 10);
}

}  // namespace
}  // namespace tavcc
