// Evaluates one SQLite expression over the registered functions, as the tables of these tests do.
#pragma once

#include <sqlite3.h>

#include <string>
#include <string_view>

#include "embedded/functions/functions.h"
#include "embedded/types/sqlite_value.h"
#include "embedded/types/type_rules.h"

namespace tavcc::sql {

class Evaluator {
 public:
  Evaluator() {
    sqlite3_open(":memory:", &database_);
    session_.clock = [] { return *DateTime::Parse("2026-03-15 10:00:00"); };
    RegisterFunctions(database_, &session_);
  }
  ~Evaluator() { sqlite3_close(database_); }
  Evaluator(const Evaluator&) = delete;
  Evaluator& operator=(const Evaluator&) = delete;

  // The first column of the last row; "8134 Divide by zero …" for an error of the functions, and
  // "sqlite: …" for one of SQLite's own.
  std::string operator()(std::string_view expression) {
    return Run("select " + std::string(expression));
  }

  std::string Run(const std::string& statement) {
    session_.pending.reset();
    session_.now.reset();
    sqlite3_stmt* prepared = nullptr;
    if (sqlite3_prepare_v2(database_, statement.c_str(), -1, &prepared, nullptr) != SQLITE_OK) {
      return std::string("sqlite: ") + sqlite3_errmsg(database_);
    }
    std::string result = "no row";
    type_ = SQLITE_NULL;
    int step = SQLITE_ROW;
    while ((step = sqlite3_step(prepared)) == SQLITE_ROW) {
      type_ = sqlite3_column_type(prepared, 0);
      value_ = FromSqlite(sqlite3_column_value(prepared, 0));
      const unsigned char* text = sqlite3_column_text(prepared, 0);
      result = text == nullptr ? "NULL" : reinterpret_cast<const char*>(text);
    }
    if (step != SQLITE_DONE) {
      result = session_.pending
                   ? std::to_string(session_.pending->number) + " " + session_.pending->message
                   : std::string("sqlite: ") + sqlite3_errmsg(database_);
    }
    sqlite3_finalize(prepared);
    return result;
  }

  // Of the last row read.
  int type() const { return type_; }
  const StoredValue& value() const { return value_; }
  FunctionSession& session() { return session_; }
  sqlite3* database() { return database_; }

 private:
  FunctionSession session_;
  sqlite3* database_ = nullptr;
  int type_ = SQLITE_NULL;
  StoredValue value_;
};

// "code" and "shape" arguments for expressions put together as text.
inline std::string Code(const SqlType& from, const SqlType& to,
                        ConvertMode mode = ConvertMode::kCast, int style = kNoStyle) {
  return std::to_string(ConversionCode(from, to, mode, style));
}
inline std::string Shape(int scale_a, int scale_b, const SqlType& result) {
  return std::to_string(DecimalShape(scale_a, scale_b, result));
}

}  // namespace tavcc::sql
