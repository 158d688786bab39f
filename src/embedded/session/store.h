// The file of a store: finding out whether it is one, and making it one.
#pragma once

#include <string>
#include <string_view>

#include "embedded/catalog/sqlite.h"
#include "embedded/open_options.h"

namespace tavcc::sql {

inline constexpr std::string_view kInMemory = ":memory:";

// Where the store is, and how it is to be opened. A file is made where that is asked for and there
// is none. A file that is no store is not written to. Errors: SqlError kStoreFailure as
// Database::Open states them.
StoreLocation FindStore(const OpenOptions& options);

// Errors: SqlError kStoreFailure when a journal lies beside the file that was not written for it.
void CheckOwnJournals(const std::string& path);

// All of a store in memory, for StoreLocation::image. Errors: SqlError kStoreFailure inside of a
// transaction, and without memory.
std::string StoreImage(SqliteConnection& memory);

// Makes a file of the store in memory. Errors: SqlError kStoreFailure as Database::SaveAs states
// them.
void SaveStore(SqliteConnection& memory, const std::string& path);

}  // namespace tavcc::sql
