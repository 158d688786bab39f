#include "host/tracing_host.h"

#include <utility>

namespace tavcc {
namespace {

RecordsetPtr Send(StatementLog& log, const SqlText& sql,
                  const std::function<RecordsetPtr()>& send) {
  return log.Send({.text = std::string(sql.text), .from = sql.from},
                  [&](LoggedStatement& statement) {
                    RecordsetPtr rows = send();
                    if (rows != nullptr && rows->IsOpen()) statement.rows = rows->RecordCount();
                    return rows;
                  });
}

class TracedContext final : public DbContext {
 public:
  TracedContext(std::shared_ptr<DbContext> context, StatementLog& log)
      : context_(std::move(context)), log_(log) {}
  std::shared_ptr<UserContext> GetUserContext() override { return context_->GetUserContext(); }
  void Bind(std::string_view sDsn) override { context_->Bind(sDsn); }
  ConnectionPtr GetConnection() override { return LogStatements(context_->GetConnection(), log_); }
  void ReadyFirst() override { context_->ReadyFirst(); }
  void ReadySecond() override { context_->ReadySecond(); }

 private:
  const std::shared_ptr<DbContext> context_;
  StatementLog& log_;
};

class TracedApplicationConnection final : public ApplicationConnection {
 public:
  TracedApplicationConnection(std::unique_ptr<ApplicationConnection> connection, StatementLog& log)
      : connection_(std::move(connection)), log_(log) {}
  RecordsetPtr Execute(std::string_view sDsn, const SqlText& strSQL) override {
    return Send(log_, strSQL, [&] { return connection_->Execute(sDsn, strSQL); });
  }

 private:
  const std::unique_ptr<ApplicationConnection> connection_;
  StatementLog& log_;
};

class TracedClassInfo final : public ClassInfo {
 public:
  TracedClassInfo(std::unique_ptr<ClassInfo> info, StatementLog& log)
      : info_(std::move(info)), log_(log) {}
  RecordsetPtr GetData(std::string_view sDsn, const SqlText& strSQL) override {
    return Send(log_, strSQL, [&] { return info_->GetData(sDsn, strSQL); });
  }

 private:
  const std::unique_ptr<ClassInfo> info_;
  StatementLog& log_;
};

}  // namespace

std::shared_ptr<DbContext> TracingHost::NewDbContext() {
  return std::make_shared<TracedContext>(host_.NewDbContext(), log_);
}

std::unique_ptr<ApplicationConnection> TracingHost::NewApplicationConnection() {
  return std::make_unique<TracedApplicationConnection>(host_.NewApplicationConnection(), log_);
}

std::unique_ptr<ClassInfo> TracingHost::NewClassInfo() {
  return std::make_unique<TracedClassInfo>(host_.NewClassInfo(), log_);
}

}  // namespace tavcc
