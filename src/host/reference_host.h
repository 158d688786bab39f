// The reference ERP host: an honest small host over any Connection.
//
// Within one host the same connection string gives the same open connection, so that what is read
// by connection string is what a context's connection wrote. Settings may be changed at any time
// and hold from then on.
//
// The library keeps two host objects per thread (ReleaseHostObjects lets go of them): before a
// thread turns to another host, they must be released, or settings would still come from the first.
#pragma once

#include <memory>
#include <vector>

#include "foundation/host.h"
#include "host/host_state.h"
#include "host/statement_log.h"

namespace tavcc {

class ReferenceHost final : public Host {
 public:
  // `open` makes a session with the database of a connection string. A session that was closed is
  // opened again by `reopen` when it is next asked for, or, where there is none, replaced by a new
  // one. With a `log`, which must outlive the host and its connections, everything sent through the
  // host is written there; what the host reads for itself (settings) is not.
  explicit ReferenceHost(ConnectionOpener open, ConnectionReopener reopen = nullptr,
                         StatementLog* log = nullptr);

  HostSettings& settings() { return state_->settings; }
  // The readying calls that the log keeps, in order. There must be a log.
  const std::vector<ReadyCall>& ready_calls() const { return state_->log()->ready_calls(); }
  void ClearReadyCalls() { state_->log()->ClearReadyCalls(); }
  // The database that the host works in, e.g. for settings that are asked for without a connection
  // string, until a context is bound to another one.
  void UseDatabase(std::string_view sDsn) { state_->current_dsn = sDsn; }
  // From here on every connection string names this one database, and has its one session.
  void UseOnlyDatabase(std::string_view sDsn) {
    UseDatabase(sDsn);
    state_->UseOnlyDatabase(sDsn);
  }
  // The connection that the host hands out for a connection string.
  ConnectionPtr GetConnection(std::string_view sDsn) { return state_->GetConnection(sDsn); }
  // The same session past the log.
  ConnectionPtr GetUnloggedConnection(std::string_view sDsn) {
    return state_->GetUnloggedConnection(sDsn);
  }

  std::shared_ptr<DbContext> NewDbContext() override;
  std::unique_ptr<ApplicationConnection> NewApplicationConnection() override;
  std::unique_ptr<ClassInfo> NewClassInfo() override;
  std::unique_ptr<SystemProfile> NewSystemProfile() override;
  std::unique_ptr<ErrorChecker> NewErrorChecker() override;
  std::unique_ptr<DataService> NewDataService() override;
  std::shared_ptr<GLData> NewGLData() override;
  std::shared_ptr<ResourceLoader> NewResourceLoader() override;
  // A HostDictionary and a HostVector.
  DictionaryPtr NewDictionary() override;
  VectorPtr NewVector() override;
  Dictionary* PublishedValues() override { return state_->settings.published.get(); }
  // Null and an omitted value are the empty text, everything else converts as ToText.
  std::string FieldText(const Value& value) override;
  std::string FormatPlaceholders(std::string_view text, std::span<const Value> values) override;

 private:
  std::shared_ptr<HostState> state_;
};

}  // namespace tavcc
