#include "embedded/session/connection_settings.h"

#include <sqlite3.h>

namespace tavcc::sql {
namespace {

// The bits of SQLite's optimizations that make and pull down Bloom filters (sqliteInt.h).
constexpr int kBloomFilters = 0x00080000 | 0x00100000;

}  // namespace

void PrepareConnection(SqliteConnection& store, bool shared) {
  // SQLite's Bloom filters (3.38 to 3.40) take texts of different lengths for different, although
  // our collation ignores trailing blanks: rows would be lost from joins.
  sqlite3_test_control(SQLITE_TESTCTRL_OPTIMIZATIONS, store.handle(), kBloomFilters);
  // Without it SQLite compares the values of parameters with the filters of indexes, and compiles
  // the statement again for each new value.
  sqlite3_db_config(store.handle(), SQLITE_DBCONFIG_ENABLE_QPSG, 1, nullptr);
  store.Run("PRAGMA temp_store=MEMORY");
  // Makes the planner's own table of the temporary ones.
  store.Run("ANALYZE temp");
  store.Run("PRAGMA cache_size=-65536");
  if (!shared) store.Run("PRAGMA journal_mode=MEMORY");
  // A transaction that was kept stays kept when the power fails.
  if (shared) store.Run("PRAGMA synchronous=FULL");
}

}  // namespace tavcc::sql
