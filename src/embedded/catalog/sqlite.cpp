// Owned SQLite handles, and the translation of SQLite's failures.
#include "embedded/catalog/sqlite.h"

#include <sqlite3.h>

#include <array>
#include <cstring>
#include <filesystem>
#include <limits>
#include <system_error>
#include <thread>
#include <utility>

#include "foundation/file_path.h"

namespace tavcc::sql {
namespace {

std::string Doubled(std::string_view text, char quote) {
  std::string out(1, quote);
  for (const char c : text) {
    if (c == quote) out += quote;
    out += c;
  }
  out += quote;
  return out;
}

// The limits of SQLite that a statement can pass, by how their texts begin, and what the dialect
// says of them.
struct Limit {
  std::string_view text;
  errors::Number number;
  std::string_view construct;  // of errors::kNotSupported
};
constexpr Limit kLimits[] = {
    {"parser stack overflow", errors::kNestedTooDeep, {}},
    {"Expression tree is too large", errors::kNestedTooDeep, {}},
    {"too many terms in compound SELECT", errors::kNestedTooDeep, {}},
    {"too many SQL variables", errors::kTooComplex, {}},
    {"variable number must be", errors::kTooComplex, {}},
    {"too many arguments on function", errors::kTooComplex, {}},
    {"at most 64 tables in a join", errors::kNotSupported, "a join of more than 64 tables"},
    {"too many FROM clause terms", errors::kNotSupported, "a join of more than 64 tables"},
    {"too many columns", errors::kNotSupported, "a query of more than 2000 columns"},
};

std::string QuoteBytes(std::string_view bytes) {
  static constexpr char kDigits[] = "0123456789abcdef";
  std::string out = "x'";
  for (const char c : bytes) {
    out += kDigits[static_cast<unsigned char>(c) >> 4];
    out += kDigits[static_cast<unsigned char>(c) & 15];
  }
  return out + '\'';
}

// The path as SQLite shall take it: absolute, so that no name is one of SQLite's own (":memory:",
// "file:…").
std::string FilePath(const std::string& path) {
  std::error_code problem;
  const auto absolute = std::filesystem::absolute(PathOf(path), problem);
  return problem ? path : PathText(absolute);
}

// The file as a URI that lets SQLite read it without a lock and without a journal.
std::string ReadOnlyUri(const std::string& path) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  const std::u8string text = PathOf(FilePath(path)).generic_u8string();
  std::string generic(text.begin(), text.end());
  if (!generic.starts_with('/')) generic.insert(0, "/");
  std::string uri = "file://";
  for (const char c : generic) {
    if (c == '?' || c == '#' || c == '%') {
      uri += '%';
      uri += kDigits[static_cast<unsigned char>(c) >> 4];
      uri += kDigits[static_cast<unsigned char>(c) & 15];
    } else {
      uri += c;
    }
  }
  return uri + "?immutable=1";
}

// The system's own word for the last failure, e.g. ": Permission denied"; empty where it has none.
std::string SystemReason(sqlite3* handle) {
  const int number = sqlite3_system_errno(handle);
  return number == 0 ? "" : ": " + std::system_category().message(number);
}

// Short and even, so that no writer of a queue has a smaller chance than another.
constexpr auto kWaitForLock = std::chrono::milliseconds(2);

}  // namespace

void SqliteStatement::Finalize::operator()(sqlite3_stmt* statement) const {
  sqlite3_finalize(statement);
}

std::string QuoteName(std::string_view name) {
  if (name.find('\0') != std::string_view::npos) RaiseUnsupported("a name with a zero character");
  return Doubled(name, '"');
}

// SQLite's text ends at a zero character, so a literal cannot hold one.
std::string QuoteText(std::string_view text) {
  if (text.find('\0') == std::string_view::npos) return Doubled(text, '\'');
  return "(CAST(" + QuoteBytes(text) + " AS TEXT))";
}

std::string QuoteValue(const StoredValue& value) {
  switch (value.kind()) {
    case StoredValue::Kind::kNull:
      return "NULL";
    case StoredValue::Kind::kInteger:
      return std::to_string(value.integer());
    case StoredValue::Kind::kReal: {
      char buffer[40];
      snprintf(buffer, sizeof buffer, "%.17e", value.real());
      return buffer;
    }
    case StoredValue::Kind::kText:
      return QuoteText(value.text());
    default:
      return QuoteBytes(value.blob());
  }
}

SqliteConnection::SqliteConnection(StoreLocation location) : location_(std::move(location)) {
  // Counting memory costs a lock for each allocation. It can only be said before SQLite is first
  // used, and where somebody else was first, it goes on counting.
  static const int uncounted = sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
  static_cast<void>(uncounted);
  try {
    Open();
    RegisterFunctions(handle_, &functions_);
  } catch (...) {
    sqlite3_close_v2(handle_);
    throw;
  }
}

void SqliteConnection::Open() {
  int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX;
  std::string name = ":memory:";
  if (location_.read_only) {
    flags = SQLITE_OPEN_READONLY | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_URI;
    name = ReadOnlyUri(location_.path);
  } else if (location_.shared) {
    name = FilePath(location_.path);
  }
  const int code = sqlite3_open_v2(name.c_str(), &handle_, flags, nullptr);
  if (handle_ == nullptr) throw StoreFailure("out of memory");
  sqlite3_extended_result_codes(handle_, 1);
  if (code != SQLITE_OK) throw FailureOf(sqlite3_extended_errcode(handle_));
  if (location_.image) TakeImage(*location_.image);
  if (!location_.shared) return;
  sqlite3_busy_handler(
      handle_,
      [](void* self, int tries) {
        return static_cast<SqliteConnection*>(self)->GoOnWaiting(tries) ? 1 : 0;
      },
      this);
  // The end of a transaction is the end of what it was marked with.
  const auto forget = [](void* self) { static_cast<SqliteConnection*>(self)->marked_ = false; };
  sqlite3_rollback_hook(handle_, forget, this);
  sqlite3_commit_hook(
      handle_,
      [](void* self) {
        static_cast<SqliteConnection*>(self)->marked_ = false;
        return 0;
      },
      this);
}

void SqliteConnection::TakeImage(const std::string& image) {
  auto* const copy = static_cast<unsigned char*>(sqlite3_malloc64(image.size()));
  if (copy == nullptr) throw StoreFailure("out of memory");
  std::memcpy(copy, image.data(), image.size());
  const auto size = static_cast<sqlite3_int64>(image.size());
  // The copy is SQLite's from here on, also where this fails.
  const int code =
      sqlite3_deserialize(handle_, "main", copy, size, size,
                          SQLITE_DESERIALIZE_FREEONCLOSE | SQLITE_DESERIALIZE_RESIZEABLE);
  if (code != SQLITE_OK) throw FailureOf(code);
  // It may grow as any other in memory; by default it may have a gigabyte.
  sqlite3_int64 limit = std::numeric_limits<sqlite3_int64>::max();
  sqlite3_file_control(handle_, "main", SQLITE_FCNTL_SIZE_LIMIT, &limit);
}

SqliteConnection::~SqliteConnection() {
  cached_.clear();
  mark_ = SqliteStatement();
  sqlite3_close_v2(handle_);
}

bool SqliteConnection::GoOnWaiting(int tries) {
  const auto now = std::chrono::steady_clock::now();
  if (tries == 0) waiting_since_ = now;
  if (IsInterrupted()) return false;
  waited_in_vain_ = now - waiting_since_ >= std::chrono::seconds(location_.wait_seconds);
  if (waited_in_vain_) return false;
  std::this_thread::sleep_for(kWaitForLock);
  return true;
}

void SqliteConnection::Interrupt() {
  interrupted_.store(true, std::memory_order_relaxed);
  sqlite3_interrupt(handle_);
}

void SqliteConnection::MarkChange() {
  if (!location_.shared || marked_) return;
  if (!mark_) {
    // Writing the number that it has already is enough: the page is written.
    mark_ = Prepare("PRAGMA main.user_version=" +
                    std::to_string(QueryInteger("PRAGMA main.user_version")));
  }
  Step(mark_.get());
  sqlite3_reset(mark_.get());
  marked_ = true;
}

SqliteStatement SqliteConnection::Prepare(std::string_view sql) {
  sqlite3_stmt* statement = nullptr;
  const int code = sqlite3_prepare_v3(handle_, sql.data(), static_cast<int>(sql.size()),
                                      SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
  if (code == SQLITE_OK) return SqliteStatement(statement);
  throw TakeError(code);
}

void SqliteConnection::Run(std::string_view sql) {
  const int code = sqlite3_exec(handle_, std::string(sql).c_str(), nullptr, nullptr, nullptr);
  if (code != SQLITE_OK) throw TakeError(code);
}

int64_t SqliteConnection::QueryInteger(std::string_view sql) {
  const SqliteStatement statement = Prepare(sql);
  if (!Step(statement.get())) return 0;
  return sqlite3_column_int64(statement.get(), 0);
}

void SqliteConnection::ReadCached(const char* sql,
                                  const std::function<void(sqlite3_stmt* row)>& read) {
  SqliteStatement& statement = cached_[sql];
  if (!statement) statement = Prepare(sql);
  while (Step(statement.get())) read(statement.get());
  sqlite3_reset(statement.get());
}

void SqliteConnection::RunCached(const char* sql) {
  ReadCached(sql, [](sqlite3_stmt*) {});
}

bool SqliteConnection::HasColumn(const char* schema, const char* table, const char* column) const {
  return sqlite3_table_column_metadata(handle_, schema, table, column, nullptr, nullptr, nullptr,
                                       nullptr, nullptr) == SQLITE_OK;
}

bool SqliteConnection::Step(sqlite3_stmt* statement) {
  const int code = sqlite3_step(statement);
  if (code == SQLITE_ROW) return true;
  if (code == SQLITE_DONE) return false;
  SqlError error = TakeError(code);
  sqlite3_reset(statement);
  throw error;
}

SqlError SqliteConnection::TakeError(int code) {
  if (functions_.pending) {
    SqlError error = std::move(*functions_.pending);
    functions_.pending.reset();
    return error.number == kStoreFailure ? Failure(error.message) : error;
  }
  const int kind = code & 0xff;
  if (IsInterrupted() && (kind == SQLITE_INTERRUPT || kind == SQLITE_BUSY)) {
    return SqlError{kInterrupted, 16, 1, 0, "interrupted"};
  }
  switch (code) {
    case SQLITE_CONSTRAINT_NOTNULL:
      return SqlError{kNullRefused, 16, 1, 0, sqlite3_errmsg(handle_)};
    case SQLITE_CONSTRAINT_UNIQUE:
    case SQLITE_CONSTRAINT_PRIMARYKEY:
    case SQLITE_CONSTRAINT_ROWID:
      return SqlError{kDuplicateRefused, 14, 1, 0, sqlite3_errmsg(handle_)};
    default:
      break;
  }
  switch (kind) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return LockError(code);
    default:
      return FailureOf(code);
  }
}

SqlError SqliteConnection::Failure(const std::string& text) const {
  return StoreFailure(location_.shared ? location_.path + ": " + text : text);
}

SqlError SqliteConnection::Damage(const std::string& what) const {
  return Failure("the file is damaged: " + what);
}

SqlError SqliteConnection::LockError(int code) {
  if (code == SQLITE_BUSY_SNAPSHOT) return MakeError(errors::kSnapshotConflict, {location_.path});
  if (!std::exchange(waited_in_vain_, false)) return MakeError(errors::kDeadlock, {"1", "lock"});
  SqlError error = MakeError(errors::kLockTimeout);
  error.message += " " + location_.path + " has been locked by another process for " +
                   std::to_string(location_.wait_seconds) +
                   (location_.wait_seconds == 1 ? " second." : " seconds.");
  return error;
}

// SQLite's own words are for those who know its insides; they stay out, but for what is said of a
// store in memory: that can only be an error of ours.
SqlError SqliteConnection::FailureOf(int code) const {
  const std::string_view text = sqlite3_errmsg(handle_);
  for (const Limit& limit : kLimits) {
    if (text.starts_with(limit.text)) return MakeError(limit.number, {limit.construct});
  }
  switch (code & 0xff) {
    case SQLITE_NOMEM:
      return Failure("out of memory");
    case SQLITE_FULL:
      return Failure("no room is left on the disk");
    case SQLITE_READONLY:
      return Failure("cannot be written: the file or its folder is read-only");
    case SQLITE_CANTOPEN:
      return Failure("cannot be opened, or its journal cannot" + SystemReason(handle_));
    case SQLITE_PERM:
    case SQLITE_AUTH:
      return Failure("cannot be opened" + SystemReason(handle_));
    case SQLITE_IOERR:
      return Failure("the disk failed" + SystemReason(handle_));
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
      return Damage("its pages do not fit together");
    case SQLITE_ERROR:
      if (!location_.shared) break;
      return Damage("its tables are not those of its catalog");
    default:
      break;
  }
  return Failure("internal error of the embedded database: " + std::string(text));
}

bool SqliteConnection::InTransaction() const {
  return sqlite3_get_autocommit(handle_) == 0;
}

}  // namespace tavcc::sql
