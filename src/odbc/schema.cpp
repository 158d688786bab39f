#include "odbc/schema.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <functional>
#include <utility>

#include "foundation/conversions.h"
#include "foundation/text.h"
#include "odbc/fetch.h"
#include "odbc/statement_calls.h"

namespace tavcc::odbc {
namespace {

// The columns of the functions' results, as ODBC numbers them, from 0.
enum TableColumn : size_t { kTableName = 2, kTableType = 3 };
enum ColumnColumn : size_t {
  kColumnName = 3,
  kTypeName = 5,
  kColumnSize = 6,
  kDecimalDigits = 8,
  kNullable = 10
};

constexpr std::string_view kTypes = "TABLE,VIEW";

std::optional<Rows> ReadAll(const Statement& statement, Encoding encoding, SQLRETURN result) {
  if (!SQL_SUCCEEDED(result)) return std::nullopt;
  KeptRows kept;
  bool failed = false;
  const std::atomic<bool> interrupted = false;
  FetchRows(ManagerCalls(statement), encoding, kept, interrupted, [&] { failed = true; });
  if (failed) return std::nullopt;
  return std::move(kept.rows());
}

const Value& Cell(const Rows& rows, size_t row, size_t column) {
  static const Value nothing = Null{};
  return column < rows.names.size() ? rows.cells[row * rows.names.size() + column] : nothing;
}

std::string CellText(const Rows& rows, size_t row, size_t column) {
  const Value& value = Cell(rows, row, column);
  return value.IsNull() ? "" : ToText(value);
}

// "decimal(10, 4)", "nvarchar(20)", "int": the name with its arguments, where it takes some.
std::string TypeOf(const Rows& columns, size_t row) {
  const std::string name = CellText(columns, row, kTypeName);
  const std::string size = CellText(columns, row, kColumnSize);
  const auto is = [&](std::string_view part) { return name.find(part) != std::string::npos; };
  if (is("(") || size.empty()) return name;
  if (is("decimal") || is("numeric")) {
    return Cat(name, "(", size, ", ", CellText(columns, row, kDecimalDigits), ")");
  }
  if (is("char") || is("binary")) {
    // What a driver gives for (max): no length, or one that no column has.
    const bool max = size == "0" || size.size() > 4;
    return Cat(name, "(", max ? "max" : size, ")");
  }
  return name;
}

// Drops the rows of other tables. To a driver the name is a pattern, in which "_" stands for any
// character, and not every driver takes a way to escape it.
void KeepRowsOf(std::string_view table, Rows& columns) {
  Rows kept{columns.names, {}};
  for (size_t row = 0; row < columns.RowCount(); ++row) {
    if (!EqualsIgnoringCase(CellText(columns, row, kTableName), table)) continue;
    for (size_t i = 0; i < columns.names.size(); ++i) {
      kept.cells.push_back(columns.ValueAt(row, i));
    }
  }
  columns = std::move(kept);
}

}  // namespace

std::optional<Rows> ReadTables(const Statement& statement, Encoding encoding) {
  std::vector<SQLWCHAR> wide = ToWide(kTypes);
  std::vector<SQLCHAR> bytes(kTypes.begin(), kTypes.end());
  const SQLRETURN result = encoding == Encoding::kWide
                               ? SQLTablesW(statement.get(), nullptr, 0, nullptr, 0, nullptr, 0,
                                            wide.data(), static_cast<SQLSMALLINT>(wide.size()))
                               : SQLTables(statement.get(), nullptr, 0, nullptr, 0, nullptr, 0,
                                           bytes.data(), static_cast<SQLSMALLINT>(bytes.size()));
  return ReadAll(statement, encoding, result);
}

std::optional<Rows> ReadColumns(const Statement& statement, Encoding encoding,
                                std::string_view table) {
  std::vector<SQLWCHAR> wide = ToWide(table);
  std::vector<SQLCHAR> bytes(table.begin(), table.end());
  const SQLRETURN result = encoding == Encoding::kWide
                               ? SQLColumnsW(statement.get(), nullptr, 0, nullptr, 0, wide.data(),
                                             static_cast<SQLSMALLINT>(wide.size()), nullptr, 0)
                               : SQLColumns(statement.get(), nullptr, 0, nullptr, 0, bytes.data(),
                                            static_cast<SQLSMALLINT>(bytes.size()), nullptr, 0);
  auto columns = ReadAll(statement, encoding, result);
  if (columns) KeepRowsOf(table, *columns);
  return columns;
}

std::vector<SchemaObject> ObjectsOf(const Rows& tables) {
  std::vector<SchemaObject> objects;
  for (size_t row = 0; row < tables.RowCount(); ++row) {
    const bool view = CellText(tables, row, kTableType) == "VIEW";
    objects.push_back({view ? SchemaObject::Kind::kView : SchemaObject::Kind::kTable,
                       CellText(tables, row, kTableName)});
  }
  std::ranges::sort(objects, std::less(), &SchemaObject::name);
  return objects;
}

std::vector<std::string> NamesOf(const Rows& columns) {
  std::vector<std::string> names;
  for (size_t row = 0; row < columns.RowCount(); ++row) {
    names.push_back(CellText(columns, row, kColumnName));
  }
  return names;
}

std::string DefinitionOf(std::string_view table, const Rows& columns) {
  std::string text;
  for (size_t row = 0; row < columns.RowCount(); ++row) {
    const bool nullable = CellText(columns, row, kNullable) != "0";
    CatTo(text, text.empty() ? "" : ",\n", "  ", CellText(columns, row, kColumnName), " ",
          TypeOf(columns, row), nullable ? " NULL" : " NOT NULL");
  }
  return text.empty() ? "" : Cat("CREATE TABLE ", table, " (\n", text, "\n)");
}

}  // namespace tavcc::odbc
