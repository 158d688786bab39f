// Tables as text: T-SQL for the catalog, SQLite's definition for the store.
#include <utility>

#include "embedded/catalog/names.h"
#include "embedded/catalog/sqlite.h"
#include "embedded/catalog/table.h"
#include "embedded/types/type_rules.h"

namespace tavcc::sql {
namespace {

std::string ColumnList(const Table& table, const Key& key, std::string (*quote)(std::string_view)) {
  std::string out;
  for (const int column : key.columns) {
    if (!out.empty()) out += ',';
    out += quote(table.columns[static_cast<size_t>(column)].name);
  }
  return out;
}

std::string ColumnText(const Column& column) {
  std::string out = BracketName(column.name) + ' ' + TypeText(column.type);
  if (column.identity) {
    out += " IDENTITY(" + std::to_string(column.identity_seed) + ',' +
           std::to_string(column.identity_increment) + ')';
  }
  out += column.nullable ? " NULL" : " NOT NULL";
  if (column.default_value) out += " DEFAULT(" + column.default_text + ')';
  return out;
}

std::string_view StorageClass(const SqlType& type) {
  if (IsText(type.kind)) return "TEXT COLLATE tsql";
  if (IsApproximate(type.kind)) return "REAL";
  if (IsBinary(type.kind)) return "BLOB";
  return "INTEGER";
}

constexpr std::string_view kOperators[] = {"=", "<>", "<", "<=", ">", ">="};

// The conditions of a filter, the constants in one of two ways of writing them.
template <class Constant>
std::string FilterConditions(const Table& table, const Key& key, std::string_view prefix,
                             std::string (*quote)(std::string_view), const Constant& constant) {
  std::string out;
  for (const KeyFilter& filter : key.filter) {
    if (!out.empty()) out += " AND ";
    out += prefix;
    out += quote(table.columns[static_cast<size_t>(filter.column)].name);
    if (filter.kind == KeyFilter::Kind::kComparison) {
      out += kOperators[static_cast<size_t>(filter.op)];
      out += constant(filter);
    } else {
      out += filter.kind == KeyFilter::Kind::kNull ? " IS NULL" : " IS NOT NULL";
    }
  }
  return out;
}

bool IsUnique(const Key& key) {
  return key.kind != Key::Kind::kIndex;
}

}  // namespace

int64_t IdentityBeforeFirst(const Table& table) {
  const Column& column = table.columns[static_cast<size_t>(table.identity_column)];
  return column.identity_seed - column.identity_increment;
}

std::string TableText(const Table& table) {
  std::string out = "CREATE TABLE " + BracketName(table.name) + '(';
  for (size_t i = 0; i < table.columns.size(); ++i) {
    if (i > 0) out += ',';
    out += ColumnText(table.columns[i]);
  }
  std::string indexes;
  for (const Key& key : table.keys) {
    const std::string columns = ColumnList(table, key, BracketName);
    if (key.kind == Key::Kind::kPrimary || key.kind == Key::Kind::kUnique) {
      out += ',';
      if (!key.name.empty()) out += "CONSTRAINT " + BracketName(key.name) + ' ';
      out += key.kind == Key::Kind::kPrimary ? "PRIMARY KEY(" : "UNIQUE(";
      out += columns + ')';
    } else {
      indexes += std::string("\nCREATE ") + (IsUnique(key) ? "UNIQUE " : "") + "INDEX " +
                 BracketName(key.name) + " ON " + BracketName(table.name) + '(' + columns + ')';
      if (!key.filter.empty()) {
        indexes += " WHERE " + FilterConditions(table, key, "", BracketName,
                                                [](const KeyFilter& f) { return f.text; });
      }
    }
  }
  return out + ')' + indexes;
}

std::string PhysicalColumn(const Table& table, size_t index) {
  const Column& column = table.columns[index];
  std::string out = QuoteName(column.name) + ' ';
  if (static_cast<int>(index) == table.rowid_column) {
    return out + "INTEGER PRIMARY KEY" + (column.identity ? " AUTOINCREMENT" : "");
  }
  out += StorageClass(column.type);
  if (!column.nullable) out += " NOT NULL";
  if (column.constant_default) out += " DEFAULT " + QuoteValue(*column.constant_default);
  return out;
}

std::string PhysicalFilter(const Table& table, const Key& key, std::string_view prefix) {
  return FilterConditions(table, key, prefix, QuoteName,
                          [](const KeyFilter& filter) { return QuoteValue(filter.constant); });
}

// Keys with a name go by it, the others by their columns: neither changes when another key goes.
std::string PhysicalIndexName(const Table& table, size_t key_index, std::string_view physical) {
  const Key& key = table.keys[key_index];
  std::string out(physical);
  out += '.';
  if (!key.name.empty()) return out + key.name;
  for (const int column : key.columns) out += '.' + std::to_string(column);
  return out + (key.kind == Key::Kind::kPrimary ? ".p" : ".u");
}

std::string PhysicalIndex(const Table& table, size_t key_index, std::string_view schema,
                          std::string_view physical) {
  const Key& key = table.keys[key_index];
  if (key.columns.size() == 1 && key.columns[0] == table.rowid_column) return {};
  const std::string name = PhysicalIndexName(table, key_index, physical);
  const std::string columns = ColumnList(table, key, QuoteName);
  std::string out = std::string("CREATE ") + (IsUnique(key) ? "UNIQUE " : "") + "INDEX " +
                    std::string(schema) + '.' + QuoteName(name) + " ON " + QuoteName(physical) +
                    '(' + columns + ')' +
                    (key.filter.empty() ? "" : " WHERE " + PhysicalFilter(table, key, "")) + ';';
  // The server takes two NULLs of a unique column for equal, SQLite does not.
  if (IsUnique(key) && table.columns[static_cast<size_t>(key.columns[0])].nullable) {
    out += "CREATE UNIQUE INDEX " + std::string(schema) + '.' + QuoteName(name + ".null") + " ON " +
           QuoteName(physical) + "((1)) WHERE " + columns + " IS NULL;";
  }
  return out;
}

std::string PhysicalDefinition(const Table& table, std::string_view schema,
                               std::string_view physical) {
  std::string out = "CREATE TABLE " + std::string(schema) + '.' + QuoteName(physical) + '(';
  for (size_t i = 0; i < table.columns.size(); ++i) {
    if (i > 0) out += ',';
    out += PhysicalColumn(table, i);
  }
  out += ");";
  for (size_t i = 0; i < table.keys.size(); ++i) out += PhysicalIndex(table, i, schema, physical);
  if (table.identity_column >= 0) {
    const int64_t before = IdentityBeforeFirst(table);
    if (before != 0) {
      out += "INSERT INTO " + std::string(schema) + ".sqlite_sequence(name,seq) VALUES(" +
             QuoteText(physical) + ',' + std::to_string(before) + ");";
    }
  }
  return out;
}

}  // namespace tavcc::sql
