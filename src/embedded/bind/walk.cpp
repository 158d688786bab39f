#include "embedded/bind/walk.h"

#include "embedded/bind/parts.h"

namespace tavcc::sql {
namespace {

using QueryVisitor = std::function<void(const BoundQuery&)>;

// Finds the expressions in a node: its own ones, and those of the conditions and clauses in it.
class ChildVisitor {
 public:
  ChildVisitor(const ExpressionVisitor& visit, const QueryVisitor& visit_query)
      : visit_(visit), visit_query_(visit_query) {}

  void operator()(const BoundExpression& expression) const { visit_(expression); }
  void operator()(const BoundQuery& query) const { visit_query_(query); }
  void operator()(const BoundCondition& condition) const {
    OnKind(condition, [this](const auto& node) { ForEachTree(node, *this); });
  }
  void operator()(const auto& clause) const { ForEachTree(clause, *this); }

 private:
  const ExpressionVisitor& visit_;
  const QueryVisitor& visit_query_;
};

template <class Node>
void ForEachInside(const Node& node, const ExpressionVisitor& visit) {
  const ExpressionVisitor on_expression = [&](const BoundExpression& inner) {
    ForEachExpression(inner, visit);
  };
  const QueryVisitor on_query = [&](const BoundQuery& query) { ForEachExpression(query, visit); };
  const ChildVisitor children(on_expression, on_query);
  if constexpr (HasParts<const Node>) {
    ForEachTree(node, children);
  } else {
    OnKind(node, [&](const auto& of_kind) { ForEachTree(of_kind, children); });
  }
}

}  // namespace

void ForEachChild(const BoundExpression& expression, const ExpressionVisitor& visit,
                  const QueryVisitor& visit_query) {
  const ChildVisitor children(visit, visit_query);
  OnKind(expression, [&](const auto& node) { ForEachTree(node, children); });
}

void ForEachChild(const BoundCondition& condition, const ExpressionVisitor& visit,
                  const QueryVisitor& visit_query) {
  ChildVisitor(visit, visit_query)(condition);
}

void ForEachExpression(const BoundExpression& expression, const ExpressionVisitor& visit) {
  visit(expression);
  ForEachInside(expression, visit);
}

void ForEachExpression(const BoundCondition& condition, const ExpressionVisitor& visit) {
  ForEachInside(condition, visit);
}

void ForEachExpression(const BoundQuery& query, const ExpressionVisitor& visit) {
  ForEachInside(query, visit);
}

void ForEachExpression(const BoundFrom& from, const ExpressionVisitor& visit) {
  ForEachInside(from, visit);
}

void ForEachConjunct(const BoundCondition* condition,
                     const std::function<void(const BoundCondition&)>& visit) {
  if (condition == nullptr) return;
  const BoundLogical* const all = AsConjunction(*condition);
  if (all == nullptr) return visit(*condition);
  for (const auto& operand : all->operands) ForEachConjunct(operand.get(), visit);
}

bool HasSource(const BoundFrom& from, const BoundSource* source) {
  bool found = false;
  ForEachSource(from, [&](const BoundSource& inner) { found = found || &inner == source; });
  return found;
}

}  // namespace tavcc::sql
