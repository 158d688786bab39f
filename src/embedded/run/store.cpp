#include "embedded/run/store.h"

#include <sqlite3.h>

#include <filesystem>
#include <fstream>

#include "foundation/error.h"
#include "foundation/text.h"

namespace tavcc::sql {
namespace {

// "Tvcc" in the header of the file, and the version of the catalog's form.
constexpr int64_t kApplicationId = 0x54766363;
constexpr int64_t kCatalogVersion = 1;

[[noreturn]] void Refuse(const std::string& path, std::string_view reason) {
  throw AutomationError(kStoreFailure, "embedded database", Cat(path, ": ", reason));
}

bool IsEmptyFile(const std::string& path) {
  std::error_code error;
  return std::filesystem::file_size(path, error) == 0 && !error;
}

void RequireSqliteHeader(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  char header[16] = {};
  if (!file.read(header, sizeof header)) Refuse(path, "cannot be read, or is no database");
  if (std::string_view(header, sizeof header) != std::string_view("SQLite format 3\0", 16)) {
    Refuse(path, "is no database of this kind");
  }
}

void Make(SqliteConnection& store) {
  store.Run("PRAGMA journal_mode=WAL");
  store.Run("BEGIN IMMEDIATE");
  // Another process may have made it meanwhile.
  if (store.QueryInteger("PRAGMA application_id") != kApplicationId) {
    store.Run("PRAGMA application_id=" + std::to_string(kApplicationId));
    store.Run("PRAGMA user_version=" + std::to_string(kCatalogVersion));
    store.Run(Catalog::NewStoreText());
  }
  store.Run("COMMIT");
}

void Check(const std::string& path) {
  SqliteConnection store(path, SQLITE_OPEN_READONLY);
  sqlite3_busy_timeout(store.handle(), 10'000);
  if (store.QueryInteger("PRAGMA application_id") != kApplicationId) {
    Refuse(path, "is no database of this kind");
  }
  const int64_t version = store.QueryInteger("PRAGMA user_version");
  if (version != kCatalogVersion) {
    Refuse(path, Cat("has version ", static_cast<int32_t>(version), ", not version ",
                     static_cast<int32_t>(kCatalogVersion)));
  }
}

}  // namespace

void RequireStore(const OpenOptions& options) {
  const std::string& path = options.path;
  std::error_code error;
  const auto status = std::filesystem::status(path, error);
  const bool exists = std::filesystem::exists(status);
  try {
    if (exists && !std::filesystem::is_regular_file(status)) Refuse(path, "is no file");
    if (!exists && !options.create) Refuse(path, "does not exist");
    if (!exists || (IsEmptyFile(path) && options.create)) {
      SqliteConnection store(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
      sqlite3_busy_timeout(store.handle(), 10'000);
      Make(store);
    } else {
      RequireSqliteHeader(path);
      Check(path);
    }
  } catch (const SqlError& failure) {
    Refuse(path, failure.message);
  }
}

}  // namespace tavcc::sql
