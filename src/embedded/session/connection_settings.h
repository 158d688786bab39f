// How a connection to a store is set up.
#pragma once

#include "embedded/catalog/sqlite.h"

namespace tavcc::sql {

// Settings that every connection has; `shared`: other processes may be at work on the store.
void PrepareConnection(SqliteConnection& store, bool shared);

}  // namespace tavcc::sql
