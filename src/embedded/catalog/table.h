// A table of the dialect: its columns with their types, keys and defaults, and where SQLite keeps
// it.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/syntax/ast.h"
#include "embedded/types/sql_type.h"
#include "embedded/types/stored_value.h"

namespace tavcc::sql {

struct Column {
  std::string name;
  SqlType type;
  bool nullable = true;
  bool identity = false;
  int64_t identity_seed = 1, identity_increment = 1;
  // What an INSERT that leaves the column out writes. A constant stands in SQLite's own definition,
  // in the stored form of `type`; anything else is bound anew in each statement.
  std::shared_ptr<const Expression> default_value;  // null when there is none
  std::string default_text;                         // the same as T-SQL
  std::optional<StoredValue> constant_default;
};

// One condition of an index that holds only some rows: column and constant.
struct KeyFilter {
  enum class Kind : uint8_t { kComparison, kNull, kNotNull };
  Kind kind = Kind::kComparison;
  int column = 0;
  ComparisonCondition::Operator op = ComparisonCondition::Operator::kEqual;
  StoredValue constant;  // of the column's type
  std::string text;      // the constant as T-SQL
};

struct Key {
  enum class Kind : uint8_t { kPrimary, kUnique, kUniqueIndex, kIndex };
  Kind kind = Kind::kIndex;
  std::string name;
  std::vector<int> columns;
  std::vector<KeyFilter> filter;  // of kIndex; all of them hold for its rows, none: all rows
};

// Never changed once it is in use: a table with other columns is another Table, so that a statement
// knows by the pointer whether what it was compiled against still stands.
struct Table {
  std::string name;      // as created: "t_Stock", "#Data", "@rows"
  std::string physical;  // as SQLite's text names it: main."t_Stock", temp."t12"
  std::string rowid;     // the name under which SQLite's row number can be read
  // Of a temporary table or table variable, TableText, by which an emptied one is found again.
  std::string definition;
  std::vector<Column> columns;
  std::vector<Key> keys;
  int64_t number = 0;  // of a temporary table or table variable, counted in the session
  int identity_column = -1;
  // The column that is SQLite's row number: the identity column, or a primary key of one whole
  // number. -1 when there is none.
  int rowid_column = -1;
  // Whether the statements write the identity values: SQLite itself only counts up from 1.
  bool draws_identity = false;

  // -1 when there is no such column.
  int FindColumn(std::string_view column) const;
  bool IsTemporary() const { return name.front() == '#'; }
  bool IsVariable() const { return name.front() == '@'; }
  // Whether it is in the store itself, and not the session's own.
  bool IsStored() const { return !IsTemporary() && !IsVariable(); }
  // "dbo.t_Stock", "tempdb.dbo.#Data" or "@rows", as messages name the table.
  std::string MessageName() const;
  // The two parts of `physical`: "main." or "temp.", and the name without its quotes.
  std::string_view PhysicalSchema() const;
  std::string_view PhysicalName() const;
  // Whether an identity value comes behind another one, in the direction in which they run.
  bool IsLaterIdentity(int64_t value, int64_t than) const;
};

using TablePtr = std::shared_ptr<const Table>;

// ---- Making tables ----

// Checks a definition and gives it its types. Errors: 2705 column twice, 2744 two identity columns,
// 8110 two primary keys, 1911 a key over a column that is not there, 50001 for what the store
// cannot keep.
std::shared_ptr<Table> BuildTable(const std::string& name, const TableDefinition& definition);

// A table of these columns, without keys or defaults: what SELECT … INTO makes. Errors: 2705.
std::shared_ptr<Table> TableOfColumns(const std::string& name, std::vector<Column> columns);

// Adds `index` to the table's keys. Errors: 1911; 50001 for a unique index over nullable columns,
// and for a filter that is more than columns compared with constants.
void AddIndex(Table& table, const CreateIndexStatement& index);

// The identity value before the first one. The table must have an identity column.
int64_t IdentityBeforeFirst(const Table& table);

// The statement that makes the same table again: what the catalog keeps, and the key under which
// emptied temporary tables are kept for reuse.
std::string TableText(const Table& table);

// SQLite's statements that make the table under the name `physical` in `schema` ("main", "temp").
std::string PhysicalDefinition(const Table& table, std::string_view schema,
                               std::string_view physical);
std::string PhysicalColumn(const Table& table, size_t index);
// The filter of a key as SQLite's condition; every column's name has `prefix` ("s1.") before it.
std::string PhysicalFilter(const Table& table, const Key& key, std::string_view prefix);
std::string PhysicalIndexName(const Table& table, size_t key, std::string_view physical);
// Empty for a key that SQLite's row number is.
std::string PhysicalIndex(const Table& table, size_t key, std::string_view schema,
                          std::string_view physical);

}  // namespace tavcc::sql
