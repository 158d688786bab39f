// Whether the journals beside a store's file were written for it.
//
// SQLite plays a journal that lies beside a file into it, whichever file it was written for: one
// that a killed process left behind spoils the database that is put in its place. So each store has
// a number of its own in the header of its file (SQLite's user version), and each transaction
// writes the header's page into the journal. A journal without that page, or with another number
// in it, is another file's.
#pragma once

#include <cstdint>
#include <string>

namespace tavcc::sql {

// The header's user version: the store's number above the version of the catalog's form.
inline constexpr int32_t kCatalogVersion = 1;
inline constexpr int32_t kVersionBits = 0xff;

// The journals that a store can have beside its file, by what their names end with.
inline constexpr const char* kJournalEndings[] = {"-wal", "-journal", "-shm"};

// The journal beside the file whose changes SQLite would play although it was not written for the
// file, which must be a store; empty when there is none. Touches nothing.
std::string ForeignJournal(const std::string& path);

}  // namespace tavcc::sql
