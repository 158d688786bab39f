// Owned SQLite handles, and the translation of SQLite's failures.
#include "embedded/catalog/sqlite.h"

#include <sqlite3.h>

#include <utility>

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
  int number;
  std::string_view construct;  // of kNotSupported
};
constexpr Limit kLimits[] = {
    {"parser stack overflow", 191, {}},
    {"Expression tree is too large", 191, {}},
    {"too many terms in compound SELECT", 191, {}},
    {"too many SQL variables", 8632, {}},
    {"variable number must be", 8632, {}},
    {"too many arguments on function", 8632, {}},
    {"at most 64 tables in a join", kNotSupported, "a join of more than 64 tables"},
    {"too many FROM clause terms", kNotSupported, "a join of more than 64 tables"},
    {"too many columns", kNotSupported, "a query of more than 2000 columns"},
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

SqlError FailureOf(std::string_view text) {
  for (const Limit& limit : kLimits) {
    if (text.starts_with(limit.text)) return MakeError(limit.number, {limit.construct});
  }
  return StoreFailure(std::string(text));
}

}  // namespace

void SqliteStatement::Finalize::operator()(sqlite3_stmt* statement) const {
  sqlite3_finalize(statement);
}

SqlError StoreFailure(std::string message) {
  return SqlError{kStoreFailure, 16, 1, 0, std::move(message)};
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

SqliteConnection::SqliteConnection(const std::string& path, int flags) {
  // Counting memory costs a lock for each allocation. It can only be said before SQLite is first
  // used, and where somebody else was first, it goes on counting.
  static const int uncounted = sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
  static_cast<void>(uncounted);
  const int code = sqlite3_open_v2(path.c_str(), &handle_, flags, nullptr);
  if (code != SQLITE_OK) {
    SqlError error = StoreFailure(handle_ ? sqlite3_errmsg(handle_) : sqlite3_errstr(code));
    sqlite3_close_v2(handle_);
    throw error;
  }
  sqlite3_extended_result_codes(handle_, 1);
  try {
    RegisterFunctions(handle_, &functions_);
  } catch (...) {
    sqlite3_close_v2(handle_);
    throw;
  }
}

SqliteConnection::~SqliteConnection() {
  cached_.clear();
  sqlite3_close_v2(handle_);
}

SqliteStatement SqliteConnection::Prepare(std::string_view sql) const {
  sqlite3_stmt* statement = nullptr;
  const int code = sqlite3_prepare_v3(handle_, sql.data(), static_cast<int>(sql.size()),
                                      SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
  if (code == SQLITE_OK) return SqliteStatement(statement);
  throw const_cast<SqliteConnection*>(this)->TakeError(code);
}

void SqliteConnection::Run(std::string_view sql) const {
  const int code = sqlite3_exec(handle_, std::string(sql).c_str(), nullptr, nullptr, nullptr);
  if (code != SQLITE_OK) throw const_cast<SqliteConnection*>(this)->TakeError(code);
}

int64_t SqliteConnection::QueryInteger(std::string_view sql) const {
  const SqliteStatement statement = Prepare(sql);
  if (!const_cast<SqliteConnection*>(this)->Step(statement.get())) return 0;
  return sqlite3_column_int64(statement.get(), 0);
}

void SqliteConnection::RunCached(const char* sql) {
  SqliteStatement& statement = cached_[sql];
  if (!statement) statement = Prepare(sql);
  Step(statement.get());
  sqlite3_reset(statement.get());
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
    return error;
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
  switch (code & 0xff) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return MakeError(1205, {"1", "lock"});
    case SQLITE_NOMEM:
      return StoreFailure("out of memory");
    default:
      return FailureOf(sqlite3_errmsg(handle_));
  }
}

bool SqliteConnection::InTransaction() const {
  return sqlite3_get_autocommit(handle_) == 0;
}

}  // namespace tavcc::sql
