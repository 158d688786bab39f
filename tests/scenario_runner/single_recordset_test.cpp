// All scenarios over a connection that allows one open recordset at a time, as a server-side cursor
// without multiple active results does: a rule closes what it has read before it asks again.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "embedded/embedded.h"
#include "host/company.h"
#include "host/connection_wrapper.h"
#include "host/recordset_wrapper.h"
#include "scenario/erp_session.h"
#include "scenario/runner.h"
#include "scenario/start_state.h"
#include "support/source_dir.h"

namespace tavcc {
namespace {

// The reference host's own reading of a setting: a real host has a connection of its own for that.
constexpr std::string_view kSettingQuery = "select FValue from t_SystemProfile where FCategory=N'";

// What was sent while something was open.
using Overlaps = std::vector<std::string>;

// What is open on one connection.
struct OpenRecordsets {
  Overlaps& overlaps;
  std::multiset<std::string> statements = {};

  void Sending(std::string_view sql) {
    if (sql.starts_with(kSettingQuery)) return;
    for (const std::string& open : statements) {
      overlaps.push_back("\"" + std::string(sql) + "\"\n  while this was open: \"" + open + "\"");
    }
  }
};
using OpenRecordsetsPtr = std::shared_ptr<OpenRecordsets>;

class WatchedRecordset final : public RecordsetWrapper {
 public:
  WatchedRecordset(RecordsetPtr rows, std::string sql, OpenRecordsetsPtr open)
      : RecordsetWrapper(std::move(rows)), sql_(std::move(sql)), open_(std::move(open)) {
    open_->statements.insert(sql_);
  }
  ~WatchedRecordset() override { LetGo(); }

  void Detach() override {
    RecordsetWrapper::Detach();
    LetGo();
  }
  void Close() override {
    RecordsetWrapper::Close();
    LetGo();
  }

 private:
  void LetGo() {
    if (open_ != nullptr) open_->statements.erase(open_->statements.find(sql_));
    open_ = nullptr;
  }

  std::string sql_;
  OpenRecordsetsPtr open_;
};

class WatchedConnection final : public ConnectionWrapper {
 public:
  WatchedConnection(ConnectionPtr connection, Overlaps& overlaps)
      : ConnectionWrapper(std::move(connection)), open_(new OpenRecordsets{overlaps}) {}

  RecordsetPtr Execute(const SqlText& sql) override {
    open_->Sending(sql.text);
    return Watched(ConnectionWrapper::Execute(sql), sql.text);
  }
  // A cursor on the client's side has all its rows: it keeps nothing open on the connection.
  RecordsetPtr OpenClientRecordset(const SqlText& sql) override {
    open_->Sending(sql.text);
    return ConnectionWrapper::OpenClientRecordset(sql);
  }
  void CallProcedure(const SqlText& name, std::span<ProcedureParameter> parameters) override {
    open_->Sending(name.text);
    ConnectionWrapper::CallProcedure(name, parameters);
  }

 private:
  RecordsetPtr Watched(RecordsetPtr rows, std::string_view sql) {
    if (rows == nullptr || !rows->IsOpen()) return rows;
    return std::make_shared<WatchedRecordset>(std::move(rows), std::string(sql), open_);
  }

  OpenRecordsetsPtr open_;
};

class WatchedBackend final : public Backend {
 public:
  Overlaps overlaps;

  std::unique_ptr<BackendSession> Open(const StartState& start) override {
    const auto database = sql::Database::Open(CompanyOptions([now = start.now] { return now; }));
    auto erp = std::make_unique<Erp>(
        "watched",
        [this, database](std::string_view) -> ConnectionPtr {
          return std::make_shared<WatchedConnection>(database->NewSession(), overlaps);
        },
        [database](Connection& session) {
          database->Reopen(dynamic_cast<WatchedConnection&>(session).inner());
        });
    ApplyStartState(start, erp->host(), *erp->connection());
    return std::make_unique<ErpSession>(std::move(erp), StatementObserver());
  }
};

TEST(SingleRecordset, NoRuleAsksWhileItStillReads) {
  WatchedBackend backend;
  for (const std::string& file : ScenarioFiles({(SourceDir() / "tests/scenarios").string()})) {
    const Scenario scenario = LoadScenario(file);
    const auto failures = RunScenario(scenario, backend);
    if (!failures.empty()) ADD_FAILURE() << DescribeFailures(scenario, failures);
    for (const std::string& overlap : backend.overlaps) ADD_FAILURE() << file << ": " << overlap;
    backend.overlaps.clear();
  }
}

// A rule that reads on while it asks is noticed.
TEST(SingleRecordset, AnOverlapIsNoticed) {
  WatchedBackend backend;
  const auto session = backend.Open({});
  RecordsetPtr rows = session->connection()->Execute("select FID from T_CC_ZZCX");
  session->connection()->Execute("delete from T_CC_ZZCX");
  EXPECT_EQ(backend.overlaps.size(), 1u);
  rows = nullptr;
  session->connection()->Execute("delete from T_CC_ZZCX");
  EXPECT_EQ(backend.overlaps.size(), 1u);
}

}  // namespace
}  // namespace tavcc
