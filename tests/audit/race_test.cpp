// Several processes audit and un-audit bills of one database file at the same time, some bills of
// their own and some of everybody's. Afterwards the ledger holds, and each bill is in the state
// that its last answer told.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <map>

#include "audit/random_bills.h"
#include "foundation/bill_kinds.h"
#include "foundation/conversions.h"
#include "foundation/error.h"
#include "foundation/text.h"
#include "host/ledger_check.h"

namespace tavcc::testing {
namespace {

constexpr int kProcesses = 4;
constexpr int kCallsOfProcess = 60;
constexpr int32_t kOwnBills = 4;  // of each process
constexpr int32_t kSharedBills = 6;

// Issues and receipts of one item in turn: the shared bills compete for the same stock row.
BillKey Bill(int32_t id) {
  return {.class_type = id % 2 == 0 ? class_type::kOtherIssue : class_type::kOtherReceipt,
          .bill_type = 0,
          .id = id};
}

void FoundCompany(const std::string& path) {
  Company company(path, true);
  company.Run("insert into t_MeasureUnit(FMeasureUnitID,FUnitGroupID,FCoefficient) values(1,1,1)");
  company.Run("insert into t_Stock(FItemID,FTypeID) values(1,500)");
  company.Run(
      "insert into t_ICItem(FItemID,FUnitGroupID,FUnitID,FTrack) "
      "values(1,1,1,76),(2,1,1,76)");
  for (const std::string_view table : {"T_CC_Inventory", "ICInvInitial"}) {
    company.Run(Cat("insert into ", table,
                    "(FItemID,FStockID,FKFDate,FPeriodDate,FQty,FBal) values"
                    "(1,1,'1900-01-01','1900-01-01',25,100),"
                    "(2,1,'1900-01-01','1900-01-01',25,100)"));
  }
  company.Run("create table t_Answers(FNo int identity(1,1) primary key,FID int,FStatus int)");
  for (int32_t id = 1; id <= kProcesses * kOwnBills + kSharedBills; ++id) {
    const BillKey bill = Bill(id);
    company.Run(
        Cat("insert into T_CC_StockBill(FID,FClassTypeID,FBillTypeID,FBillNo,FDate,"
            "FBillerID) values(",
            id, ",", bill.class_type, ",0,'B", id, "','20260310',1)"));
    company.Run(
        Cat("insert into T_CC_StockBillEntry(FID,FEntryID,FIndex,FItemID,FDCStockID,"
            "FSCStockID,FShowUnitID,FCoefficient,FQty,FShowQty,FPrice) values(",
            id, ",1,1,", id % 3 == 0 ? 2 : 1, ",1,1,1,1,", 1 + id % 7, ",1,2.5)"));
  }
}

// One call in the host's transaction. The answer is written down in the same transaction, so that
// the order of the answers is the order in which they took effect. False when the database was too
// busy: nothing was done then.
bool AuditOnce(Company& company, const BillKey& bill, int16_t direction) {
  try {
    company.Run("BEGIN TRANSACTION");
    const AuditAnswer answer = company.Audit({bill}, direction, true);
    if (answer.passed == 1) {
      company.Run(Cat("insert into t_Answers(FID,FStatus) values(", bill.id, ",",
                      direction == kAudit ? 1 : 0, ")"));
    }
    const bool whole = answer.result != -1;
    company.Run(whole ? "COMMIT TRANSACTION" : "IF @@TRANCOUNT > 0 ROLLBACK TRANSACTION");
    return whole;
  } catch (const AutomationError&) {
    company.Run("IF @@TRANCOUNT > 0 ROLLBACK TRANSACTION");
    return false;
  }
}

// The work of one process; its exit status. It must have had answers, not only a busy database.
int RaceAlong(const std::string& path, int process) {
  Company company(path, false);
  RandomCompany random(static_cast<uint32_t>(process) + 1);
  int whole = 0;
  for (int call = 0; call < kCallsOfProcess; ++call) {
    const bool shared = random.Below(2) == 0;
    const int32_t id =
        shared ? kProcesses * kOwnBills + 1 + static_cast<int32_t>(random.Below(kSharedBills))
               : process * kOwnBills + 1 + static_cast<int32_t>(random.Below(kOwnBills));
    const int16_t direction = random.Below(2) == 0 ? kAudit : kUnAudit;
    if (AuditOnce(company, Bill(id), direction)) ++whole;
  }
  return whole > kCallsOfProcess / 2 ? 0 : 1;
}

TEST(Race, EachBillIsInTheStateOfItsLastAnswer) {
  const std::string path =
      (std::filesystem::temp_directory_path() / Cat("tavcc-race-", getpid(), ".db")).string();
  std::filesystem::remove(path);
  FoundCompany(path);

  std::vector<pid_t> children;
  for (int process = 0; process < kProcesses; ++process) {
    const pid_t child = fork();
    ASSERT_NE(child, -1);
    if (child == 0) _exit(RaceAlong(path, process));
    children.push_back(child);
  }
  for (const pid_t child : children) {
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "status " << status;
  }

  Company company(path, false);
  EXPECT_TRUE(CheckLedger(*company.connection()).empty());
  std::map<std::string, std::string> told;
  const auto answers = company.Rows("select FID,FStatus from t_Answers order by FNo");
  EXPECT_GT(answers.size(), size_t{kProcesses} * 5);
  for (const std::string& answer : answers) {
    const size_t bar = answer.find('|');
    const std::string id = answer.substr(0, bar);
    const std::string status = answer.substr(bar + 1);
    // Two answers that audited the same bill, with no un-audit between them, would post it twice.
    const auto before = told.contains(id) ? told[id] : "0";
    EXPECT_NE(before, status) << "bill " << id << " got the same answer twice";
    told[id] = status;
  }
  for (const std::string& bill : company.Rows("select FID,FStatus from T_CC_StockBill")) {
    const size_t bar = bill.find('|');
    const std::string id = bill.substr(0, bar);
    EXPECT_EQ(bill.substr(bar + 1), told.contains(id) ? told[id] : "0") << "bill " << id;
  }
  std::filesystem::remove(path);
}

}  // namespace
}  // namespace tavcc::testing
