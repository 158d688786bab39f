// Memory over many statements: of all kinds, no two texts alike, some of them failing.
#include <gtest/gtest.h>
#include <malloc.h>

#include <fstream>
#include <string>

#include "embedded/embedded.h"
#include "foundation/error.h"
#include "support/seed.h"

namespace tavcc::sql {
namespace {

// A leak shows after some ten thousand; a slow one after more.
int Statements() {
  return testing::TryAll() ? 1'000'000 : 100'000;
}

struct Memory {
  size_t allocated = 0;  // bytes in use, the store's own included; 0 where nobody counts them
  size_t resident = 0;   // bytes
};

Memory Measure() {
  constexpr size_t kPage = 4096;
  std::ifstream file("/proc/self/statm");
  size_t all = 0, resident = 0;
  file >> all >> resident;
  return {mallinfo2().uordblks, resident * kPage};
}

class Endurance : public ::testing::Test {
 protected:
  void Run(const std::string& sql) {
    ++statements_;
    session_->Execute(sql);
  }
  void Fail(int number, const std::string& sql) {
    ++statements_;
    try {
      session_->Execute(sql);
      ADD_FAILURE() << sql;
    } catch (const AutomationError& error) {
      EXPECT_EQ(number, error.number()) << sql;
    }
  }

  // The statements of one bill, as it were, and what they leave behind.
  void Round(int i) {
    const std::string id = std::to_string(i), old = std::to_string(i - 100);
    const std::string text(static_cast<size_t>(i * 7 % 40), static_cast<char>('a' + i % 26));
    Run("insert into t values (" + id + ",N'" + text + "'," + id + ".25)");
    Run("select a,b,q from t where a=" + id);
    Run("update t set b='" + text + "',q=q+" + id + ".5 where a=" + id);
    Run("select a from t where b='" + text + "' and q>" + id);
    Run("delete t where a=" + old);
    Run("declare @q decimal(28,10) select @q=sum(q) from t where a>" + old + " if @q>" + id +
        " update t set q=q-0.5 where a=" + id);
    if (i % 5 == 0) Temporary(i, id);
    if (i % 10 == 0) Failing(i, id);
    if (i % 20 == 0) Run("select a as c" + id + " from t where a=" + id);  // a statement of its own
  }

  // Most tables are made again; one now and then is new.
  void Temporary(int i, const std::string& id) {
    const std::string table = i % 200 == 0 ? "#new" + id : "#n" + std::to_string(i / 5 % 8);
    const std::string into = "#into" + std::to_string(i / 5 % 4);
    Run("create table " + table + " (a int, b varchar(" + std::to_string(10 + i % 7) + "))");
    Run("insert into " + table + " values (" + id + ",'x'),(1,'y')");
    Run("select a,b into " + into + " from " + table + " where a=" + id);
    Run("drop table " + table + " drop table " + into);
  }

  void Failing(int i, const std::string& id) {
    Fail(2627, "insert into t values (" + id + ",'again',0)");
    Fail(2628, "insert into t values (-1,'" + std::string(static_cast<size_t>(41 + i % 50), 'x') +
                   "',0)");
    Fail(208, "select a from nothing" + id);
    Fail(156, "select " + id + " from from");
    Fail(8134, "begin tran update t set q=1/(a-a) where a=" + id);
    Run("rollback");
  }

  int statements_ = 0;
  std::shared_ptr<Database> database_ = Database::Open(OpenOptions{});
  ConnectionPtr session_ = database_->NewSession();
};

TEST_F(Endurance, MemoryIsFlat) {
  Run("create table t (a int not null primary key, b nvarchar(40), q decimal(28,10))");
  Memory early;
  for (int i = 1; statements_ < Statements(); ++i) {
    Round(i);
    if (early.resident == 0 && statements_ >= Statements() / 10) early = Measure();
  }
  const Memory late = Measure();
  RecordProperty("allocated_early", std::to_string(early.allocated));
  RecordProperty("allocated_late", std::to_string(late.allocated));
  RecordProperty("resident_early", std::to_string(early.resident));
  RecordProperty("resident_late", std::to_string(late.resident));
  constexpr size_t kMegabyte = 1 << 20;
  EXPECT_LT(late.allocated, early.allocated + kMegabyte);
  EXPECT_LT(late.resident, early.resident + 4 * kMegabyte);
}

}  // namespace
}  // namespace tavcc::sql
