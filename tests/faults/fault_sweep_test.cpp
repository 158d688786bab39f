// Every statement of every call of every scenario goes wrong once in each way. Each time
// the method keeps the promise of contracts.json; and when the host has rolled its transaction back
// and calls again, the answer and the whole database are those of a call that never met a failure:
// nothing stays behind in the objects, in their caches or in the connection. Where everything is
// tried, the host calls again after each failure, else when a statement has failed in every way.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <iostream>

#include "faults/contract_update.h"
#include "faults/contracts.h"
#include "faults/updating.h"
#include "foundation/conversions.h"
#include "host/erp.h"
#include "host/schema.h"
#include "scenario/embedded_backend.h"
#include "scenario/runner.h"
#include "scenario/values.h"
#include "support/seed.h"
#include "support/source_dir.h"
#include "support/table_rows.h"

namespace tavcc::faults {
namespace {

const std::string kTests = (SourceDir() / "tests").string();

constexpr const char* kServer = "Microsoft OLE DB Provider for SQL Server";

using Kind = StatementFault::Kind;

// An error in the middle of a batch, a lost deadlock, a connection that broke; an error that is
// left behind without being raised; a recordset that comes back closed, whose reading raises the
// error given; rows of nulls, whose reading may raise the error given.
const StatementFault kFaults[] = {
    AutomationError(50000, kServer, "disk full"),
    AutomationError(
        1205, kServer,
        "Transaction (Process ID 52) was deadlocked on lock resources with another process and has "
        "been chosen as the deadlock victim. Rerun the transaction."),
    AutomationError(-2147467259, kServer, "Communication link failure"),
    {AutomationError(50000, kServer, "log nearly full"), Kind::kLeft},
    {AutomationError(3704, "", "Operation is not allowed when the object is closed."),
     Kind::kClosed},
    {AutomationError(94, "", "Invalid use of Null"), Kind::kNulls},
};

// Whether the fault changes anything about a statement that came to this.
bool Applies(const StatementFault& fault, const LoggedStatement& sent) {
  if (fault.kind == Kind::kLeft) return !sent.error;
  if (fault.kind == Kind::kClosed) return sent.rows >= 0;
  if (fault.kind == Kind::kNulls) return sent.rows > 0;
  return true;
}

const Json& Contracts() {
  static const Json contracts = ReadContracts(ContractsFile());
  return contracts;
}

const std::vector<std::string>& Tables() {
  static const std::vector<std::string> tables = testing::CreatedTables(SchemaScript());
  return tables;
}

// The tables of the database: some scenarios drop one.
std::vector<std::string> TablesOf(Connection& connection) {
  std::string ask;
  for (const std::string& table : Tables()) {
    ask += (ask.empty() ? "select " : ",") + ("object_id('" + table + "')");
  }
  const RecordsetPtr ids = connection.Execute(ask);
  std::vector<std::string> tables;
  for (int i = 0; i < ids->FieldCount(); ++i) {
    if (!ids->Field(i).IsNull()) tables.push_back(Tables()[static_cast<size_t>(i)]);
  }
  return tables;
}

// All rows of the tables. Rows are sorted, and the numbers that the database deals out itself are
// left out: those that a failed call drew are gone for good.
std::string Contents(Connection& connection, const std::vector<std::string>& tables) {
  std::string contents;
  for (const std::string& table : testing::TablesWithRows(connection, tables)) {
    const std::string_view dealt_out = table == "t_SerialNumList" ? "FID" : "";
    std::vector<std::string> rows = testing::TableRows(connection, table, dealt_out);
    std::ranges::sort(rows);
    for (const std::string& row : rows) contents += table + row + "\n";
  }
  return contents;
}

// One step of a scenario, in a transaction of the host's on a database in the step's start state.
class Sweep {
 public:
  Sweep(const Scenario& scenario, const Step& step) : scenario_(scenario), step_(step) {}

  // Makes each statement fail in each way. Returns how many failures there were.
  int Run();

 private:
  struct Ended {
    CallOutcome outcome;
    std::string contents;
  };
  // Both call in a transaction, which is rolled back afterwards; the second looks at the database
  // before that.
  CallOutcome CallWithFault(const InjectedFailure& failure);
  Ended CallAndLook();
  void FailAt(int at, const StatementFault& fault);
  void CheckPromise(int at, const StatementFault& fault, const CallOutcome& failed);
  void ExpectNothingLeftBehind(int at);
  std::string Place(int at, const std::string& statement) const;

  const Scenario& scenario_;
  const Step& step_;
  const std::unique_ptr<Backend> backend_ = MakeEmbeddedBackend();
  std::unique_ptr<BackendSession> session_;
  std::vector<std::string> tables_;
  Ended clean_;
};

CallOutcome Sweep::CallWithFault(const InjectedFailure& failure) {
  session_->connection()->Execute("BEGIN TRANSACTION");
  CallOutcome outcome = CallStep(*session_, step_, failure);
  session_->connection()->Execute(kRollback);
  return outcome;
}

Sweep::Ended Sweep::CallAndLook() {
  session_->connection()->Execute("BEGIN TRANSACTION");
  Ended ended{CallStep(*session_, step_, std::nullopt), {}};
  ended.contents = Contents(*session_->connection(), tables_);
  session_->connection()->Execute(kRollback);
  return ended;
}

std::string Sweep::Place(int at, const std::string& statement) const {
  return scenario_.file + ", step " + std::to_string(step_.number) + ", statement " +
         std::to_string(at) + " of " + std::string(step_.cls->name) + "." +
         std::string(step_.method->name) + ":\n  " + statement;
}

void Sweep::CheckPromise(int at, const StatementFault& fault, const CallOutcome& failed) {
  const std::string method = std::string(step_.cls->name) + "." + std::string(step_.method->name);
  const std::string statement = ShowStatement(failed.sent[static_cast<size_t>(at) - 1]);
  const Json* promise = PromiseFor(Contracts(), fault.kind, method, statement, step_.args);
  std::vector<std::string> differences;
  if (promise == nullptr) {
    differences.push_back("has no promise, got " + ShowOutcome(*step_.method, failed));
  } else {
    CompareWithPromise(*promise, *step_.method, fault.error, clean_.outcome, failed, differences);
  }
  if (UpdatesContracts()) {
    Note({fault.kind, method, statement, step_.args, differences.empty(),
          AnswerOf(promise, *step_.method, fault.error, clean_.outcome, failed)});
    return;
  }
  for (const std::string& difference : differences) {
    ADD_FAILURE() << Place(at, statement) << "\n  " << FaultName(fault.kind) << ": " << difference;
  }
}

void Sweep::FailAt(int at, const StatementFault& fault) {
  const CallOutcome failed = CallWithFault({at, fault});
  ASSERT_GE(failed.sent.size(), static_cast<size_t>(at)) << Place(at, "not sent again");
  CheckPromise(at, fault, failed);
}

void Sweep::ExpectNothingLeftBehind(int at) {
  const std::string statement = ShowStatement(clean_.outcome.sent[static_cast<size_t>(at) - 1]);
  const Ended again = CallAndLook();
  // What it sends is another matter: it may find things in its caches.
  EXPECT_EQ(ShowOutcome(*step_.method, again.outcome), ShowOutcome(*step_.method, clean_.outcome))
      << Place(at, statement);
  EXPECT_EQ(again.contents, clean_.contents) << Place(at, statement);
}

int Sweep::Run() {
  session_ = SessionBefore(scenario_, step_.number, *backend_, backend_->FixesClock());
  tables_ = TablesOf(*session_->connection());
  clean_ = CallAndLook();
  int faults = 0;
  const auto& sent = clean_.outcome.sent;
  for (size_t i = 0; i < sent.size(); ++i) {
    const int at = static_cast<int>(i) + 1;
    for (const StatementFault& fault : kFaults) {
      if (!Applies(fault, sent[i])) continue;
      FailAt(at, fault);
      ++faults;
      if (::testing::Test::HasFatalFailure()) return faults;
      if (testing::TryAll()) ExpectNothingLeftBehind(at);
    }
    if (!testing::TryAll()) ExpectNothingLeftBehind(at);
  }
  return faults;
}

// Some of an area's scenarios, so that large areas are shared out to several processes.
struct Slice {
  std::string area;
  int number = 0;  // from 1
  std::vector<std::string> files;
};

class FaultSweep : public ::testing::TestWithParam<Slice> {};

TEST_P(FaultSweep, EveryFailureKeepsItsPromiseAndLeavesNothingBehind) {
  int failures = 0;
  for (const std::string& file : GetParam().files) {
    Scenario scenario = LoadScenario(file);
    // The promises speak the language of the source.
    scenario.start.resources.clear();
    for (const Step& step : scenario.steps) {
      if (step.IsCall() && !step.fail) failures += Sweep(scenario, step).Run();
    }
  }
  std::cout << failures << " failures\n";
  EXPECT_GT(failures, 0);
}

std::vector<Slice> Slices() {
  constexpr size_t kFiles = 8;
  std::vector<Slice> slices;
  std::vector<std::string> areas;
  for (const auto& entry : std::filesystem::directory_iterator(kTests + "/scenarios")) {
    // What follows a failure is on no tape.
    if (!entry.is_directory() || entry.path().filename() == "tapes") continue;
    areas.push_back(entry.path().filename().string());
  }
  std::ranges::sort(areas);
  for (const std::string& area : areas) {
    const std::vector<std::string> files = ScenarioFiles({kTests + "/scenarios/" + area});
    const size_t first = slices.size();
    const size_t count = (files.size() + kFiles - 1) / kFiles;
    for (size_t i = 0; i < count; ++i) slices.push_back({area, static_cast<int>(i) + 1, {}});
    // Dealt out in turn: neighbours are alike, and some send no statement at all.
    for (size_t i = 0; i < files.size(); ++i) slices[first + i % count].files.push_back(files[i]);
  }
  return slices;
}

INSTANTIATE_TEST_SUITE_P(Areas, FaultSweep, ::testing::ValuesIn(Slices()), [](const auto& slice) {
  return slice.param.area + "_" + std::to_string(slice.param.number);
});

}  // namespace
}  // namespace tavcc::faults
