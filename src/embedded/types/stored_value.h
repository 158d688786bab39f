// A value outside SQLite's own hands, in the form in which SQLite stores it: variables, parameters,
// procedure arguments, fetched rows.
//
//   NULL                                NULL
//   bit, tinyint, smallint, int, bigint INTEGER
//   float, real                         REAL
//   char, varchar, nchar, nvarchar      TEXT (UTF-8), char and nchar padded with blanks
//   date, smalldatetime, datetime       INTEGER: ticks of 1/300 s since 1900-01-01
//   decimal(p,s); money, smallmoney     INTEGER: the coefficient scaled by 10^s (money: s = 4) when
//   it (s = 4)                             fits in 64 bits, otherwise a BLOB of 17 bytes binary,
//   varbinary                   BLOB
//
// The decimal BLOB: a sign byte (1 positive, 0 negative), then the magnitude in 16 bytes, most
// significant first, each byte complemented when negative. It is used only for coefficients that do
// not fit in 64 bits, so a value has one form, and equal values of equal scale are equal bytes; two
// such BLOBs compare in SQLite as their numbers do.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include "embedded/types/sql_type.h"

namespace tavcc::sql {

struct Blob {
  std::string bytes;
  friend bool operator==(const Blob&, const Blob&) = default;
};

class StoredValue {
 public:
  enum class Kind : uint8_t { kNull, kInteger, kReal, kText, kBlob };

  StoredValue() = default;  // NULL
  // NOLINTBEGIN(google-explicit-constructor): each of these is a stored value
  StoredValue(int64_t value) : storage_(value) {}
  StoredValue(double value) : storage_(value) {}
  StoredValue(std::string value) : storage_(std::move(value)) {}
  StoredValue(Blob value) : storage_(std::move(value)) {}
  // NOLINTEND(google-explicit-constructor)

  Kind kind() const { return static_cast<Kind>(storage_.index()); }
  bool IsNull() const { return kind() == Kind::kNull; }
  // The alternative itself; the kind must be the right one.
  int64_t integer() const { return std::get<int64_t>(storage_); }
  double real() const { return std::get<double>(storage_); }
  const std::string& text() const { return std::get<std::string>(storage_); }
  const std::string& blob() const { return std::get<Blob>(storage_).bytes; }

  void SetInteger(int64_t value) {
    if (auto* known = std::get_if<int64_t>(&storage_)) {
      *known = value;
    } else {
      storage_.emplace<int64_t>(value);
    }
  }
  // Becomes this text, in the memory of its former one where it has been text before.
  void SetText(std::string_view text) {
    if (auto* known = std::get_if<std::string>(&storage_)) {
      known->assign(text);
    } else {
      storage_.emplace<std::string>(text);
    }
  }

  friend bool operator==(const StoredValue&, const StoredValue&) = default;

 private:
  std::variant<std::monostate, int64_t, double, std::string, Blob> storage_;
};

// Where a conversion stands, which decides what happens to text that does not fit.
enum class ConvertMode : uint8_t {
  kCast,    // CAST, CONVERT, SET @v = …, arguments, operands: text is cut silently
  kAssign,  // into a column: cutting off more than blanks is an error (8152, or 2628 with a name)
};

// No style given to CONVERT: 0 for dates and numbers.
inline constexpr int kNoStyle = 0;

// A value with its type.
struct TypedValue {
  SqlType type;
  StoredValue value;
};

}  // namespace tavcc::sql
