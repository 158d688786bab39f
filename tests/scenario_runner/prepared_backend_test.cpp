// All scenarios as a server runs them: on one prepared database, each in a transaction that is
// rolled back, and with a clock that nobody set.
#include "scenario/prepared_backend.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "embedded/embedded.h"
#include "foundation/error.h"
#include "host/schema.h"
#include "scenario/runner.h"
#include "support/source_dir.h"

namespace tavcc {
namespace {

// Neither in the year of the periods nor in that of the bills.
constexpr std::string_view kOtherMoment = "2031-08-09 11:12:13";

// Numbers that were given are not taken back with a transaction.
constexpr const char* kResetIdentities = "truncate table t_SerialNumList";

std::vector<std::string> AllScenarios() {
  return ScenarioFiles({(SourceDir() / "tests/scenarios").string()});
}

void ExpectAllPass(Backend& backend, Skipped& skipped) {
  for (const std::string& file : AllScenarios()) {
    const Scenario scenario = LoadScenario(file);
    const auto failures = RunScenario(scenario, backend, &skipped);
    if (!failures.empty()) ADD_FAILURE() << DescribeFailures(scenario, failures);
  }
}

class Prepared {
 public:
  Prepared() {
    sql::OpenOptions options;
    options.clock = [] { return *DateTime::Parse(kOtherMoment); };
    database_ = sql::Database::Open(options);
    database_->RunScript(SchemaScript());
    database_->RunScript(BaseScript());
  }

  PreparedDatabase Access() {
    return {"prepared", [this](std::string_view) { return database_->NewSession(); },
            [this](Connection& session) { database_->Reopen(session); }, kResetIdentities};
  }
  sql::Database& database() { return *database_; }

 private:
  std::shared_ptr<sql::Database> database_;
};

TEST(PreparedBackend, RunEveryScenarioAndLeaveNothingBehind) {
  Prepared prepared;
  Skipped skipped;
  {
    const auto backend = MakePreparedBackend(prepared.Access());
    ExpectAllPass(*backend, skipped);
  }
  EXPECT_GT(skipped.for_clock.size(), 0u);
  EXPECT_LT(skipped.for_clock.size(), AllScenarios().size() / 10)
      << "marks are for what needs the clock";
  // Errors like those of conversion end the transaction, here as on the server.
  EXPECT_LT(skipped.cut_short.size(), AllScenarios().size() / 50);
  const auto session = prepared.database().NewSession();
  for (const char* table : {"T_CC_StockBill", "T_CC_ZZCX", "t_Organization", "T_CC_Inventory"}) {
    EXPECT_EQ(session->Execute(std::string("select count(*) from ") + table)->Field(0),
              Value(int32_t{0}))
        << table;
  }
}

TEST(PreparedBackend, RefuseADatabaseWithBills) {
  Prepared prepared;
  prepared.database().RunScript("insert into T_CC_StockBill(FID) values(1)");
  const auto backend = MakePreparedBackend(prepared.Access());
  EXPECT_THROW(backend->Open(StartState()), AutomationError);
}

TEST(PreparedBackend, AnErrorThatEndsTheTransactionSkipsTheRest) {
  Prepared prepared;
  const auto backend = MakePreparedBackend(prepared.Access());
  const auto session = backend->Open(StartState());
  EXPECT_THROW(session->connection()->Execute("select * from NoTable"), AutomationError);
  EXPECT_EQ(session->SkipReason(), "");
  EXPECT_THROW(session->connection()->Execute("rollback transaction select * from NoTable"),
               AutomationError);
  EXPECT_THAT(session->SkipReason(), ::testing::HasSubstr("ended the transaction"));
  session->connection()->Execute("insert into T_CC_StockBill(FID) values(1)");
  EXPECT_TRUE(
      backend->Open(StartState())->connection()->Execute("select * from T_CC_StockBill")->AtEnd());
}

}  // namespace
}  // namespace tavcc
