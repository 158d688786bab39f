// Binding of common table expressions: WITH name AS (query).
//
// A reference is the query in its place, bound anew each time, as a view is. One that refers to
// itself is a recursive query:
//
//   WITH c AS (SELECT 1 AS n UNION ALL SELECT n + 1 FROM c WHERE n < 5) …
//              anchor                  recursive member
//
// The anchor gives the first rows; the recursive member is then computed for the rows of the step
// before it, until there are none. Several members of either kind may be set together with UNION
// ALL, the anchors first.
#include <algorithm>
#include <utility>

#include "embedded/bind/binder.h"
#include "embedded/catalog/names.h"

namespace tavcc::sql {
namespace {

// How often the joins of a FROM clause refer to the name; derived tables are not looked into.
int CountReferences(const TableSource& source, const std::string& name) {
  if (const auto* join = As<JoinedTable>(source))
    return CountReferences(*join->left, name) + CountReferences(*join->right, name);
  const auto* table = As<NamedTable>(source);
  const bool same = table != nullptr && table->name.parts.size() == 1 &&
                    EqualsIgnoringCase(table->name.last(), name);
  return same ? 1 : 0;
}

int CountReferences(const Query& query, const std::string& name) {
  if (!query.block) return CountReferences(*query.left, name) + CountReferences(*query.right, name);
  int count = 0;
  for (const auto& source : query.block->from) count += CountReferences(*source, name);
  return count;
}

// The anchors, which are one query, and the recursive members. No members: it does not refer to
// itself.
struct Members {
  const Query* anchor = nullptr;
  std::vector<const Query*> recursive;
};

// Errors: 246, 247, 252, 253.
Members FindMembers(const CommonTable& table) {
  Members members;
  members.anchor = table.query.get();
  if (CountReferences(*table.query, table.name) == 0) return members;
  while (CountReferences(*members.anchor, table.name) > 0) {
    const Query& query = *members.anchor;
    if (query.block || query.set_operator != Query::SetOperator::kUnionAll) {
      Raise(members.recursive.empty() ? errors::kRecursionWithoutUnionAll : errors::kNoAnchorMember,
            table.name);
    }
    const int references = CountReferences(*query.right, table.name);
    if (references == 0) Raise(errors::kAnchorAmongRecursive, table.name);
    if (references > 1) Raise(errors::kSeveralRecursiveReferences, table.name);
    members.recursive.insert(members.recursive.begin(), query.right.get());
    members.anchor = query.left.get();
  }
  return members;
}

bool HasOuterJoin(const TableSource& source) {
  const auto* join = As<JoinedTable>(source);
  if (join == nullptr) return false;
  return (join->join != JoinedTable::Join::kInner && join->join != JoinedTable::Join::kCross) ||
         HasOuterJoin(*join->left) || HasOuterJoin(*join->right);
}

// What a recursive member may not have. Errors: 460, 461, 462, 466, 467.
void CheckMember(const Query& member, const std::string& name) {
  if (!member.block) Raise(errors::kRecursiveUnion, name);
  const SelectBlock& block = *member.block;
  if (block.distinct) Raise(errors::kRecursiveDistinct, name);
  if (block.top) Raise(errors::kRecursiveTop, name);
  if (std::ranges::any_of(block.from, [](const auto& source) { return HasOuterJoin(*source); })) {
    Raise(errors::kRecursiveOuterJoin, name);
  }
  if (!block.group_by.empty() || block.having) Raise(errors::kRecursiveAggregate, name);
}

}  // namespace

void Binder::EnterWith(const WithClause& with) {
  common_tables_ = {&with, with.tables.size()};
  for (const CommonTable& table : with.tables) {
    if (FindByName(with.tables, table.name) != &table)
      Raise(errors::kDuplicateCommonTable, table.name);
  }
}

const CommonTable* Binder::FindCommonTable(const ObjectName& name) const {
  if (name.parts.size() > 1) return nullptr;
  if (recursion_ != nullptr && EqualsIgnoringCase(recursion_->table->name, name.last())) {
    return recursion_->table;
  }
  if (common_tables_.with == nullptr) return nullptr;
  return FindByName(std::span(common_tables_.with->tables).first(common_tables_.count),
                    name.last());
}

BoundFromPtr Binder::BindCommonTable(const CommonTable& table, const std::string& alias) {
  if (++bound_ > kMostExpressions) Raise(errors::kTooComplex);
  common_table_used_ = true;
  if (recursion_ != nullptr && recursion_->table == &table) {
    return BindRecursiveReference(table, alias);
  }
  Recursion here;
  here.table = &table;
  const auto index = static_cast<size_t>(&table - common_tables_.with->tables.data());
  const CommonTables outer = std::exchange(common_tables_, {common_tables_.with, index});
  Recursion* const outer_recursion = std::exchange(recursion_, &here);
  auto* const aggregates = std::exchange(aggregates_, nullptr);
  auto source = std::make_unique<BoundSource>();
  source->is_view = true;
  source->query = BindRecursive(table);
  aggregates_ = aggregates;
  recursion_ = outer_recursion;
  common_tables_ = outer;
  source->columns = source->query->columns;
  return FinishSource(std::move(source), table.name, table.columns, alias);
}

BoundQueryPtr Binder::BindRecursive(const CommonTable& table) {
  const Members members = FindMembers(table);
  if (members.recursive.empty()) return BindInner(*table.query, nullptr);
  if (!table.query->order_by.empty()) Raise(errors::kOrderByInSubquery);
  auto query = std::make_unique<BoundQuery>();
  query->set_operator = Query::SetOperator::kUnionAll;
  query->left = BindQuery(*members.anchor, nullptr);
  query->columns = query->left->columns;
  for (SourceColumn& column : query->columns) {
    column.nullable = true;
    column.identity = false;
  }
  auto named = std::make_unique<BoundSource>();
  named->columns = query->columns;
  recursion_->columns =
      FinishSource(std::move(named), table.name, table.columns, table.name)->source->columns;
  recursion_->id = query->recursion = result_.next_source++;
  query->max_recursion = max_recursion_;
  for (const Query* member : members.recursive) {
    BoundQueryPtr bound = BindRecursiveMember(table, *member, query->columns);
    if (!query->right) {
      query->right = std::move(bound);
      continue;
    }
    auto both = std::make_unique<BoundQuery>();
    both->set_operator = Query::SetOperator::kUnionAll;
    both->columns = query->columns;
    both->left = std::move(query->right);
    both->right = std::move(bound);
    query->right = std::move(both);
  }
  return query;
}

// Errors: also 205; 240, a column that is not of the anchor's very type.
BoundQueryPtr Binder::BindRecursiveMember(const CommonTable& table, const Query& member,
                                          const std::vector<SourceColumn>& columns) {
  CheckMember(member, table.name);
  BoundQueryPtr bound = BindQuery(member, nullptr);
  if (bound->select->grouped) Raise(errors::kRecursiveAggregate, table.name);
  if (bound->columns.size() != columns.size()) Raise(errors::kUnionOfUnequalWidths);
  for (size_t i = 0; i < columns.size(); ++i) {
    if (bound->columns[i].type != columns[i].type) {
      Raise(errors::kRecursiveTypesDiffer, recursion_->columns[i].name, table.name);
    }
  }
  return bound;
}

BoundFromPtr Binder::BindRecursiveReference(const CommonTable& table, const std::string& alias) {
  if (recursion_->id == 0 || recursion_->depth > 1) Raise(errors::kRecursionInSubquery);
  auto source = std::make_unique<BoundSource>();
  source->recursion = recursion_->id;
  source->columns = recursion_->columns;
  return FinishSource(std::move(source), table.name, {}, alias);
}

}  // namespace tavcc::sql
