#include "embedded/rewrite/statement_pass.h"

namespace tavcc::sql {

void StatementPass::Run(BoundQuery& query) {
  OnQuery(query);
  if (query.select) Walk(*query.select);
  if (query.left) Run(*query.left);
  if (query.right) Run(*query.right);
  for (const auto& order : query.order_by) {
    if (order.expression) Walk(*order.expression);
  }
}

void StatementPass::Run(BoundInsert& insert) {
  for (const auto& row : insert.rows) {
    for (const auto& value : row) Walk(*value);
  }
  if (insert.query) Run(*insert.query);
}

void StatementPass::Run(BoundUpdate& update) {
  OnUpdate(update);
  WalkChange(update);
  for (const auto& assignment : update.assignments) Walk(*assignment.value);
}

void StatementPass::Run(BoundDelete& remove) {
  OnDelete(remove);
  WalkChange(remove);
}

void StatementPass::Run(BoundValues& values) {
  for (const auto& value : values.values) Walk(*value);
  if (values.condition) Walk(values.condition);
}

template <class Change>
void StatementPass::WalkChange(Change& change) {
  OnBlock(*change.from, change.where);
  if (change.top) Walk(*change.top.count);
  Walk(*change.from);
  if (change.where) Walk(change.where);
}

void StatementPass::Walk(BoundSelect& select) {
  if (select.from) OnBlock(*select.from, select.where);
  if (select.top) Walk(*select.top.count);
  for (const auto& item : select.items) Walk(*item.expression);
  if (select.from) Walk(*select.from);
  if (select.where) Walk(select.where);
  for (const auto& key : select.group_by) Walk(*key);
  if (select.having) Walk(select.having);
}

void StatementPass::Walk(BoundFrom& from) {
  if (from.source && from.source->query) Run(*from.source->query);
  if (from.left) Walk(*from.left);
  if (from.right) Walk(*from.right);
  if (from.on) Walk(from.on);
}

void StatementPass::Walk(BoundExpression& expression) {
  using Kind = BoundExpression::Kind;
  switch (expression.kind) {
    case Kind::kUnary:
      return Walk(*static_cast<BoundUnary&>(expression).operand);
    case Kind::kArithmetic:
      Walk(*static_cast<BoundArithmetic&>(expression).left);
      return Walk(*static_cast<BoundArithmetic&>(expression).right);
    case Kind::kConvert: {
      auto& convert = static_cast<BoundConvert&>(expression);
      Walk(*convert.operand);
      if (convert.style_value) Walk(*convert.style_value);
      return;
    }
    case Kind::kCall:
      for (const auto& argument : static_cast<BoundCall&>(expression).arguments) Walk(*argument);
      return;
    case Kind::kCase: {
      auto& chosen = static_cast<BoundCase&>(expression);
      for (auto& when : chosen.whens) {
        Walk(when.condition);
        Walk(*when.result);
      }
      if (chosen.otherwise) Walk(*chosen.otherwise);
      return;
    }
    case Kind::kSubquery:
      return Run(*static_cast<BoundSubquery&>(expression).query);
    case Kind::kAggregate: {
      auto& aggregate = static_cast<BoundAggregate&>(expression);
      if (aggregate.operand) Walk(*aggregate.operand);
      return;
    }
    case Kind::kLiteral:
    case Kind::kVariable:
    case Kind::kSessionValue:
    case Kind::kColumn:
      return;
  }
}

void StatementPass::Walk(BoundConditionPtr& condition) {
  WalkInside(*condition);
  OnCondition(condition);
}

void StatementPass::WalkInside(BoundCondition& condition) {
  using Kind = BoundCondition::Kind;
  switch (condition.kind) {
    case Kind::kComparison:
      Walk(*static_cast<BoundComparison&>(condition).left);
      return Walk(*static_cast<BoundComparison&>(condition).right);
    case Kind::kAnd:
    case Kind::kOr:
      for (auto& operand : static_cast<BoundLogical&>(condition).operands) Walk(operand);
      return;
    case Kind::kNot:
      return Walk(static_cast<BoundNot&>(condition).operand);
    case Kind::kIsNull:
      return Walk(*static_cast<BoundIsNull&>(condition).operand);
    case Kind::kInList: {
      auto& in = static_cast<BoundInList&>(condition);
      Walk(*in.operand);
      for (const auto& value : in.values) Walk(*value);
      return;
    }
    case Kind::kInQuery:
      Walk(*static_cast<BoundInQuery&>(condition).operand);
      return Run(*static_cast<BoundInQuery&>(condition).query);
    case Kind::kLike: {
      auto& like = static_cast<BoundLike&>(condition);
      Walk(*like.operand);
      Walk(*like.pattern);
      if (like.escape) Walk(*like.escape);
      return;
    }
    case Kind::kExists:
      return Run(*static_cast<BoundExists&>(condition).query);
    case Kind::kIndexFilter:
      return;
  }
}

}  // namespace tavcc::sql
