// A database file behind a port of loopback: what an ODBC driver sends in TDS is run on the
// embedded database, so that the command line's tests have a server without having one.
//
// usage: served_database FILE
//
// Prints the port, and ends with its standard input.
#include <cstdio>
#include <initializer_list>
#include <iostream>
#include <memory>
#include <regex>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "embedded/embedded.h"
#include "foundation/conversions.h"
#include "foundation/error.h"
#include "odbc/tds_responder.h"

namespace tavcc::testing {
namespace {

constexpr uint8_t kScale = 10;

// The digits of a decimal with `kScale` places behind the point, as two halves of 128 bits.
std::string DecimalCell(const Decimal& decimal) {
  const std::string text = decimal.Normalized().ToText();
  const size_t point = text.find('.');
  std::string digits =
      text.substr(0, point) + (point == std::string::npos ? "" : text.substr(point + 1));
  const size_t places = point == std::string::npos ? 0 : text.size() - point - 1;
  digits.append(places < kScale ? kScale - places : 0, '0');
  uint32_t limbs[4] = {};
  for (const char digit : digits) {
    if (digit == '-') continue;
    uint64_t carry = static_cast<uint64_t>(digit - '0');
    for (uint32_t& limb : limbs) {
      carry += uint64_t{limb} * 10;
      limb = static_cast<uint32_t>(carry);
      carry >>= 32;
    }
  }
  return TdsDecimal(text.front() == '-', uint64_t{limbs[3]} << 32 | limbs[2],
                    uint64_t{limbs[1]} << 32 | limbs[0]);
}

TdsType TypeOf(const Value& value) {
  switch (value.kind()) {
    case Value::Kind::kBoolean:
    case Value::Kind::kInteger:
    case Value::Kind::kLong:
      return TdsType::kInt;
    case Value::Kind::kDecimal:
      return TdsType::kDecimal;
    case Value::Kind::kDate:
      return TdsType::kDateTime;
    default:
      return TdsType::kText;
  }
}

std::string Cell(const Value& value, TdsType type) {
  if (value.IsNull() || value.IsEmpty()) return TdsNull(type);
  switch (type) {
    case TdsType::kInt:
      return TdsInt(ToLong(value));
    case TdsType::kDecimal:
      return DecimalCell(ToDecimal(value));
    case TdsType::kDateTime:
      return TdsDateTime(value.date().Days(), static_cast<uint32_t>(value.date().TicksOfDay()));
    default:
      return TdsText(ToText(value));
  }
}

// Makes an answer of all that a batch gives. A column has the type of its first value that is not
// null; decimals have the places that the rest of the project gives them.
class AnswerMaker final : public BatchReader {
 public:
  void BeginRows(const std::vector<std::string>& columns) override {
    EndStatement();
    columns_.clear();
    for (const std::string& name : columns) columns_.push_back({name, TdsType::kText, kScale});
    rows_.clear();
  }
  void Row(std::span<Value> values) override { rows_.emplace_back(values.begin(), values.end()); }
  void EndRows() override {
    for (size_t column = 0; column < columns_.size(); ++column) {
      for (const std::vector<Value>& row : rows_) {
        if (row[column].IsNull()) continue;
        columns_[column].type = TypeOf(row[column]);
        break;
      }
    }
    answer_.Columns(columns_);
    for (const std::vector<Value>& row : rows_) {
      std::vector<std::string> cells;
      for (size_t i = 0; i < row.size(); ++i) cells.push_back(Cell(row[i], columns_[i].type));
      answer_.Row(cells);
    }
    open_ = true;
  }
  void RowCount(int64_t rows) override {
    open_ = false;
    any_ = true;
    answer_.Statement(rows);
  }
  void Message(const BatchMessage& message) override {
    EndStatement();
    any_ = true;
    if (!message.is_error) {
      answer_.Message(message.text);
    } else {
      answer_.Error(message.number, message.text, message.state, message.line);
    }
    answer_.StatementWithoutCount();
  }

  TdsAnswer Take() {
    EndStatement();
    if (!any_) answer_.StatementWithoutCount();
    return answer_;
  }

 private:
  void EndStatement() {
    if (!std::exchange(open_, false)) return;
    any_ = true;
    answer_.StatementWithoutCount();
  }

  TdsAnswer answer_;
  std::vector<TdsColumn> columns_;
  std::vector<std::vector<Value>> rows_;
  bool open_ = false;  // a result without its count
  bool any_ = false;
};

// ---- The procedures behind a driver's catalog functions ----------------------------------------

std::vector<TdsColumn> TextColumns(std::initializer_list<const char*> names) {
  std::vector<TdsColumn> columns;
  for (const char* const name : names) columns.push_back({name, TdsType::kText});
  return columns;
}

TdsAnswer Tables(BatchSession& session) {
  TdsAnswer answer;
  answer.Columns(
      TextColumns({"TABLE_QUALIFIER", "TABLE_OWNER", "TABLE_NAME", "TABLE_TYPE", "REMARKS"}));
  int64_t rows = 0;
  for (const SchemaObject& object : session.Objects()) {
    if (object.kind == SchemaObject::Kind::kProcedure) continue;
    const bool view = object.kind == SchemaObject::Kind::kView;
    answer.Row({TdsText("erp"), TdsText("dbo"), TdsText(object.name),
                TdsText(view ? "VIEW" : "TABLE"), TdsNull(TdsType::kText)});
    ++rows;
  }
  return answer.Statement(rows);
}

// What the statement that makes a table says of a column, as "nvarchar(80) NOT NULL"; for one that
// stands in no such statement, int.
struct ColumnType {
  std::string name = "int";
  int size = 0, scale = 0;
  bool nullable = true;
};

ColumnType TypeIn(const std::string& definition, const std::string& column) {
  const std::regex said(R"([(,\s]\[?)" + column +
                        R"(\]?\s+\[?(\w+)\]?(?:\((\d+)(?:,\s*(\d+))?\))?([^,]*))");
  std::smatch parts;
  if (!std::regex_search(definition, parts, said)) return {};
  const auto number = [&](size_t part) { return parts[part].matched ? std::stoi(parts[part]) : 0; };
  return {parts[1], number(2), number(3), parts[4].str().find("NOT NULL") == std::string::npos};
}

TdsAnswer ColumnsOf(BatchSession& session, const std::string& table) {
  std::vector<TdsColumn> columns =
      TextColumns({"TABLE_QUALIFIER", "TABLE_OWNER", "TABLE_NAME", "COLUMN_NAME", "DATA_TYPE",
                   "TYPE_NAME", "PRECISION", "LENGTH", "SCALE", "RADIX", "NULLABLE", "REMARKS"});
  for (const size_t number : {4U, 6U, 7U, 8U, 9U, 10U}) columns[number].type = TdsType::kInt;
  TdsAnswer answer;
  answer.Columns(columns);
  const std::string definition = session.Definition(table);
  int64_t rows = 0;
  for (const std::string& name : session.Columns(table)) {
    const ColumnType type = TypeIn(definition, name);
    answer.Row({TdsText("erp"), TdsText("dbo"), TdsText(table), TdsText(name), TdsInt(4),
                TdsText(type.name), TdsInt(type.size), TdsInt(type.size), TdsInt(type.scale),
                TdsInt(10), TdsInt(type.nullable ? 1 : 0), TdsNull(TdsType::kText)});
    ++rows;
  }
  return answer.Statement(rows);
}

TdsAnswer Run(BatchSession& session, const std::string& batch) {
  static const std::regex columns("^EXEC sp_columns .*@table_name = N'(.*?)'");
  std::smatch table;
  if (batch.starts_with("EXEC sp_tables ")) return Tables(session);
  if (std::regex_search(batch, table, columns)) return ColumnsOf(session, table[1]);
  AnswerMaker answer;
  session.RunBatch(batch, answer);
  return answer.Take();
}

int Main(const char* file) {
  sql::OpenOptions options;
  options.path = file;
  options.create = false;
  const auto database = sql::Database::Open(options);
  const BatchSessionPtr session = database->NewSession();
  TdsResponder responder([&](const std::string& batch) { return Run(*session, batch); });
  std::cout << responder.port() << std::endl;
  std::string line;
  while (std::getline(std::cin, line)) {
  }
  return 0;
}

}  // namespace
}  // namespace tavcc::testing

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: served_database FILE\n", stderr);
    return 2;
  }
  return tavcc::testing::Main(argv[1]);
}
