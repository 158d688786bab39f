#include "embedded/session/session_context.h"

#include "embedded/session/connection_settings.h"

namespace tavcc::sql {
namespace {

SqliteConnection& PrepareStore(SqliteConnection& store, const StoreLocation& location) {
  PrepareConnection(store, location.shared);
  if (!location.shared && !location.image) store.Run(StoredObjects::NewStoreText());
  return store;
}

}  // namespace

SessionContext::SessionContext(const StoreLocation& location)
    : store(location),
      shared(location.shared),
      catalog(PrepareStore(store, location), shared),
      transaction(store, catalog, shared) {}

void SessionContext::Clear() {
  cursors.clear();
  if (transaction.IsOpen()) transaction.RollbackAll();
  catalog.temporaries().Clear();
  catalog.Forget();
  state = SessionState{};
  errors.ForgetLast();
  results.Clear();
  results.recordsets().Forget();
}

void SessionContext::ReportTo(BatchReader* reader) {
  errors.ReportTo(reader);
  results.ReportTo(reader);
}

StoredValue SessionContext::ValueOf(SessionValue value, const Frame& frame) const {
  switch (value) {
    case SessionValue::kRowCount:
      return state.row_count;
    case SessionValue::kError:
      return int64_t{errors.last()};
    case SessionValue::kIdentity:
      return state.identity ? StoredValue(*state.identity) : StoredValue();
    case SessionValue::kScopeIdentity:
      return frame.scope_identity ? StoredValue(*frame.scope_identity) : StoredValue();
    case SessionValue::kFetchStatus:
      return int64_t{state.fetch_status};
    case SessionValue::kTransactionCount:
      return int64_t{transaction.count()};
    case SessionValue::kVersion:
      return std::string("Embedded database");
    case SessionValue::kDatabaseName:
      return std::string("main");
    case SessionValue::kServerName:
      return std::string("embedded");
    case SessionValue::kUserName:
      return std::string("dbo");
    case SessionValue::kProcessId:
      return int64_t{1};
    case SessionValue::kProcedureId:
      return int64_t{0};
    case SessionValue::kNestLevel:
      return int64_t{state.nesting};
  }
  return {};
}

}  // namespace tavcc::sql
