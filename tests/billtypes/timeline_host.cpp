#include "billtypes/timeline_host.h"

#include <gtest/gtest.h>

namespace tavcc::testing {

namespace {

class TimelineConnection final : public Connection {
 public:
  explicit TimelineConnection(TimelineHost& host) : host_(host) {}
  RecordsetPtr Execute(const SqlText& sql) override { return host_.Answer(sql.text); }
  RecordsetPtr OpenClientRecordset(const SqlText& sql) override { return Execute(sql); }
  void CallProcedure(const SqlText&, std::span<ProcedureParameter>) override {}
  std::vector<ConnectionError> Errors() const override { return {}; }
  int State() const override { return host_.connection_is_closed ? kStateClosed : kStateOpen; }
  void Close() override { host_.timeline.push_back("close"); }

 private:
  TimelineHost& host_;
};

class CurrentUser final : public UserContext {
 public:
  explicit CurrentUser(int16_t user_id) : user_id_(user_id) {}
  int16_t UserID() const override { return user_id_; }

 private:
  int16_t user_id_;
};

class TimelineContext final : public DbContext {
 public:
  explicit TimelineContext(TimelineHost& host) : host_(host) {}
  std::shared_ptr<UserContext> GetUserContext() override {
    return std::make_shared<CurrentUser>(host_.user_id);
  }
  void Bind(std::string_view sDsn) override { host_.timeline.push_back("bind " + Text(sDsn)); }
  ConnectionPtr GetConnection() override {
    host_.timeline.push_back("connection");
    return host_.NewConnection();
  }
  void ReadyFirst() override {
    host_.timeline.push_back("ready first");
    if (++host_.ready_first_calls == host_.fail_ready_first_at) {
      throw AutomationError(1002, "the context", "not ready");
    }
  }
  void ReadySecond() override {
    host_.timeline.push_back("ready second");
    if (host_.fail_ready_second) throw AutomationError(1003, "the context", "not done");
  }

 private:
  static std::string Text(std::string_view text) { return std::string(text); }

  TimelineHost& host_;
};

}  // namespace

TimelineHost::TimelineHost() {
  execute = [this](std::string_view, std::string_view sql) { return Answer(sql); };
  get_profile = [](std::string_view, std::string_view) { return Value(); };
  user_id = 16394;
}

std::shared_ptr<DbContext> TimelineHost::NewDbContext() {
  return std::make_shared<TimelineContext>(*this);
}

std::string TimelineHost::FormatPlaceholders(std::string_view text, std::span<const Value> values) {
  std::string result(text);
  const size_t at = result.find("%1");
  if (at != std::string::npos) result.replace(at, 2, values[0].text());
  return result;
}

ConnectionPtr TimelineHost::NewConnection() {
  return std::make_shared<TimelineConnection>(*this);
}

RecordsetPtr TimelineHost::Answer(std::string_view sql) {
  EXPECT_EQ(CountedRows::alive, 0) << "rows are still read when this is sent: " << sql;
  timeline.emplace_back(sql);
  return answer ? answer(sql) : NoRows();
}

}  // namespace tavcc::testing
