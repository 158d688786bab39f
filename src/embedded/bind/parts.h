// The parts of each node of a bound tree, named once: what walks, copies and compares trees goes
// through them here, and a new kind of node is one more line.
#pragma once

#include <concepts>
#include <memory>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "embedded/bind/bound.h"

namespace tavcc::sql {

template <class Node, class Kind>
concept Is = std::same_as<std::remove_const_t<Node>, Kind>;

// What a node says, the type of an expression excepted. FROM comes first: what stands beside it
// speaks of its sources.
// clang-format off
auto Parts(Is<BoundLiteral> auto& n) { return std::tie(n.value); }
auto Parts(Is<BoundVariable> auto& n) { return std::tie(n.index); }
auto Parts(Is<BoundRowParameter> auto& n) { return std::tie(n.index); }
auto Parts(Is<BoundSessionValue> auto& n) { return std::tie(n.which); }
auto Parts(Is<BoundColumn> auto& n) { return std::tie(n.source, n.column); }
auto Parts(Is<BoundUnary> auto& n) { return std::tie(n.op, n.operand); }
auto Parts(Is<BoundArithmetic> auto& n) { return std::tie(n.op, n.way, n.left, n.right); }
auto Parts(Is<BoundConvert> auto& n) { return std::tie(n.operand, n.mode, n.style, n.style_value, n.table, n.column); }
auto Parts(Is<BoundCall> auto& n) { return std::tie(n.rule, n.date_part, n.arguments); }
auto Parts(Is<BoundCase::When> auto& n) { return std::tie(n.condition, n.result); }
auto Parts(Is<BoundCase> auto& n) { return std::tie(n.whens, n.otherwise); }
auto Parts(Is<BoundSubquery> auto& n) { return std::tie(n.query); }
auto Parts(Is<BoundAggregate> auto& n) { return std::tie(n.aggregate, n.distinct, n.operand); }
auto Parts(Is<BoundWindow> auto& n) { return std::tie(n.function, n.aggregate, n.arguments, n.partition_by, n.order_by, n.frame); }

auto Parts(Is<BoundComparison> auto& n) { return std::tie(n.op, n.left, n.right); }
auto Parts(Is<BoundLogical> auto& n) { return std::tie(n.op, n.operands); }
auto Parts(Is<BoundNot> auto& n) { return std::tie(n.operand); }
auto Parts(Is<BoundIsNull> auto& n) { return std::tie(n.negated, n.operand); }
auto Parts(Is<BoundInList> auto& n) { return std::tie(n.negated, n.operand, n.values); }
auto Parts(Is<BoundInQuery> auto& n) { return std::tie(n.negated, n.operand, n.query); }
auto Parts(Is<BoundLike> auto& n) { return std::tie(n.negated, n.operand, n.pattern, n.escape); }
auto Parts(Is<BoundExists> auto& n) { return std::tie(n.query); }
auto Parts(Is<BoundIndexFilter> auto& n) { return std::tie(n.source, n.key); }

auto Parts(Is<BoundSource> auto& n) { return std::tie(n.table, n.query, n.recursion); }
auto Parts(Is<BoundFrom> auto& n) { return std::tie(n.join, n.source, n.left, n.right, n.on); }
auto Parts(Is<BoundItem> auto& n) { return std::tie(n.expression, n.variable); }
auto Parts(Is<BoundTop> auto& n) { return std::tie(n.percent, n.with_ties, n.count); }
auto Parts(Is<BoundSelect> auto& n) { return std::tie(n.from, n.distinct, n.top, n.items, n.where, n.group_by, n.having, n.grouped, n.windowed); }
auto Parts(Is<BoundOrder> auto& n) { return std::tie(n.item, n.descending, n.expression); }
auto Parts(Is<BoundQuery> auto& n) { return std::tie(n.set_operator, n.select, n.left, n.right, n.order_by, n.recursion, n.max_recursion); }

// What else a node carries: where two differ in it alone, they still say the same.
auto Marks(auto&) { return std::tuple<>(); }
auto Marks(Is<BoundLiteral> auto& n) { return std::tie(n.slot); }
auto Marks(Is<BoundVariable> auto& n) { return std::tie(n.name); }
auto Marks(Is<BoundConvert> auto& n) { return std::tie(n.explicitly); }
auto Marks(Is<BoundSource> auto& n) { return std::tie(n.alias, n.is_view, n.correlated, n.columns); }
auto Marks(Is<BoundItem> auto& n) { return std::tie(n.name); }
auto Marks(Is<BoundOrder> auto& n) { return std::tie(n.type); }
auto Marks(Is<BoundQuery> auto& n) { return std::tie(n.columns, n.single_row); }
// clang-format on

template <class T>
concept HasParts = requires(T& node) {
  Parts(node);
};

// Calls use(node) with the node as what its kind says that it is.
template <Is<BoundExpression> Expression, class Use>
auto OnKind(Expression& node, const Use& use) {
  return OnKindOf(BoundExpressions(), node, use);
}

template <Is<BoundCondition> Condition, class Use>
auto OnKind(Condition& node, const Use& use) {
  return OnKindOf(BoundConditions(), node, use);
}

// Visits the trees directly inside a node, those of lists and of parts that are no trees included.
// Conditions are handed out as their pointers, so that a visitor may put others in their places.
template <class Node, class Visit>
void ForEachTree(Node& node, const Visit& visit);

template <class Part, class Visit>
void VisitPart(Part& part, const Visit& visit) {
  if constexpr (HasParts<Part>) ForEachTree(part, visit);
}
template <class Tree, class Visit>
void VisitPart(std::unique_ptr<Tree>& tree, const Visit& visit) {
  if (!tree) return;
  if constexpr (std::same_as<Tree, BoundCondition>) {
    visit(tree);
  } else {
    visit(*tree);
  }
}
template <class Tree, class Visit>
void VisitPart(const std::unique_ptr<Tree>& tree, const Visit& visit) {
  if (tree) visit(std::as_const(*tree));
}
template <class Part, class Visit>
void VisitPart(std::vector<Part>& list, const Visit& visit) {
  for (Part& part : list) VisitPart(part, visit);
}
template <class Part, class Visit>
void VisitPart(const std::vector<Part>& list, const Visit& visit) {
  for (const Part& part : list) VisitPart(part, visit);
}

template <class Node, class Visit>
void ForEachTree(Node& node, const Visit& visit) {
  std::apply([&](auto&... part) { (VisitPart(part, visit), ...); }, Parts(node));
}

}  // namespace tavcc::sql
