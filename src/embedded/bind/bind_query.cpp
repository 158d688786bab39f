// Binding of queries: blocks, set operations, grouping and order.
#include <algorithm>
#include <utility>

#include "embedded/bind/binder.h"
#include "embedded/bind/same.h"
#include "embedded/bind/walk.h"
#include "embedded/catalog/names.h"

namespace tavcc::sql {
namespace {

std::string ColumnName(const Expression& expression) {
  const auto* column = As<ColumnExpression>(expression);
  return column != nullptr ? column->name.last() : std::string();
}

bool IsIdentity(const BoundExpression& expression) {
  const auto* column = As<BoundColumn>(expression);
  return column != nullptr && column->source->columns[static_cast<size_t>(column->column)].identity;
}

// A column of the result that is a bare NULL is an int.
SqlType ResultType(const SqlType& type) {
  return type.kind == TypeKind::kNull ? kIntType : type;
}

void CheckOwnColumn(const BoundExpression& key, const std::vector<const BoundSource*>& sources) {
  bool own = false;
  ForEachExpression(key, [&](const BoundExpression& inner) {
    const auto* column = As<BoundColumn>(inner);
    own = own || (column != nullptr && std::ranges::find(sources, column->source) != sources.end());
  });
  if (!own) Raise(errors::kGroupByWithoutColumn);
}

bool HasInto(const Query& query) {
  if (query.block) return query.block->into.has_value();
  return HasInto(*query.left) || HasInto(*query.right);
}

bool OrderAlike(const BoundOrder& a, const BoundOrder& b) {
  if (a.item >= 0 || b.item >= 0) return a.item == b.item;
  return AreSame(*a.expression, *b.expression);
}

void AddOrder(std::vector<BoundOrder>& order_by, BoundOrder order) {
  for (const BoundOrder& other : order_by) {
    if (OrderAlike(other, order)) Raise(errors::kOrderColumnTwice);
  }
  order_by.push_back(std::move(order));
}

void DescribeColumns(BoundQuery& query) {
  for (auto& item : query.select->items) {
    item.expression->type = ResultType(item.expression->type);
    query.columns.push_back({item.name, item.expression->type, item.expression->nullable,
                             IsIdentity(*item.expression)});
  }
}

}  // namespace

BoundQueryPtr Binder::BindQuery(const Query& query) {
  max_recursion_ = query.with.max_recursion;
  return BindQuery(query, nullptr);
}

BoundQueryPtr Binder::BindQuery(const Query& query, const Scope* parent) {
  if (!query.with.tables.empty()) EnterWith(query.with);
  auto* const outer = std::exchange(aggregates_, nullptr);
  if (recursion_ != nullptr) ++recursion_->depth;
  auto bound = query.block ? BindBlock(query, parent) : BindSetOperation(query, parent);
  if (recursion_ != nullptr) --recursion_->depth;
  aggregates_ = outer;
  const bool reads = !query.block || !query.block->from.empty();
  if (!query.with.tables.empty() && !common_table_used_ && !reads)
    Raise(errors::kCommonTableNotUsed);
  return bound;
}

// A query whose rows are the input of another: their order means something only with TOP.
BoundQueryPtr Binder::BindInner(const Query& query, const Scope* parent) {
  if (!query.order_by.empty() && !(query.block && query.block->top))
    Raise(errors::kOrderByInSubquery);
  return BindQuery(query, parent);
}

BoundQueryPtr Binder::BindBlock(const Query& query, const Scope* parent) {
  const SelectBlock& block = *query.block;
  auto bound = std::make_unique<BoundQuery>();
  bound->select = std::make_unique<BoundSelect>();
  BoundSelect& select = *bound->select;
  Scope scope{parent, {}};
  Aggregates aggregates;
  select.from = BindFrom(block.from, parent, scope);
  select.distinct = block.distinct;
  select.top = BindTop(block.top, !query.order_by.empty());
  aggregates_ = &aggregates;
  aggregates.refusal = errors::kAggregateInWhere;
  if (block.where) select.where = Bind(*block.where, scope);
  aggregates.refusal = errors::kAggregateInGroupBy;
  for (const auto& key : block.group_by) {
    select.group_by.push_back(Bind(*key, scope));
    CheckOwnColumn(*select.group_by.back(), scope.sources);
  }
  aggregates.refusal.reset();
  aggregates.windows = true;
  BindItems(block, scope, select);
  aggregates.windows = false;
  if (block.having) select.having = Bind(*block.having, scope);
  aggregates.windows = true;
  BindOrder(query, scope, *bound);
  aggregates_ = nullptr;
  select.windowed = aggregates.window_found;
  select.grouped = aggregates.found || !block.group_by.empty() || block.having != nullptr;
  if (select.grouped) CheckGrouping(select, scope, bound->order_by);
  DescribeColumns(*bound);
  return bound;
}

BoundTop Binder::BindTop(const std::optional<TopClause>& top, bool ordered) {
  if (!top) return {};
  if (top->with_ties && !ordered) Raise(errors::kTiesWithoutOrderBy);
  auto count = BindValue(*top->count);
  if (top->percent) {
    count = ConvertImplicitly(std::move(count), Type(TypeKind::kFloat));
  } else {
    if (!IsInteger(count->type.kind)) Raise(errors::kTopNotInteger);
    count = Convert(std::move(count), Type(TypeKind::kBigInt));
  }
  return {std::move(count), top->percent, top->with_ties};
}

void Binder::BindItems(const SelectBlock& block, const Scope& scope, BoundSelect& select) {
  size_t assignments = 0;
  for (const SelectItem& item : block.items) {
    if (item.form == SelectItem::Form::kStar) {
      BindStar(item, scope, select);
      continue;
    }
    BoundItem bound;
    bound.expression = Bind(*item.expression, scope);
    if (item.form == SelectItem::Form::kAssignment) {
      ++assignments;
      bound.variable = FindVariable(item.variable);
      const SqlType type = variables_[static_cast<size_t>(bound.variable)].type;
      bound.expression = ConvertLiteral(std::move(bound.expression), type, kAmongRows);
      bound.expression = ConvertImplicitly(std::move(bound.expression), type);
    } else {
      bound.name = item.alias.empty() ? ColumnName(*item.expression) : item.alias;
    }
    select.items.push_back(std::move(bound));
  }
  if (assignments > 0 && assignments != select.items.size()) Raise(errors::kAssignmentAmongResults);
}

void Binder::BindStar(const SelectItem& item, const Scope& scope, BoundSelect& select) {
  bool found = false;
  for (const BoundSource* source : scope.sources) {
    if (!item.qualifier.parts.empty() && !EqualsIgnoringCase(item.qualifier.last(), source->alias))
      continue;
    found = true;
    for (size_t i = 0; i < source->columns.size(); ++i) {
      select.items.push_back({std::make_unique<BoundColumn>(*source, static_cast<int>(i)),
                              source->columns[i].name, -1});
    }
  }
  if (found) return;
  if (item.qualifier.parts.empty()) Raise(errors::kNoTableToSelectFrom);
  Raise(errors::kUnknownPrefixOfStar, WrittenName(item.qualifier));
}

// The item that a whole number in ORDER BY means, from 0; -1 when the expression is no such number.
int Binder::OrderOrdinal(const Expression& expression, size_t position, size_t items) {
  if (expression.kind != Expression::Kind::kLiteral) return -1;
  const auto& literal = static_cast<const LiteralExpression&>(expression);
  if (literal.form != LiteralExpression::Form::kInteger)
    Raise(errors::kConstantInOrderBy, static_cast<int64_t>(position) + 1);
  const auto bound = BindLiteral(literal);
  NoteDependence(*bound, LiteralDependence::kValue);
  const StoredValue& value = static_cast<const BoundLiteral&>(*bound).value;
  const bool whole = value.kind() == StoredValue::Kind::kInteger;
  if (!whole || value.integer() < 1 || value.integer() > static_cast<int64_t>(items)) {
    Raise(errors::kOrderPositionOutOfRange, literal.text);
  }
  return static_cast<int>(value.integer()) - 1;
}

void Binder::BindOrder(const Query& query, const Scope& scope, BoundQuery& bound) {
  BoundSelect& select = *bound.select;
  for (const OrderItem& item : query.order_by) {
    BoundOrder order;
    order.descending = item.descending;
    order.item = OrderOrdinal(*item.expression, bound.order_by.size(), select.items.size());
    if (order.item < 0 && item.expression->kind == Expression::Kind::kColumn) {
      const auto& name = static_cast<const ColumnExpression&>(*item.expression).name;
      if (name.parts.size() == 1) order.item = IndexByName(select.items, name.last());
    }
    if (order.item < 0) {
      order.expression = Bind(*item.expression, scope);
      for (size_t i = 0; i < select.items.size(); ++i) {
        if (AreSame(*select.items[i].expression, *order.expression)) {
          order.item = static_cast<int>(i);
        }
      }
      if (order.item < 0 && select.distinct) Raise(errors::kDistinctOrderNotSelected);
    }
    order.type = order.item >= 0 ? select.items[static_cast<size_t>(order.item)].expression->type
                                 : order.expression->type;
    if (order.item >= 0) order.expression.reset();
    AddOrder(bound.order_by, std::move(order));
  }
}

BoundQueryPtr Binder::BindSetOperation(const Query& query, const Scope* parent) {
  if (HasInto(*query.right)) Raise(errors::kSelectIntoNotFirst);
  auto bound = std::make_unique<BoundQuery>();
  bound->set_operator = query.set_operator;
  bound->left = BindQuery(*query.left, parent);
  bound->right = BindQuery(*query.right, parent);
  const auto& left = bound->left->columns;
  const auto& right = bound->right->columns;
  if (left.size() != right.size()) Raise(errors::kUnionOfUnequalWidths);
  std::vector<SqlType> types;
  for (size_t i = 0; i < left.size(); ++i) {
    types.push_back(CommonType(left[i].type, right[i].type));
    bound->columns.push_back(
        {left[i].name, types[i], left[i].nullable || right[i].nullable, false});
  }
  ConvertColumns(*bound->left, types);
  ConvertColumns(*bound->right, types);
  BindSetOrder(query, *bound);
  return bound;
}

void Binder::BindSetOrder(const Query& query, BoundQuery& bound) {
  for (const OrderItem& item : query.order_by) {
    BoundOrder order;
    order.descending = item.descending;
    order.item = OrderOrdinal(*item.expression, bound.order_by.size(), bound.columns.size());
    if (order.item < 0 && item.expression->kind == Expression::Kind::kColumn) {
      const auto& name = static_cast<const ColumnExpression&>(*item.expression).name;
      for (size_t i = 0; i < bound.columns.size(); ++i) {
        if (EqualsIgnoringCase(bound.columns[i].name, name.last()))
          order.item = static_cast<int>(i);
      }
      if (order.item < 0) Raise(errors::kInvalidColumnName, name.last());
    }
    if (order.item < 0) Raise(errors::kUnionOrderNotSelected);
    order.type = bound.columns[static_cast<size_t>(order.item)].type;
    AddOrder(bound.order_by, std::move(order));
  }
}

// In a grouped block every column stands in an aggregate or in one of the grouping expressions.
void Binder::CheckGrouping(const BoundSelect& select, const Scope& scope,
                           const std::vector<BoundOrder>& order_by) {
  for (const auto& key : select.group_by) {
    if (key->kind != BoundExpression::Kind::kColumn)
      NoteDependence(*key, LiteralDependence::kValue);
  }
  const auto is_key = [&](const BoundExpression& expression) {
    return std::ranges::any_of(select.group_by,
                               [&](const auto& key) { return AreSame(*key, expression); });
  };
  errors::Number number = errors::kNotGroupedInSelect;
  const ExpressionVisitor check = [&](const BoundExpression& expression) {
    if (expression.kind == BoundExpression::Kind::kAggregate) return;
    const auto* column = As<BoundColumn>(expression);
    const bool outer = column != nullptr &&
                       std::ranges::find(scope.sources, column->source) == scope.sources.end();
    if (outer) return;
    if (is_key(expression)) {
      if (column == nullptr) NoteDependence(expression, LiteralDependence::kValue);
      return;
    }
    if (column != nullptr) {
      Raise(number, column->source->alias,
            column->source->columns[static_cast<size_t>(column->column)].name);
    }
    ForEachChild(expression, check, [&](const BoundQuery& query) {
      ForEachExpression(query, [&](const BoundExpression& inner) {
        if (inner.kind == BoundExpression::Kind::kColumn) check(inner);
      });
    });
  };
  for (const auto& item : select.items) check(*item.expression);
  number = errors::kNotGroupedInHaving;
  if (select.having) ForEachChild(*select.having, check, [](const BoundQuery&) {});
  number = errors::kNotGroupedInOrderBy;
  for (const auto& order : order_by) {
    if (order.expression) check(*order.expression);
  }
}

}  // namespace tavcc::sql
