// What the reference host's components share: its settings, its connections, and what it was asked.
//
// Components keep it alive, so that one that the library still holds works after the host is gone.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "foundation/connection.h"
#include "foundation/dictionary.h"
#include "host/statement_log.h"

namespace tavcc {

// Opens a new session with the database that a connection string names, or raises why it cannot.
using ConnectionOpener = std::function<ConnectionPtr(std::string_view sDsn)>;
// Opens a session again that was closed.
using ConnectionReopener = std::function<void(Connection&)>;

// Orders texts without regard to the case of ASCII letters.
struct CaselessLess {
  using is_transparent = void;
  bool operator()(std::string_view a, std::string_view b) const;
};

struct HostSettings {
  int16_t user_id = 16394;
  // Class types whose bills the current user has no right on.
  std::set<int32_t> denied_class_types;
  // Translations by language ("CHS") and text; a text that is in none stays as it is.
  std::map<std::string, std::map<std::string, std::string>, CaselessLess> resources;
  // What the host publishes for the process; null when it publishes nothing.
  DictionaryPtr published;
  // Components that cannot be created (error 429), by ProgID, "DbContext", "Bzo.Dictionary" or
  // "Bzo.Vector".
  std::set<std::string, CaselessLess> missing_components;
  // Where set, it knows the system settings, and the database is not asked for them.
  std::function<Value(std::string_view category, std::string_view key)> read_setting;
};

// The component whose failures cost a translation only.
inline constexpr std::string_view kResourceLoader = "M8RESLOADER.Loader";

class HostState {
 public:
  // `log` may be null: connections are then handed out as they are, and nothing is recorded.
  HostState(ConnectionOpener open, ConnectionReopener reopen, StatementLog* log);

  // The one open connection of a connection string, opened on first use and again when it was
  // closed. Errors: those of the opener.
  ConnectionPtr GetConnection(std::string_view sDsn);
  // The same session past the log, for what the host reads for itself.
  ConnectionPtr GetUnloggedConnection(std::string_view sDsn);

  // A setting of the database, Empty when it has none, Null when its value is null.
  Value ReadProfile(std::string_view sDsn, std::string_view category, std::string_view key);

  // From here on every connection string names this one database, and has its one session.
  void UseOnlyDatabase(std::string_view sDsn) { only_dsn_ = sDsn; }

  // Raises error 429 when the component is missing.
  void RequireComponent(std::string_view name) const;

  void CountReadyCall(ReadyCall::Member member, int context);
  int NextContext() { return ++contexts_; }
  // Null when nothing is recorded.
  StatementLog* log() const { return log_; }

  HostSettings settings;
  // The connection string that a context was bound to last: the database that the host works in.
  std::string current_dsn;

 private:
  struct Session {
    ConnectionPtr raw;
    ConnectionPtr handed_out;  // `raw` behind the log
  };
  Session& OpenSession(std::string_view sDsn);

  ConnectionOpener open_;
  ConnectionReopener reopen_;
  StatementLog* log_;
  std::map<std::string, Session, std::less<>> sessions_;
  std::optional<std::string> only_dsn_;
  int contexts_ = 0;
};

}  // namespace tavcc
