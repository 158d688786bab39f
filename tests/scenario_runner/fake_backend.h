// A backend of a database of three bills that a few lines of C++ play, so that the runner is tested
// without a database underneath it.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "foundation/plug_in.h"
#include "host/answer_rows.h"
#include "host/fake_session.h"
#include "host/reference_host.h"
#include "scenario/backend.h"
#include "scenario/start_state.h"

namespace tavcc::testing {

// Rows written down by a test.
inline RecordsetPtr WrittenRows(std::vector<std::string> names,
                                std::vector<std::vector<Value>> rows) {
  return MakeRecordset(std::make_shared<AnswerRows>(AnswerRows{std::move(names), std::move(rows)}));
}

// Bills 1 (not audited), 2 (audited) and 3 (linked); no other exists. Of all statements it knows
// those that cls_CX sends, and "status" for the statuses of the three. The last character of a
// statement is the bill.
class BillSession {
 public:
  RecordsetPtr Answer(std::string_view sql) {
    if (sql == "status") {
      return WrittenRows({"FStatus"}, {{status_[1]}, {status_[2]}, {status_[3]}});
    }
    if (sql == "broken") throw AutomationError(208, "", "Invalid object name 'broken'.");
    const int32_t bill = sql.back() - '0';
    if (sql.starts_with("Select FStatus,FVoucherID")) {
      if (!status_.contains(bill)) return WrittenRows({"FStatus", "FVoucherID"}, {});
      return WrittenRows({"FStatus", "FVoucherID"}, {{status_[bill], 0}});
    }
    if (sql.find("FStatus=1") != std::string_view::npos) status_[bill] = 1;
    if (sql.find("FStatus=0") != std::string_view::npos) status_[bill] = 0;
    return WrittenRows({}, {});
  }

 private:
  std::map<int32_t, int32_t> status_ = {{1, 0}, {2, 1}, {3, 2}};
};

class FakeBackendSession final : public BackendSession {
 public:
  explicit FakeBackendSession(const StartState& start)
      : host_([this](std::string_view) { return NewSession(); }, nullptr, &log_) {
    ApplyStartState(start, host_, *connection());
  }

  Host& host() override { return host_; }
  std::string dsn() override { return "fake"; }
  ConnectionPtr connection() override { return host_.GetConnection("fake"); }
  Value Call(const ClassDescription& cls, const Method& method,
             std::vector<Value>& arguments) override {
    PlugIn object(host_);
    return Invoke(cls, method, object, arguments);
  }
  void StartLog(const std::optional<InjectedFailure>& failure) override {
    log_.Clear();
    if (failure) log_.FailAt(failure->at, failure->fault);
  }
  std::vector<LoggedStatement> TakeLog() override {
    auto statements = log_.statements();
    log_.Clear();
    return statements;
  }

 private:
  ConnectionPtr NewSession() {
    auto session = std::make_shared<FakeSession>();
    session->answer = [this](std::string_view sql) { return bills_.Answer(sql); };
    return session;
  }

  BillSession bills_;
  StatementLog log_;
  ReferenceHost host_;
};

class FakeBackend final : public Backend {
 public:
  std::unique_ptr<BackendSession> Open(const StartState& start) override {
    ++opened;
    return std::make_unique<FakeBackendSession>(start);
  }

  int opened = 0;
};

}  // namespace tavcc::testing
