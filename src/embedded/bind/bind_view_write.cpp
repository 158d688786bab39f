// Changing rows through a view or a derived table: which columns of which table its columns are.
//
// The rows are found through the view as it is. What is changed is a row of one base table, so the
// view is given one more column: the number of that table's row.
#include <utility>

#include "embedded/bind/binder.h"
#include "embedded/bind/walk.h"
#include "embedded/catalog/names.h"

namespace tavcc::sql {
namespace {

// The errors of a view, and of a derived table.
enum class NotUpdatable : uint8_t { kGrouped, kSeveralTables, kDerivedColumn, kUnion };

[[noreturn]] void RaiseNotUpdatable(const BoundSource& target, NotUpdatable reason) {
  static constexpr errors::Number kNumbers[][2] = {
      {errors::kViewWithAggregates, errors::kDerivedTableWithAggregates},
      {errors::kViewOfSeveralTables, errors::kDerivedTableOfSeveralTables},
      {errors::kViewColumnDerived, errors::kDerivedTableColumnDerived},
      {errors::kViewWithUnion, errors::kDerivedTableWithUnion}};
  Raise(kNumbers[static_cast<size_t>(reason)][target.is_view ? 0 : 1], target.alias);
}

struct BaseColumn {
  const BoundSource* table = nullptr;  // null for a column that is computed
  int column = 0;
};

BaseColumn Resolve(const BoundSource& source, int column) {
  if (source.table) return {&source, column};
  if (source.block() == nullptr) return {};
  const auto& item = source.block()->items[static_cast<size_t>(column)];
  const auto* inner = As<BoundColumn>(*item.expression);
  return inner != nullptr ? Resolve(*inner->source, inner->column) : BaseColumn{};
}

// Adds the row number of `base` to the query of `source`, in which it stands; the new column's
// place. Errors: NotUpdatable::kGrouped on the way.
int AddRowNumber(BoundSource& source, const BoundSource& base, const BoundSource& target);

// Nothing when `base` does not stand in `from`.
BoundExpressionPtr RowNumberIn(BoundFrom& from, const BoundSource& base,
                               const BoundSource& target) {
  if (!from.source) {
    auto found = RowNumberIn(*from.left, base, target);
    return found ? std::move(found) : RowNumberIn(*from.right, base, target);
  }
  BoundSource& source = *from.source;
  if (&source == &base) {
    return std::make_unique<BoundColumn>(source, BoundColumn::kRowNumber);
  }
  if (source.block() == nullptr || !source.block()->from) return nullptr;
  bool inside = false;
  const auto look = [&](const auto& self, const BoundFrom& inner) -> void {
    ForEachSource(inner, [&](const BoundSource& one) {
      inside = inside || &one == &base;
      if (one.block() != nullptr && one.block()->from) self(self, *one.block()->from);
    });
  };
  look(look, *source.block()->from);
  if (!inside) return nullptr;
  const int column = AddRowNumber(source, base, target);
  return std::make_unique<BoundColumn>(source, column);
}

int AddRowNumber(BoundSource& source, const BoundSource& base, const BoundSource& target) {
  BoundSelect& select = *source.query->select;
  if (select.grouped || select.distinct) RaiseNotUpdatable(target, NotUpdatable::kGrouped);
  auto number = RowNumberIn(*select.from, base, target);
  const SourceColumn column{"", number->type, true, false};
  select.items.push_back({std::move(number), "", -1});
  source.query->columns.push_back(column);
  source.columns.push_back(column);
  return static_cast<int>(source.columns.size()) - 1;
}

// The one table that the rows of `source` come from.
const BoundSource& OnlyBase(const BoundSource& source, const BoundSource& target) {
  if (source.table) return source;
  if (source.block() == nullptr) RaiseNotUpdatable(target, NotUpdatable::kUnion);
  const BoundSelect& select = *source.block();
  if (select.grouped || select.distinct) RaiseNotUpdatable(target, NotUpdatable::kGrouped);
  if (!select.from) RaiseNotUpdatable(target, NotUpdatable::kDerivedColumn);
  if (!select.from->source) RaiseNotUpdatable(target, NotUpdatable::kSeveralTables);
  return OnlyBase(*select.from->source, target);
}

int RequireColumn(const BoundSource& source, const std::string& name) {
  const int index = IndexByName(source.columns, name);
  if (index < 0) Raise(errors::kInvalidColumnName, name);
  return index;
}

// Adds what `name` of the target stands for; all have to be columns of one table.
void AddBaseColumn(const BoundSource& target, const std::string& name, const BoundSource*& base,
                   std::vector<int>& columns) {
  const BaseColumn column = Resolve(target, RequireColumn(target, name));
  if (column.table == nullptr) RaiseNotUpdatable(target, NotUpdatable::kDerivedColumn);
  if (base != nullptr && base != column.table)
    RaiseNotUpdatable(target, NotUpdatable::kSeveralTables);
  base = column.table;
  columns.push_back(column.column);
}

}  // namespace

std::vector<int> Binder::BaseColumns(BoundSource& target, const std::vector<std::string>& names,
                                     TablePtr& table, int& row_column) {
  std::vector<int> columns;
  const BoundSource* base = nullptr;
  for (const std::string& name : names) AddBaseColumn(target, name, base, columns);
  if (base == nullptr) base = &OnlyBase(target, target);
  row_column = AddRowNumber(target, *base, target);
  table = base->table;
  return columns;
}

TablePtr Binder::BindViewColumns(const ObjectName& name, const CatalogObjectPtr& object,
                                 std::vector<std::string>& names) {
  result_.dependencies.push_back(Dependency{name, nullptr, object});
  const auto from = BindView(*object->view, name.last());
  from->source->id = result_.next_source++;
  if (names.empty()) {
    for (const SourceColumn& column : from->source->columns) names.push_back(column.name);
  }
  TablePtr table;
  int row_column = -1;
  const std::vector<int> columns = BaseColumns(*from->source, names, table, row_column);
  for (size_t i = 0; i < names.size(); ++i) {
    names[i] = table->columns[static_cast<size_t>(columns[i])].name;
  }
  return table;
}

}  // namespace tavcc::sql
