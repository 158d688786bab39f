// Binding of INSERT, UPDATE and DELETE.
#include <algorithm>
#include <utility>

#include "embedded/bind/binder.h"
#include "embedded/bind/function_rules.h"
#include "embedded/bind/walk.h"
#include "foundation/text.h"

namespace tavcc::sql {
namespace {

bool Contains(const std::vector<int>& columns, int column) {
  return std::ranges::find(columns, column) != columns.end();
}

BoundSource* FindTarget(BoundFrom& from, const ObjectName& target, const TablePtr& table) {
  BoundSource* by_alias = nullptr;
  BoundSource* by_table = nullptr;
  int tables = 0;
  ForEachSource(from, [&](BoundSource& source) {
    if (target.parts.size() == 1 && EqualsIgnoringCase(source.alias, target.last()))
      by_alias = &source;
    if (table && source.table == table) {
      by_table = &source;
      ++tables;
    }
  });
  if (by_alias == nullptr && tables > 1) Raise(errors::kAmbiguousTable, target.last());
  return by_alias != nullptr ? by_alias : by_table;
}

// The row whose number is the row parameter.
template <class Change>
BoundConditionPtr IsRow(const Change& change) {
  const int column = change.row_column < 0 ? BoundColumn::kRowNumber : change.row_column;
  return std::make_unique<BoundComparison>(
      ComparisonOperator::kEqual, std::make_unique<BoundColumn>(*change.target, column),
      std::make_unique<BoundRowParameter>(Type(TypeKind::kBigInt), 0));
}

// Of an INSERT without a column list: values for all columns, the identity column too, are an error
// of their own.
[[noreturn]] void RaiseWrongCount(const Table& table, size_t values) {
  if (table.identity_column >= 0 && values == table.columns.size())
    Raise(errors::kExplicitIdentityWithoutList, table.name);
  Raise(errors::kValuesDoNotMatchTable);
}

}  // namespace

BoundExpressionPtr Binder::BindDefault(const Column& column) {
  if (column.identity) {
    static constexpr FunctionRule kNext{Function::kNextIdentity, "IDENTITY", "",
                                        FunctionResult::kFirst};
    auto next = std::make_unique<BoundCall>(kNext, column.type);
    next->nullable = false;
    return next;
  }
  if (!column.default_value) {
    return std::make_unique<BoundLiteral>(TypedValue{column.type, StoredValue()}, -1);
  }
  return BindValue(*column.default_value);
}

BoundExpressionPtr Binder::Assign(const Table& table, int index, BoundExpressionPtr value,
                                  Place place) {
  const Column& column = table.columns[static_cast<size_t>(index)];
  value = ConvertLiteral(std::move(value), column.type, place, ConvertMode::kAssign);
  if (value->type.kind != TypeKind::kNull) CheckImplicit(value->type, column.type);
  value = Convert(std::move(value), column.type, ConvertMode::kAssign);
  if (auto* const convert = As<BoundConvert>(*value); convert != nullptr && !convert->explicitly) {
    convert->table = table.MessageName();
    convert->column = column.name;
  }
  return value;
}

TablePtr Binder::BindInsertTarget(const InsertStatement& insert, std::vector<std::string>& names) {
  if (FindCommonTable(insert.table)) RaiseUnsupported("INSERT into a common table expression");
  if (!catalog_.FindTable(insert.table)) {
    const CatalogObjectPtr object = catalog_.Find(insert.table);
    if (object && object->view) return BindViewColumns(insert.table, object, names);
  }
  return RequireTable(insert.table);
}

void Binder::BindInsertColumns(const std::vector<std::string>& names, bool identity_insert,
                               BoundInsert& bound) {
  const Table& table = *bound.table;
  for (const std::string& name : names) {
    const int column = table.FindColumn(name);
    if (column < 0) Raise(errors::kInvalidColumnName, name);
    if (Contains(bound.columns, column)) Raise(errors::kColumnSetTwice, name);
    if (column == table.identity_column && !identity_insert)
      Raise(errors::kExplicitIdentity, table.name);
    bound.columns.push_back(column);
  }
  if (!names.empty()) {
    if (identity_insert && !Contains(bound.columns, table.identity_column)) {
      Raise(errors::kExplicitIdentityRequired, table.name);
    }
    return;
  }
  if (identity_insert && table.identity_column >= 0)
    Raise(errors::kExplicitIdentityWithoutList, table.name);
  for (int i = 0; i < static_cast<int>(table.columns.size()); ++i) {
    if (i != table.identity_column) bound.columns.push_back(i);
  }
}

BoundInsert Binder::BindInsert(const InsertStatement& insert, bool identity_insert) {
  BoundInsert bound;
  EnterWith(insert.with);
  max_recursion_ = insert.with.max_recursion;
  std::vector<std::string> names = insert.columns;
  bound.table = BindInsertTarget(insert, names);
  if (insert.rows.empty() && !insert.query) {
    AddDefaults(bound);
    return bound;
  }
  BindInsertColumns(names, identity_insert, bound);
  bound.explicit_identity = Contains(bound.columns, bound.table->identity_column);
  if (insert.query) {
    bound.query = BindQuery(*insert.query, nullptr);
    ConvertQueryRows(bound, insert.columns.empty());
  } else {
    BindInsertValues(insert, bound);
  }
  AddDefaults(bound);
  return bound;
}

void Binder::BindInsertValues(const InsertStatement& insert, BoundInsert& bound) {
  for (const auto& row : insert.rows) {
    if (row.size() != bound.columns.size()) {
      if (insert.columns.empty()) RaiseWrongCount(*bound.table, row.size());
      Raise(row.size() < bound.columns.size() ? errors::kFewerValuesThanColumns
                                              : errors::kMoreValuesThanColumns);
    }
    auto& values = bound.rows.emplace_back();
    for (size_t i = 0; i < row.size(); ++i) {
      const int column = bound.columns[i];
      auto value = row[i] ? BindValue(*row[i])
                          : BindDefault(bound.table->columns[static_cast<size_t>(column)]);
      values.push_back(Assign(*bound.table, column, std::move(value), kValueAlone));
    }
  }
}

// Brings the query's columns to the types of the columns that they fill. Where the query puts rows
// together by their values (DISTINCT, UNION), that happens before the conversion, not after it.
void Binder::ConvertQueryRows(BoundInsert& bound, bool all_columns) {
  const auto& columns = bound.query->columns;
  if (columns.size() != bound.columns.size()) {
    if (all_columns) RaiseWrongCount(*bound.table, columns.size());
    Raise(columns.size() < bound.columns.size() ? errors::kFewerSelectedThanColumns
                                                : errors::kMoreSelectedThanColumns);
  }
  if (bound.query->select && bound.query->select->items[0].variable >= 0)
    Raise(errors::kInsertSelectAssigns);
  const bool direct = bound.query->select && !bound.query->select->distinct &&
                      bound.query->order_by.empty() && !bound.query->select->top;
  if (!direct) {
    auto source = std::make_unique<BoundSource>();
    source->id = result_.next_source++;
    source->columns = columns;
    source->query = std::move(bound.query);
    auto outer = std::make_unique<BoundQuery>();
    outer->select = std::make_unique<BoundSelect>();
    for (size_t i = 0; i < source->columns.size(); ++i) {
      outer->select->items.push_back({std::make_unique<BoundColumn>(*source, static_cast<int>(i)),
                                      source->columns[i].name, -1});
    }
    outer->columns = source->columns;
    outer->select->from = std::make_unique<BoundFrom>();
    outer->select->from->source = std::move(source);
    bound.query = std::move(outer);
  }
  for (size_t i = 0; i < bound.columns.size(); ++i) {
    auto& expression = bound.query->select->items[i].expression;
    expression = Assign(*bound.table, bound.columns[i], std::move(expression));
    bound.query->columns[i].type = expression->type;
  }
}

// Columns that the statement leaves out: constants stand in SQLite's own definition, the others are
// written here.
void Binder::AddDefaults(BoundInsert& bound) {
  if (bound.rows.empty() && !bound.query && bound.columns.empty()) bound.rows.emplace_back();
  for (int i = 0; i < static_cast<int>(bound.table->columns.size()); ++i) {
    const Column& column = bound.table->columns[static_cast<size_t>(i)];
    if (Contains(bound.columns, i)) continue;
    if (column.identity && !bound.table->draws_identity) continue;
    const bool needed = column.default_value && !column.constant_default;
    const bool row_number = i == bound.table->rowid_column;
    if (!needed && !row_number) continue;
    bound.columns.push_back(i);
    for (auto& row : bound.rows) row.push_back(Assign(*bound.table, i, BindDefault(column)));
    if (!bound.query) continue;
    bound.query->select->items.push_back(
        {Assign(*bound.table, i, BindDefault(column)), column.name, -1});
    bound.query->columns.push_back({column.name, column.type, true, false});
  }
}

BoundInsert Binder::BindInsertInto(const TablePtr& table, BoundQueryPtr query) {
  BoundInsert bound;
  bound.table = table;
  bound.query = std::move(query);
  bound.explicit_identity = table->identity_column >= 0;
  for (int i = 0; i < static_cast<int>(table->columns.size()); ++i) bound.columns.push_back(i);
  return bound;
}

BoundInsert Binder::BindInsertRows(const InsertStatement& insert,
                                   std::span<const SourceColumn> columns, bool identity_insert) {
  BoundInsert bound;
  std::vector<std::string> names = insert.columns;
  bound.table = BindInsertTarget(insert, names);
  BindInsertColumns(names, identity_insert, bound);
  if (columns.size() != bound.columns.size()) Raise(errors::kValuesDoNotMatchTable);
  auto& row = bound.rows.emplace_back();
  for (size_t i = 0; i < columns.size(); ++i) {
    auto value = std::make_unique<BoundRowParameter>(columns[i].type, static_cast<int>(i));
    row.push_back(Assign(*bound.table, bound.columns[i], std::move(value)));
  }
  AddDefaults(bound);
  return bound;
}

// Binds FROM and finds the target among its sources. Without FROM, or where FROM does not mention
// the target, the target is a source of its own.
template <class StatementType, class Bound>
Binder::Scope Binder::BindTarget(const StatementType& statement, Bound& bound) {
  Scope scope;
  if (!statement.from.empty()) bound.from = BindFrom(statement.from, nullptr, scope);
  const TablePtr table =
      FindCommonTable(statement.target) ? nullptr : catalog_.FindTable(statement.target);
  if (bound.from) bound.target = FindTarget(*bound.from, statement.target, table);
  if (bound.target == nullptr) {
    NamedTable named;
    named.name = statement.target;
    auto own = BindNamed(named);
    own->source->id = result_.next_source++;
    bound.target = own->source.get();
    scope.sources.push_back(own->source.get());
    if (bound.from) {
      auto cross = std::make_unique<BoundFrom>();
      cross->join = BoundFrom::Join::kCross;
      cross->left = std::move(own);
      cross->right = std::move(bound.from);
      bound.from = std::move(cross);
    } else {
      bound.from = std::move(own);
    }
  }
  bound.table = bound.target->table;
  bound.top = BindTop(statement.top, /*ordered=*/false);
  return scope;
}

BoundUpdate Binder::BindUpdate(const UpdateStatement& update) {
  BoundUpdate bound;
  EnterWith(update.with);
  max_recursion_ = update.with.max_recursion;
  const Scope scope = BindTarget(update, bound);
  std::vector<std::string> names;
  for (const Assignment& assignment : update.assignments) {
    if (!assignment.column.empty()) names.push_back(assignment.column);
  }
  if (!bound.table) {
    const auto columns_of_base = BaseColumns(*bound.target, names, bound.table, bound.row_column);
    for (size_t i = 0; i < names.size(); ++i) {
      names[i] = bound.table->columns[static_cast<size_t>(columns_of_base[i])].name;
    }
  }
  size_t next_name = 0;
  Aggregates aggregates{errors::kAggregateInSet, false, false};
  aggregates_ = &aggregates;
  std::vector<int> columns;
  for (const Assignment& assignment : update.assignments) {
    const int variable = assignment.variable.empty() ? -1 : FindVariable(assignment.variable);
    const SqlType type = variable < 0 ? SqlType{} : variables_[static_cast<size_t>(variable)].type;
    if (assignment.column.empty()) {
      auto value = ConvertImplicitly(Bind(*assignment.value, scope), type);
      bound.assignments.push_back({-1, std::move(value), variable, type});
      continue;
    }
    const int index = bound.table->FindColumn(names[next_name++]);
    if (index < 0) Raise(errors::kInvalidColumnName, assignment.column);
    if (Contains(columns, index)) Raise(errors::kColumnSetTwice, assignment.column);
    if (index == bound.table->identity_column) Raise(errors::kUpdateOfIdentity, assignment.column);
    columns.push_back(index);
    const Column& column = bound.table->columns[static_cast<size_t>(index)];
    auto value = assignment.value ? Bind(*assignment.value, scope) : BindDefault(column);
    if (variable >= 0) CheckImplicit(column.type, type);
    bound.assignments.push_back(
        {index, Assign(*bound.table, index, std::move(value)), variable, type});
  }
  aggregates.refusal = errors::kAggregateInWhere;
  if (update.where) bound.where = Bind(*update.where, scope);
  if (!update.current_of.empty()) bound.where = IsRow(bound);
  aggregates_ = nullptr;
  return bound;
}

BoundDelete Binder::BindDelete(const DeleteStatement& remove) {
  BoundDelete bound;
  EnterWith(remove.with);
  max_recursion_ = remove.with.max_recursion;
  const Scope scope = BindTarget(remove, bound);
  if (!bound.table) {
    BaseColumns(*bound.target, {}, bound.table, bound.row_column);
  }
  Aggregates aggregates{errors::kAggregateInWhere, false, false};
  aggregates_ = &aggregates;
  if (remove.where) bound.where = Bind(*remove.where, scope);
  if (!remove.current_of.empty()) bound.where = IsRow(bound);
  aggregates_ = nullptr;
  return bound;
}

}  // namespace tavcc::sql
