#include "embedded/rewrite/copy.h"

namespace tavcc::sql {
namespace {

template <class Bound, class Tree>
const Bound& As(const Tree& tree) {
  return static_cast<const Bound&>(tree);
}

}  // namespace

const BoundSource* TreeCopy::Now(const BoundSource* source) const {
  const auto copy = copies_.find(source);
  return copy == copies_.end() ? source : copy->second;
}

BoundExpressionPtr TreeCopy::CopyColumn(const BoundColumn& column) {
  if (const auto shown = shown_.find(column.source); shown != shown_.end()) {
    return Copy(*shown->second->items[static_cast<size_t>(column.column)].expression);
  }
  return std::make_unique<BoundColumn>(*Now(column.source), column.column);
}

BoundExpressionPtr TreeCopy::CopyConvert(const BoundConvert& convert) {
  auto copy = std::make_unique<BoundConvert>(Copy(convert.operand), convert.type);
  copy->mode = convert.mode;
  copy->style = convert.style;
  copy->style_value = Copy(convert.style_value);
  copy->table = convert.table;
  copy->column = convert.column;
  copy->explicitly = convert.explicitly;
  return copy;
}

BoundExpressionPtr TreeCopy::CopyCall(const BoundCall& call) {
  auto copy = std::make_unique<BoundCall>(*call.rule, call.type);
  copy->arguments = Copy(call.arguments);
  copy->date_part = call.date_part;
  return copy;
}

BoundExpressionPtr TreeCopy::CopyCase(const BoundCase& chosen) {
  auto copy = std::make_unique<BoundCase>(chosen.type);
  for (const auto& when : chosen.whens) {
    copy->whens.push_back({Copy(when.condition), Copy(when.result)});
  }
  copy->otherwise = Copy(chosen.otherwise);
  return copy;
}

BoundExpressionPtr TreeCopy::CopyAggregate(const BoundAggregate& aggregate) {
  auto copy = std::make_unique<BoundAggregate>(aggregate.aggregate, aggregate.type);
  copy->distinct = aggregate.distinct;
  copy->operand = Copy(aggregate.operand);
  return copy;
}

BoundExpressionPtr TreeCopy::Copy(const BoundExpression& expression) {
  auto copy = CopyKind(expression);
  copy->type = expression.type;
  copy->nullable = expression.nullable;
  return copy;
}

BoundExpressionPtr TreeCopy::CopyKind(const BoundExpression& expression) {
  using Kind = BoundExpression::Kind;
  switch (expression.kind) {
    case Kind::kLiteral: {
      const auto& literal = As<BoundLiteral>(expression);
      return std::make_unique<BoundLiteral>(TypedValue{literal.type, literal.value}, literal.slot);
    }
    case Kind::kVariable: {
      const auto& variable = As<BoundVariable>(expression);
      return std::make_unique<BoundVariable>(variable.type, variable.index, variable.name);
    }
    case Kind::kSessionValue:
      return std::make_unique<BoundSessionValue>(As<BoundSessionValue>(expression).which,
                                                 expression.type);
    case Kind::kColumn:
      return CopyColumn(As<BoundColumn>(expression));
    case Kind::kUnary: {
      const auto& unary = As<BoundUnary>(expression);
      return std::make_unique<BoundUnary>(unary.op, unary.type, Copy(unary.operand));
    }
    case Kind::kArithmetic: {
      const auto& arithmetic = As<BoundArithmetic>(expression);
      return std::make_unique<BoundArithmetic>(arithmetic.op, arithmetic.way, arithmetic.type,
                                               Copy(arithmetic.left), Copy(arithmetic.right));
    }
    case Kind::kConvert:
      return CopyConvert(As<BoundConvert>(expression));
    case Kind::kCall:
      return CopyCall(As<BoundCall>(expression));
    case Kind::kCase:
      return CopyCase(As<BoundCase>(expression));
    case Kind::kSubquery:
      return std::make_unique<BoundSubquery>(Copy(As<BoundSubquery>(expression).query));
    case Kind::kAggregate:
      break;
  }
  return CopyAggregate(As<BoundAggregate>(expression));
}

BoundConditionPtr TreeCopy::CopyIn(const BoundCondition& condition) {
  if (condition.kind == BoundCondition::Kind::kInList) {
    const auto& in = As<BoundInList>(condition);
    auto copy = std::make_unique<BoundInList>();
    copy->operand = Copy(in.operand);
    copy->values = Copy(in.values);
    copy->negated = in.negated;
    return copy;
  }
  const auto& in = As<BoundInQuery>(condition);
  auto copy = std::make_unique<BoundInQuery>();
  copy->operand = Copy(in.operand);
  copy->query = Copy(in.query);
  copy->negated = in.negated;
  return copy;
}

BoundConditionPtr TreeCopy::Copy(const BoundCondition& condition) {
  using Kind = BoundCondition::Kind;
  switch (condition.kind) {
    case Kind::kComparison: {
      const auto& comparison = As<BoundComparison>(condition);
      auto copy = std::make_unique<BoundComparison>();
      copy->op = comparison.op;
      copy->left = Copy(comparison.left);
      copy->right = Copy(comparison.right);
      return copy;
    }
    case Kind::kAnd:
    case Kind::kOr: {
      auto copy = std::make_unique<BoundLogical>(condition.kind);
      copy->operands = Copy(As<BoundLogical>(condition).operands);
      return copy;
    }
    case Kind::kNot: {
      auto copy = std::make_unique<BoundNot>();
      copy->operand = Copy(As<BoundNot>(condition).operand);
      return copy;
    }
    case Kind::kIsNull: {
      auto copy = std::make_unique<BoundIsNull>();
      copy->operand = Copy(As<BoundIsNull>(condition).operand);
      copy->negated = As<BoundIsNull>(condition).negated;
      return copy;
    }
    case Kind::kInList:
    case Kind::kInQuery:
      return CopyIn(condition);
    case Kind::kLike: {
      const auto& like = As<BoundLike>(condition);
      auto copy = std::make_unique<BoundLike>();
      copy->operand = Copy(like.operand);
      copy->pattern = Copy(like.pattern);
      copy->escape = Copy(like.escape);
      copy->negated = like.negated;
      return copy;
    }
    case Kind::kExists: {
      auto copy = std::make_unique<BoundExists>();
      copy->query = Copy(As<BoundExists>(condition).query);
      return copy;
    }
    case Kind::kIndexFilter:
      break;
  }
  const auto& filter = As<BoundIndexFilter>(condition);
  return std::make_unique<BoundIndexFilter>(*Now(filter.source), *filter.key);
}

std::unique_ptr<BoundSource> TreeCopy::Copy(const BoundSource& source) {
  auto copy = std::make_unique<BoundSource>();
  copy->id = next_source_++;
  copy->alias = source.alias;
  copy->is_view = source.is_view;
  copy->correlated = source.correlated;
  copy->table = source.table;
  copy->query = Copy(source.query);
  copy->columns = source.columns;
  copies_[&source] = copy.get();
  return copy;
}

BoundFromPtr TreeCopy::Copy(const BoundFrom& from) {
  auto copy = std::make_unique<BoundFrom>();
  copy->join = from.join;
  copy->source = Copy(from.source);
  copy->left = Copy(from.left);
  copy->right = Copy(from.right);
  copy->on = Copy(from.on);
  return copy;
}

// FROM first: what stands beside it speaks of its sources.
std::unique_ptr<BoundSelect> TreeCopy::Copy(const BoundSelect& select) {
  auto copy = std::make_unique<BoundSelect>();
  copy->from = Copy(select.from);
  copy->distinct = select.distinct;
  copy->top = {Copy(select.top.count), select.top.percent, select.top.with_ties};
  for (const BoundItem& item : select.items) {
    copy->items.push_back({Copy(item.expression), item.name, item.variable});
  }
  copy->where = Copy(select.where);
  copy->group_by = Copy(select.group_by);
  copy->having = Copy(select.having);
  copy->grouped = select.grouped;
  return copy;
}

BoundQueryPtr TreeCopy::Copy(const BoundQuery& query) {
  auto copy = std::make_unique<BoundQuery>();
  copy->select = Copy(query.select);
  copy->left = Copy(query.left);
  copy->right = Copy(query.right);
  copy->set_operator = query.set_operator;
  for (const BoundOrder& order : query.order_by) {
    copy->order_by.push_back({order.item, Copy(order.expression), order.type, order.descending});
  }
  copy->columns = query.columns;
  copy->single_row = query.single_row;
  return copy;
}

}  // namespace tavcc::sql
