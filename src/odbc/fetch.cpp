#include "odbc/fetch.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "foundation/text.h"
#include "odbc/text.h"

namespace tavcc::odbc {
namespace {

// Characters of a long text that are read at once, the terminator among them.
constexpr size_t kPiece = 8192;
// Longer than any column's name.
constexpr size_t kLongestName = 512;

// A type of the server's beside those of the standard.
constexpr SQLSMALLINT kUserDefinedType = -151;

struct Column {
  std::string name;
  SQLSMALLINT type = 0;
};

// The driver failed; the statement's diagnostics say how.
struct FetchFailed {};
// A value that the port has no form for.
struct Refused {
  AutomationError error;
};

[[noreturn]] void Refuse(std::string why) {
  throw Refused{AutomationError(RuntimeError::kTypeMismatch, std::move(why))};
}

void Require(SQLRETURN result) {
  if (!SQL_SUCCEEDED(result)) throw FetchFailed();
}

class Reader {
 public:
  Reader(const StatementCalls& calls, Encoding encoding) : calls_(calls), encoding_(encoding) {}

  Column Describe(SQLUSMALLINT number);
  Value Read(const Column& column, SQLUSMALLINT number);

 private:
  std::optional<std::string> Text(SQLUSMALLINT number);
  Value Number(const Column& column, SQLUSMALLINT number);
  Value Date(const Column& column, SQLUSMALLINT number);

  // A text, piece by piece; nothing for null.
  template <class Char, class Whole>
  std::optional<Whole> Pieces(SQLUSMALLINT number, SQLSMALLINT c_type) {
    Whole text;
    std::array<Char, kPiece> piece;
    for (;;) {
      SQLLEN length = 0;
      const SQLRETURN result =
          calls_.get_data(calls_.handle, number, c_type, piece.data(), sizeof(piece), &length);
      if (result == SQL_NO_DATA) return text;
      Require(result);
      if (length == SQL_NULL_DATA) return std::nullopt;
      const size_t units = static_cast<size_t>(length) / sizeof(Char);
      const bool whole = length != SQL_NO_TOTAL && units < kPiece;
      text.insert(text.end(), piece.begin(),
                  piece.begin() + static_cast<std::ptrdiff_t>(whole ? units : kPiece - 1));
      if (whole) return text;
    }
  }

  // A value of fixed size; nothing for null.
  template <class T>
  std::optional<T> Fixed(SQLUSMALLINT number, SQLSMALLINT c_type) {
    T value{};
    SQLLEN length = 0;
    Require(calls_.get_data(calls_.handle, number, c_type, &value, sizeof(value), &length));
    if (length == SQL_NULL_DATA) return std::nullopt;
    return value;
  }

  const StatementCalls& calls_;
  const Encoding encoding_;
};

Column Reader::Describe(SQLUSMALLINT number) {
  Column column;
  SQLSMALLINT length = 0, digits = 0, nullable = 0;
  SQLULEN size = 0;
  const auto describe = [&](auto call, auto& name) {
    Require(call(calls_.handle, number, name.data(), static_cast<SQLSMALLINT>(name.size()), &length,
                 &column.type, &size, &digits, &nullable));
    return std::span(name.data(), std::min(static_cast<size_t>(length), name.size() - 1));
  };
  if (encoding_ == Encoding::kWide) {
    std::array<SQLWCHAR, kLongestName> name;
    column.name = FromWide(describe(calls_.describe_wide, name));
  } else {
    std::array<SQLCHAR, kLongestName> name;
    const auto bytes = describe(calls_.describe_bytes, name);
    column.name.assign(bytes.begin(), bytes.end());
  }
  return column;
}

std::optional<std::string> Reader::Text(SQLUSMALLINT number) {
  if (encoding_ == Encoding::kBytes) return Pieces<SQLCHAR, std::string>(number, SQL_C_CHAR);
  const auto wide = Pieces<SQLWCHAR, std::vector<SQLWCHAR>>(number, SQL_C_WCHAR);
  if (!wide) return std::nullopt;
  return FromWide(*wide);
}

// Drivers leave out the zero before the point.
std::optional<Decimal> ParseDecimal(std::string text) {
  const size_t digits = text.starts_with('-') ? 1 : 0;
  if (text.substr(digits).starts_with('.')) text.insert(digits, "0");
  return Decimal::Parse(text);
}

Value Reader::Number(const Column& column, SQLUSMALLINT number) {
  const auto text = Text(number);
  if (!text) return Null{};
  const auto decimal = ParseDecimal(*text);
  if (decimal) return *decimal;
  Refuse(Cat("Column ", column.name, " holds no decimal number: ", *text));
}

Value Reader::Date(const Column& column, SQLUSMALLINT number) {
  constexpr int64_t kNanoseconds = 1'000'000'000;
  const auto stamp = Fixed<SQL_TIMESTAMP_STRUCT>(number, SQL_C_TYPE_TIMESTAMP);
  if (!stamp) return Null{};
  const auto second = DateTime::FromParts(
      {stamp->year, stamp->month, stamp->day, stamp->hour, stamp->minute, stamp->second, 0});
  if (!second) {
    Refuse(Cat("Column ", column.name, " holds a date outside the years 100 to 9999."));
  }
  const int64_t ticks =
      (int64_t{stamp->fraction} * DateTime::kTicksPerSecond + kNanoseconds / 2) / kNanoseconds;
  return DateTime::FromTicks(second->ticks() + ticks);
}

template <class Result, class Read>
Value OrNull(const std::optional<Read>& read) {
  return read ? Value(static_cast<Result>(*read)) : Value(Null{});
}

Value Reader::Read(const Column& column, SQLUSMALLINT number) {
  switch (column.type) {
    case SQL_BIT:
      return OrNull<bool>(Fixed<unsigned char>(number, SQL_C_BIT));
    case SQL_TINYINT:
    case SQL_SMALLINT:
      return OrNull<int16_t>(Fixed<SQLSMALLINT>(number, SQL_C_SSHORT));
    case SQL_INTEGER:
      return OrNull<int32_t>(Fixed<SQLINTEGER>(number, SQL_C_SLONG));
    case SQL_BIGINT:
    case SQL_DECIMAL:
    case SQL_NUMERIC:
      return Number(column, number);
    case SQL_REAL:
    case SQL_FLOAT:
    case SQL_DOUBLE:
      return OrNull<double>(Fixed<double>(number, SQL_C_DOUBLE));
    case SQL_TYPE_DATE:
    case SQL_TYPE_TIMESTAMP:
      return Date(column, number);
    case SQL_BINARY:
    case SQL_VARBINARY:
    case SQL_LONGVARBINARY:
    case kUserDefinedType:
      Refuse(
          Cat("Column ", column.name, " is binary, which is not supported; convert it to text."));
    default:
      return OrNull<std::string>(Text(number));
  }
}

// The current result, row by row. Errors of all: FetchFailed; of rows also Refused.
class Result {
 public:
  Result(const StatementCalls& calls, Encoding encoding) : calls_(calls), reader_(calls, encoding) {
    SQLSMALLINT count = 0;
    Require(calls_.column_count(calls_.handle, &count));
    for (SQLUSMALLINT number = 1; number <= count; ++number) {
      columns_.push_back(reader_.Describe(number));
    }
    values_.resize(columns_.size());
  }

  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const Column& column : columns_) names.push_back(column.name);
    return names;
  }

  // Goes on to the next row; false behind the last.
  bool Next(const std::function<void()>& hear) {
    const SQLRETURN result = calls_.fetch(calls_.handle);
    if (result == SQL_NO_DATA) return false;
    Require(result);
    if (result == SQL_SUCCESS_WITH_INFO) hear();
    SQLUSMALLINT number = 0;
    for (const Column& column : columns_) {
      Value& value = values_[number];
      value = reader_.Read(column, ++number);
    }
    return true;
  }
  std::span<Value> values() { return values_; }

 private:
  const StatementCalls& calls_;
  Reader reader_;
  std::vector<Column> columns_;
  std::vector<Value> values_;
};

}  // namespace

Fetched FetchRows(const StatementCalls& calls, Encoding encoding, BatchReader& reader,
                  const std::atomic<bool>& interrupted, const std::function<void()>& hear) {
  Fetched fetched;
  bool begun = false, failed = false;
  try {
    Result result(calls, encoding);
    reader.BeginRows(result.Names());
    begun = true;
    for (; !interrupted && result.Next(hear); ++fetched.rows) reader.Row(result.values());
  } catch (const FetchFailed&) {
    failed = true;
  } catch (const Refused& refused) {
    fetched.refusal = refused.error;
  }
  if (begun) reader.EndRows();
  if (failed) hear();
  return fetched;
}

}  // namespace tavcc::odbc
