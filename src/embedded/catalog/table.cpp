// Tables made from their definitions.
#include "embedded/catalog/table.h"

#include <algorithm>

#include "embedded/catalog/expression_text.h"
#include "embedded/catalog/names.h"
#include "embedded/error.h"
#include "embedded/syntax/parser.h"
#include "embedded/types/literals.h"
#include "embedded/types/stored_conversions.h"
#include "embedded/types/type_rules.h"

namespace tavcc::sql {
namespace {

// The value of a default that is a literal, with or without a sign.
std::optional<TypedValue> ConstantOf(const Expression& expression) {
  if (const auto* literal = As<LiteralExpression>(expression)) {
    return EvaluateLiteral(literal->form, literal->text);
  }
  const auto* unary = As<UnaryExpression>(expression);
  if (unary == nullptr || unary->op != UnaryExpression::Operator::kMinus) return std::nullopt;
  const auto* literal = As<LiteralExpression>(*unary->operand);
  const bool exact = literal != nullptr && (literal->form == LiteralExpression::Form::kInteger ||
                                            literal->form == LiteralExpression::Form::kDecimal);
  if (!exact) return std::nullopt;
  TypedValue value = EvaluateLiteral(literal->form, literal->text);
  if (value.value.kind() != StoredValue::Kind::kInteger) return std::nullopt;
  value.value = StoredValue(-value.value.integer());
  return value;
}

void SetDefault(Column& column, const Expression& expression) {
  column.default_text = ExpressionText(expression);
  column.default_value = ParseExpression(column.default_text);
  const auto constant = ConstantOf(expression);
  if (!constant) return;
  try {
    column.constant_default =
        constant->value.IsNull()
            ? StoredValue()
            : ConvertStored(constant->value, constant->type, column.type, ConvertMode::kAssign);
  } catch (const SqlError&) {
    // The server, too, finds out only when the default is used.
  }
}

bool MayBeIdentity(const SqlType& type) {
  return (IsInteger(type.kind) && type.kind != TypeKind::kBit) ||
         (type.kind == TypeKind::kDecimal && type.scale == 0);
}

Column BuildColumn(const ColumnDefinition& definition, size_t index, const std::string& table) {
  Column column;
  column.name = definition.name;
  column.type = ResolveTypeName(definition.type, TypeNameUse::kDeclaration,
                                {static_cast<int>(index) + 1, definition.line, definition.name});
  column.nullable = definition.nullable.value_or(!definition.primary_key) && !definition.identity;
  column.identity = definition.identity;
  column.identity_seed = definition.identity_seed;
  column.identity_increment = definition.identity_increment;
  if (definition.primary_key && definition.unique)
    Raise(errors::kPrimaryAndUnique, definition.name, table);
  if (definition.identity && !MayBeIdentity(column.type))
    Raise(errors::kIdentityOfWrongType, definition.name);
  if (definition.identity && definition.identity_increment == 0)
    Raise(errors::kInvalidIncrement, definition.name);
  if (definition.identity && definition.nullable == true)
    Raise(errors::kNullableIdentity, definition.name, table);
  if (definition.primary_key && definition.nullable == true)
    Raise(errors::kNullablePrimaryKey, table);
  if (definition.default_value) SetDefault(column, *definition.default_value);
  return column;
}

int RequireColumn(const Table& table, const std::string& column) {
  const int found = table.FindColumn(column);
  if (found < 0) Raise(errors::kIndexOnMissingColumn, column);
  return found;
}

void AddKey(Table& table, Key key) {
  if (key.kind == Key::Kind::kPrimary) {
    for (const Key& other : table.keys) {
      if (other.kind == Key::Kind::kPrimary) Raise(errors::kSeveralPrimaryKeys, table.name);
    }
    for (const int column : key.columns)
      table.columns[static_cast<size_t>(column)].nullable = false;
  }
  if (key.kind == Key::Kind::kUnique || key.kind == Key::Kind::kUniqueIndex) {
    const bool nullable = std::ranges::any_of(key.columns, [&](int column) {
      return table.columns[static_cast<size_t>(column)].nullable;
    });
    if (nullable && key.columns.size() > 1) RaiseUnsupported("a unique key over nullable columns");
  }
  table.keys.push_back(std::move(key));
}

void AddKeys(Table& table, const TableDefinition& definition) {
  for (size_t i = 0; i < definition.columns.size(); ++i) {
    const ColumnDefinition& column = definition.columns[i];
    const int index = static_cast<int>(i);
    if (column.primary_key) AddKey(table, {Key::Kind::kPrimary, "", {index}, {}});
    if (column.unique) AddKey(table, {Key::Kind::kUnique, "", {index}, {}});
  }
  for (const KeyDefinition& definition_key : definition.keys) {
    Key key{definition_key.primary ? Key::Kind::kPrimary : Key::Kind::kUnique,
            definition_key.name,
            {},
            {}};
    for (const auto& column : definition_key.columns) {
      key.columns.push_back(RequireColumn(table, column));
      const auto index = static_cast<size_t>(key.columns.back());
      const bool nullable =
          index < definition.columns.size() && definition.columns[index].nullable == true;
      if (definition_key.primary && nullable) Raise(errors::kNullablePrimaryKey, table.name);
    }
    AddKey(table, std::move(key));
  }
}

[[noreturn]] void RaiseFilter() {
  RaiseUnsupported("a filter of an index other than columns compared with constants");
}

int FilterColumn(const Table& table, const Expression& expression) {
  const auto* column = As<ColumnExpression>(expression);
  if (column == nullptr) RaiseFilter();
  return RequireColumn(table, column->name.last());
}

// The conditions of an index's filter, as the server takes them: a column on the left, a constant
// on the right (CREATE INDEX, "filter_predicate"). Its lists of constants are not built.
void AddFilter(const Table& table, const Condition& condition, std::vector<KeyFilter>& filter) {
  const auto* logical = As<LogicalCondition>(condition);
  if (logical != nullptr && logical->op == LogicalCondition::Operator::kAnd) {
    for (const auto& operand : logical->operands) AddFilter(table, *operand, filter);
    return;
  }
  KeyFilter added;
  if (const auto* is_null = As<IsNullCondition>(condition)) {
    added.kind = is_null->negated ? KeyFilter::Kind::kNotNull : KeyFilter::Kind::kNull;
    added.column = FilterColumn(table, *is_null->operand);
    filter.push_back(std::move(added));
    return;
  }
  const auto* comparison = As<ComparisonCondition>(condition);
  if (comparison == nullptr) RaiseFilter();
  added.column = FilterColumn(table, *comparison->left);
  added.op = comparison->op;
  const auto constant = ConstantOf(*comparison->right);
  if (!constant || constant->value.IsNull()) RaiseFilter();
  const SqlType& type = table.columns[static_cast<size_t>(added.column)].type;
  CheckImplicit(constant->type, type);
  added.constant = ConvertStored(constant->value, constant->type, type);
  added.text = ExpressionText(*comparison->right);
  filter.push_back(std::move(added));
}

void ChooseRowNumber(Table& table) {
  table.rowid_column = table.identity_column;
  if (table.identity_column >= 0) {
    const Column& column = table.columns[static_cast<size_t>(table.identity_column)];
    table.draws_identity = column.identity_increment != 1 || column.identity_seed < 1;
  }
  if (table.rowid_column < 0) {
    for (const Key& key : table.keys) {
      if (key.kind == Key::Kind::kPrimary && key.columns.size() == 1 &&
          IsInteger(table.columns[static_cast<size_t>(key.columns[0])].type.kind)) {
        table.rowid_column = key.columns[0];
      }
    }
  }
  for (const char* name : {"rowid", "_rowid_", "oid"}) {
    if (table.FindColumn(name) < 0) {
      table.rowid = name;
      return;
    }
  }
  RaiseUnsupported("a table with columns rowid, _rowid_ and oid");
}

}  // namespace

int Table::FindColumn(std::string_view column) const {
  return IndexByName(columns, column);
}

std::string Table::MessageName() const {
  if (IsVariable()) return name;
  return (IsTemporary() ? "tempdb.dbo." : "dbo.") + name;
}

std::string_view Table::PhysicalSchema() const {
  constexpr size_t kLength = 5;
  return std::string_view(physical).substr(0, kLength);
}

std::string_view Table::PhysicalName() const {
  const std::string_view quoted = std::string_view(physical).substr(PhysicalSchema().size());
  return quoted.substr(1, quoted.size() - 2);
}

bool Table::IsLaterIdentity(int64_t value, int64_t than) const {
  const Column& column = columns[static_cast<size_t>(identity_column)];
  return column.identity_increment > 0 ? value > than : value < than;
}

std::shared_ptr<Table> BuildTable(const std::string& name, const TableDefinition& definition) {
  auto table = std::make_shared<Table>();
  table->name = name;
  for (const ColumnDefinition& column : definition.columns) {
    if (table->FindColumn(column.name) >= 0) Raise(errors::kColumnTwiceInTable, column.name, name);
    if (column.identity) {
      if (table->identity_column >= 0) Raise(errors::kSeveralIdentityColumns, name);
      table->identity_column = static_cast<int>(table->columns.size());
    }
    table->columns.push_back(BuildColumn(column, table->columns.size(), name));
  }
  AddKeys(*table, definition);
  ChooseRowNumber(*table);
  if (!table->IsStored()) table->definition = TableText(*table);
  return table;
}

std::shared_ptr<Table> TableOfColumns(const std::string& name, std::vector<Column> columns) {
  auto table = std::make_shared<Table>();
  table->name = name;
  for (Column& column : columns) {
    if (table->FindColumn(column.name) >= 0) Raise(errors::kColumnTwiceInTable, column.name, name);
    if (column.identity) table->identity_column = static_cast<int>(table->columns.size());
    table->columns.push_back(std::move(column));
  }
  ChooseRowNumber(*table);
  if (!table->IsStored()) table->definition = TableText(*table);
  return table;
}

void AddIndex(Table& table, const CreateIndexStatement& index) {
  Key key{index.unique ? Key::Kind::kUniqueIndex : Key::Kind::kIndex, index.name, {}, {}};
  for (const auto& column : index.columns) key.columns.push_back(RequireColumn(table, column));
  if (index.filter) {
    if (index.unique) RaiseUnsupported("a unique index with a filter");
    AddFilter(table, *index.filter, key.filter);
  }
  AddKey(table, std::move(key));
}

}  // namespace tavcc::sql
