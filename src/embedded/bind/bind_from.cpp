// Binding of FROM clauses: tables, views, derived tables and joins.
#include <utility>

#include "embedded/bind/binder.h"
#include "embedded/bind/walk.h"
#include "embedded/catalog/names.h"

namespace tavcc::sql {
namespace {

// How deep views may stand in views, as on the server.
constexpr int kViewNesting = 32;

void MakeNullable(BoundFrom& from) {
  ForEachSource(from, [](BoundSource& source) {
    for (auto& column : source.columns) column.nullable = true;
  });
}

// `what`: the name of the source in messages.
void NameColumns(BoundSource& source, const std::string& what,
                 const std::vector<std::string>& names) {
  if (!names.empty()) {
    if (names.size() < source.columns.size()) Raise(errors::kMoreColumnsThanNames, what);
    if (names.size() > source.columns.size()) Raise(errors::kFewerColumnsThanNames, what);
    for (size_t i = 0; i < names.size(); ++i) source.columns[i].name = names[i];
  }
  for (size_t i = 0; i < source.columns.size(); ++i) {
    const std::string& name = source.columns[i].name;
    if (name.empty()) Raise(errors::kUnnamedColumn, static_cast<int64_t>(i) + 1, what);
    if (IndexByName(source.columns, name) != static_cast<int>(i))
      Raise(errors::kColumnNamedTwice, name, what);
  }
}

// Two sources of one name, by whether the names were given to them.
[[noreturn]] void RaiseSameName(const BoundSource& first, const BoundSource& second) {
  if (first.correlated && second.correlated) Raise(errors::kCorrelationNameTwice, second.alias);
  if (!first.correlated && !second.correlated)
    Raise(errors::kSameExposedNames, first.alias, second.alias);
  const BoundSource& named = first.correlated ? first : second;
  const BoundSource& bare = first.correlated ? second : first;
  Raise(errors::kCorrelationNameOfTable, named.alias, bare.alias);
}

}  // namespace

void Binder::CheckView(const CreateViewStatement& view) {
  const auto query = BindInner(*view.query, nullptr);
  if (!view.columns.empty()) return;
  for (size_t i = 0; i < query->columns.size(); ++i) {
    if (query->columns[i].name.empty())
      Raise(errors::kViewColumnWithoutName, static_cast<int64_t>(i) + 1);
  }
}

TablePtr Binder::RequireTable(const ObjectName& name, errors::Number number) {
  TablePtr table = catalog_.FindTable(name);
  if (!table) {
    if (name.last().starts_with('@')) Raise(errors::kUndeclaredTableVariable, name.last());
    Raise(number, WrittenName(name));
  }
  result_.dependencies.push_back(Dependency{name, table, nullptr});
  return table;
}

BoundFromPtr Binder::BindFrom(const std::vector<TableSourcePtr>& sources, const Scope* parent,
                              Scope& visible) {
  BoundFromPtr from;
  for (const auto& source : sources) {
    auto next = BindSource(*source, parent, visible);
    if (!from) {
      from = std::move(next);
      continue;
    }
    auto cross = std::make_unique<BoundFrom>();
    cross->join = BoundFrom::Join::kCross;
    cross->left = std::move(from);
    cross->right = std::move(next);
    from = std::move(cross);
  }
  return from;
}

BoundFromPtr Binder::BindSource(const TableSource& source, const Scope* parent, Scope& visible) {
  if (source.kind == TableSource::Kind::kJoin) {
    return BindJoin(static_cast<const JoinedTable&>(source), parent, visible);
  }
  auto from = source.kind == TableSource::Kind::kNamed
                  ? BindNamed(static_cast<const NamedTable&>(source))
                  : BindDerived(static_cast<const DerivedTable&>(source), parent);
  from->source->id = result_.next_source++;
  from->source->correlated = source.kind != TableSource::Kind::kNamed ||
                             !static_cast<const NamedTable&>(source).alias.empty();
  for (const BoundSource* other : visible.sources) {
    if (EqualsIgnoringCase(other->alias, from->source->alias)) RaiseSameName(*other, *from->source);
  }
  visible.sources.push_back(from->source.get());
  return from;
}

BoundFromPtr Binder::BindNamed(const NamedTable& named) {
  const std::string& alias = named.alias.empty() ? named.name.last() : named.alias;
  if (const CommonTable* common = FindCommonTable(named.name)) {
    return BindCommonTable(*common, alias);
  }
  if (catalog_.FindTable(named.name)) return BindTable(RequireTable(named.name), alias);
  const CatalogObjectPtr object = catalog_.Find(named.name);
  if (!object || !object->view) RequireTable(named.name);
  result_.dependencies.push_back(Dependency{named.name, nullptr, object});
  return BindView(*object->view, alias);
}

BoundFromPtr Binder::BindTable(const TablePtr& table, const std::string& alias) {
  auto source = std::make_unique<BoundSource>();
  source->alias = alias;
  source->table = table;
  for (const Column& column : table->columns) {
    source->columns.push_back({column.name, column.type, column.nullable, column.identity});
  }
  auto from = std::make_unique<BoundFrom>();
  from->source = std::move(source);
  return from;
}

BoundFromPtr Binder::FinishSource(std::unique_ptr<BoundSource> source, const std::string& name,
                                  const std::vector<std::string>& columns,
                                  const std::string& alias) {
  NameColumns(*source, name, columns);
  source->alias = alias;
  auto from = std::make_unique<BoundFrom>();
  from->source = std::move(source);
  return from;
}

// A view is its text in its place. It sees nothing of the statement: no variables, no outer names.
BoundFromPtr Binder::BindView(const View& view, const std::string& alias) {
  if (views_ >= kViewNesting) Raise(errors::kCallsNestedTooDeep, kViewNesting);
  ++views_;
  const auto variables = std::exchange(variables_, {});
  auto* const aggregates = std::exchange(aggregates_, nullptr);
  const auto common_tables = std::exchange(common_tables_, {});
  auto* const recursion = std::exchange(recursion_, nullptr);
  auto source = std::make_unique<BoundSource>();
  source->is_view = true;
  source->query = BindInner(*view.statement->query, nullptr);
  variables_ = variables;
  aggregates_ = aggregates;
  common_tables_ = common_tables;
  recursion_ = recursion;
  --views_;
  source->columns = source->query->columns;
  return FinishSource(std::move(source), alias, view.statement->columns, alias);
}

BoundFromPtr Binder::BindDerived(const DerivedTable& derived, const Scope* parent) {
  auto source = std::make_unique<BoundSource>();
  source->query = BindInner(*derived.query, parent);
  source->columns = source->query->columns;
  return FinishSource(std::move(source), derived.alias, derived.columns, derived.alias);
}

BoundFromPtr Binder::BindJoin(const JoinedTable& join, const Scope* parent, Scope& visible) {
  const size_t first = visible.sources.size();
  auto bound = std::make_unique<BoundFrom>();
  bound->left = BindSource(*join.left, parent, visible);
  bound->right = BindSource(*join.right, parent, visible);
  bound->join = join.join == JoinedTable::Join::kCross   ? BoundFrom::Join::kCross
                : join.join == JoinedTable::Join::kInner ? BoundFrom::Join::kInner
                : join.join == JoinedTable::Join::kFull  ? BoundFrom::Join::kFull
                                                         : BoundFrom::Join::kLeft;
  if (join.on) {
    Scope both{parent,
               {visible.sources.begin() + static_cast<ptrdiff_t>(first), visible.sources.end()}};
    Aggregates none{errors::kAggregateInWhere, false, false};
    auto* const outer = std::exchange(aggregates_, &none);
    bound->on = Bind(*join.on, both);
    aggregates_ = outer;
  }
  // A right join is a left join with its sides exchanged.
  if (join.join == JoinedTable::Join::kRight) std::swap(bound->left, bound->right);
  if (bound->join == BoundFrom::Join::kLeft) MakeNullable(*bound->right);
  if (bound->join == BoundFrom::Join::kFull) {
    MakeNullable(*bound->left);
    MakeNullable(*bound->right);
  }
  return bound;
}

}  // namespace tavcc::sql
