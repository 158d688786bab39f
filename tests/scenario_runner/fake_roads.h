// Roads over a database of three bills that a few lines of C++ play, so that the runner is tested
// without a database underneath it.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "foundation/plug_in.h"
#include "host/fake_session.h"
#include "host/reference_host.h"
#include "scenario/road.h"
#include "scenario/start_state.h"

namespace tavcc::testing {

// Rows written down by a test.
class WrittenRows final : public Recordset {
 public:
  WrittenRows(std::vector<std::string> names, std::vector<std::vector<Value>> rows)
      : names_(std::move(names)), rows_(std::move(rows)) {}

  bool IsOpen() const override { return true; }
  bool AtEnd() const override { return at_ >= rows_.size(); }
  bool AtStart() const override { return rows_.empty(); }
  void MoveNext() override { ++at_; }
  void MoveFirst() override { at_ = 0; }
  int RecordCount() const override { return static_cast<int>(rows_.size()); }
  int FieldCount() const override { return static_cast<int>(names_.size()); }
  std::string FieldName(int index) const override { return names_.at(static_cast<size_t>(index)); }
  Value Field(int index) const override { return rows_.at(at_).at(static_cast<size_t>(index)); }
  Value Field(std::string_view name) const override {
    for (size_t i = 0; i < names_.size(); ++i) {
      if (names_[i] == name) return rows_.at(at_).at(i);
    }
    throw AutomationError(RuntimeError::kItemNotInCollection);
  }
  void Detach() override {}
  void Close() override {}

 private:
  std::vector<std::string> names_;
  std::vector<std::vector<Value>> rows_;
  size_t at_ = 0;
};

// Bills 1 (not audited), 2 (audited) and 3 (linked); no other exists. Of all statements it knows
// those that cls_CX sends, and "status" for the statuses of the three. The last character of a
// statement is the bill.
class BillSession {
 public:
  RecordsetPtr Answer(std::string_view sql) {
    if (sql == "status") {
      return Rows({"FStatus"}, {{status_[1]}, {status_[2]}, {status_[3]}});
    }
    if (sql == "broken") throw AutomationError(208, "", "Invalid object name 'broken'.");
    const int32_t bill = sql.back() - '0';
    if (sql.starts_with("Select FStatus,FVoucherID")) {
      if (!status_.contains(bill)) return Rows({"FStatus", "FVoucherID"}, {});
      return Rows({"FStatus", "FVoucherID"}, {{status_[bill], 0}});
    }
    if (sql.find("FStatus=1") != std::string_view::npos) status_[bill] = 1;
    if (sql.find("FStatus=0") != std::string_view::npos) status_[bill] = 0;
    return Rows({}, {});
  }

 private:
  static RecordsetPtr Rows(std::vector<std::string> names, std::vector<std::vector<Value>> rows) {
    return std::make_shared<WrittenRows>(std::move(names), std::move(rows));
  }

  std::map<int32_t, int32_t> status_ = {{1, 0}, {2, 1}, {3, 2}};
};

class FakeRoad final : public Road {
 public:
  explicit FakeRoad(const StartState& start)
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

class FakeRoads final : public Roads {
 public:
  std::unique_ptr<Road> Open(const StartState& start) override {
    ++opened;
    return std::make_unique<FakeRoad>(start);
  }

  int opened = 0;
};

}  // namespace tavcc::testing
