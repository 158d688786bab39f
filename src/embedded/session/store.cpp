#include "embedded/session/store.h"

#include <sqlite3.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <utility>

#include "embedded/catalog/catalog.h"
#include "embedded/catalog/sqlite.h"
#include "embedded/session/journal.h"
#include "embedded/session/new_file.h"
#include "foundation/error.h"
#include "foundation/file_path.h"
#include "foundation/text.h"

namespace tavcc::sql {
namespace {

namespace fs = std::filesystem;

// "Tvcc" in the header of the file.
constexpr int64_t kApplicationId = 0x54766363;

[[noreturn]] void RaiseFailure(const std::string& path, std::string_view reason) {
  throw StoreFailure(Cat(path, ": ", reason));
}

void CheckSqliteHeader(const std::string& path) {
  std::ifstream file(PathOf(path), std::ios::binary);
  char header[16] = {};
  if (!file.read(header, sizeof header)) RaiseFailure(path, "cannot be read, or is no database");
  if (std::string_view(header, sizeof header) != std::string_view("SQLite format 3\0", 16)) {
    RaiseFailure(path, "is no database of this kind");
  }
}

bool MayWrite(const fs::path& path) {
  sqlite3_vfs* const system = sqlite3_vfs_find(nullptr);
  int allowed = 0;
  const int code =
      system->xAccess(system, PathText(path).c_str(), SQLITE_ACCESS_READWRITE, &allowed);
  return code == SQLITE_OK && allowed != 0;
}

// Whether the file can only be read as it stands. SQLite wants to write a journal beside the file
// even to read it; where there is one already, somebody else may be writing, and it is asked.
bool IsReadOnly(const std::string& path) {
  const fs::path absolute = fs::absolute(PathOf(path));
  if (MayWrite(absolute) && MayWrite(absolute.parent_path())) return false;
  return !fs::exists(PathOf(path + "-wal"));
}

void Check(const StoreLocation& location) {
  const std::string& path = location.path;
  SqliteConnection store(location);
  if (store.QueryInteger("PRAGMA application_id") != kApplicationId) {
    RaiseFailure(path, "is no database of this kind");
  }
  const int64_t version = store.QueryInteger("PRAGMA user_version") & kVersionBits;
  if (version != kCatalogVersion) {
    RaiseFailure(path, Cat("has version ", static_cast<int32_t>(version), ", not version ",
                           kCatalogVersion));
  }
}

// An empty store's file. Another process may make it at the same time: then there is one.
void MakeStore(const std::string& path) {
  SqliteConnection memory(StoreLocation{});
  memory.Run(StoredObjects::NewStoreText());
  try {
    SaveStore(memory, path);
  } catch (const SqlError&) {
    if (!fs::exists(PathOf(path))) throw;
  }
}

// A number for the header that hardly any other store has.
int32_t NewUserVersion() {
  const uint32_t random = std::random_device()();
  return static_cast<int32_t>((random & ~uint32_t{kVersionBits}) | uint32_t{kCatalogVersion});
}

}  // namespace

StoreLocation FindStore(const OpenOptions& options) {
  const std::string& path = options.path;
  if (path == kInMemory) {
    StoreLocation memory;
    memory.image = options.image;
    return memory;
  }
  if (path.empty()) throw StoreFailure("the name of the file is empty");
  std::error_code error;
  if (options.create && !fs::exists(PathOf(path), error)) MakeStore(path);
  const auto status = fs::status(PathOf(path), error);
  if (!fs::exists(status)) RaiseFailure(path, "does not exist");
  if (!fs::is_regular_file(status)) RaiseFailure(path, "is no file");
  CheckSqliteHeader(path);
  CheckOwnJournals(path);
  const StoreLocation location{path, true, IsReadOnly(path), options.busy_seconds};
  Check(location);
  return location;
}

void CheckOwnJournals(const std::string& path) {
  const std::string journal = ForeignJournal(path);
  if (journal.empty()) return;
  RaiseFailure(path,
               Cat("cannot be opened beside ", journal,
                   ", the journal of another file: its changes would be written into this one; "
                   "move it away, or put the file back that it belongs to"));
}

std::string StoreImage(SqliteConnection& memory) {
  if (memory.InTransaction()) throw StoreFailure("there is no image inside of a transaction");
  sqlite3_int64 size = 0;
  const std::unique_ptr<unsigned char, void (*)(void*)> image(
      sqlite3_serialize(memory.handle(), "main", &size, 0), sqlite3_free);
  if (image == nullptr) throw StoreFailure("out of memory");
  return std::string(reinterpret_cast<const char*>(image.get()), static_cast<size_t>(size));
}

void SaveStore(SqliteConnection& memory, const std::string& path) {
  memory.Run("PRAGMA application_id=" + std::to_string(kApplicationId));
  memory.Run(Cat("PRAGMA user_version=", NewUserVersion()));
  std::string image = StoreImage(memory);
  // The header's two numbers that say that changes go to a write-ahead log.
  image[18] = image[19] = 2;
  MakeFile(path, image);
}

}  // namespace tavcc::sql
