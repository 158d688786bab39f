// Binding of expressions: literals, columns, variables, operators, conversions, CASE, subqueries.
#include <algorithm>
#include <utility>

#include "embedded/bind/binder.h"
#include "embedded/catalog/names.h"
#include "embedded/types/literals.h"

namespace tavcc::sql {
namespace {

struct GlobalRule {
  std::string_view name;
  SessionValue value;
  SqlType type;
};

constexpr SqlType kIdentityType = DecimalType(38, 0);

constexpr GlobalRule kGlobals[] = {
    {"@@ROWCOUNT", SessionValue::kRowCount, kIntType},
    {"@@ERROR", SessionValue::kError, kIntType},
    {"@@IDENTITY", SessionValue::kIdentity, kIdentityType},
    {"@@FETCH_STATUS", SessionValue::kFetchStatus, kIntType},
    {"@@TRANCOUNT", SessionValue::kTransactionCount, kIntType},
    {"@@VERSION", SessionValue::kVersion, TextType(TypeKind::kNVarChar, 300)},
    {"@@SERVERNAME", SessionValue::kServerName, TextType(TypeKind::kNVarChar, 128)},
    {"@@SPID", SessionValue::kProcessId, Type(TypeKind::kSmallInt)},
    {"@@PROCID", SessionValue::kProcedureId, kIntType},
    {"@@NESTLEVEL", SessionValue::kNestLevel, kIntType},
};

// Whether the qualifiers of a column name mean this source: its alias alone, or the table's name
// with the schema that every table has.
bool Qualifies(const ObjectName& name, const BoundSource& source) {
  if (!EqualsIgnoringCase(name.parts[name.parts.size() - 2], source.alias)) return false;
  if (name.parts.size() < 3) return true;
  const std::string& schema = name.parts[name.parts.size() - 3];
  return schema.empty() || EqualsIgnoringCase(schema, "dbo");
}

// The value of an int constant: a literal, also with a sign. Null when it is none.
const int64_t* ConstantOf(const BoundExpression& expression, int64_t& value) {
  if (const auto* unary = As<BoundUnary>(expression)) {
    if (unary->op == UnaryExpression::Operator::kBitNot) return nullptr;
    if (ConstantOf(*unary->operand, value) == nullptr) return nullptr;
    if (unary->op == UnaryExpression::Operator::kMinus) value = -value;
    return &value;
  }
  const auto* literal = As<BoundLiteral>(expression);
  const bool is_int = literal != nullptr && literal->type.kind == TypeKind::kInt;
  if (!is_int || literal->value.IsNull()) return nullptr;
  value = literal->value.integer();
  return &value;
}

}  // namespace

BoundColumn::BoundColumn(const BoundSource& s, int c)
    : NodeOf(
          c == kRowNumber ? sql::Type(TypeKind::kBigInt) : s.columns[static_cast<size_t>(c)].type,
          c == kRowNumber || s.columns[static_cast<size_t>(c)].nullable),
      source(&s),
      column(c) {}

BoundSubquery::BoundSubquery(BoundQueryPtr q)
    : NodeOf(q->columns.at(0).type), query(std::move(q)) {}

std::string WrittenName(const ObjectName& name) {
  std::string out;
  for (const std::string& part : name.parts) {
    if (&part != &name.parts.front()) out += '.';
    out += part;
  }
  return out;
}

Binder::Binder(const Catalog& catalog, std::span<const VariableInfo> variables,
               std::span<const TypedValue> literals, BindResult& result)
    : catalog_(catalog), variables_(variables), literals_(literals), result_(result) {
  result_.dependences.resize(literals.size(), LiteralDependence::kKind);
  result_.type_dependents.resize(literals.size());
}

BoundExpressionPtr Binder::BindValue(const Expression& expression,
                                     const std::optional<SqlType>& type) {
  auto value = Bind(expression, Scope{});
  if (!type) return value;
  return ConvertImplicitly(ConvertLiteral(std::move(value), *type, kValueAlone), *type);
}

BoundExpressionPtr Binder::Bind(const Expression& expression, const Scope& scope) {
  if (++bound_ > kMostExpressions) Raise(errors::kTooComplex);
  switch (expression.kind) {
    case Expression::Kind::kLiteral:
      return BindLiteral(static_cast<const LiteralExpression&>(expression));
    case Expression::Kind::kColumn:
      return BindColumn(static_cast<const ColumnExpression&>(expression), scope);
    case Expression::Kind::kVariable:
      return BindVariable(static_cast<const VariableExpression&>(expression).name);
    case Expression::Kind::kGlobalVariable:
      return BindGlobal(static_cast<const GlobalVariableExpression&>(expression));
    case Expression::Kind::kUnary:
      return BindUnary(static_cast<const UnaryExpression&>(expression), scope);
    case Expression::Kind::kBinary:
      return BindBinary(static_cast<const BinaryExpression&>(expression), scope);
    case Expression::Kind::kFunction:
      return BindFunction(static_cast<const FunctionExpression&>(expression), scope);
    case Expression::Kind::kConvert:
      return BindConvert(static_cast<const ConvertExpression&>(expression), scope);
    case Expression::Kind::kCase:
      return BindCase(static_cast<const CaseExpression&>(expression), scope);
    case Expression::Kind::kScalarSubquery:
      break;
  }
  return BindScalarSubquery(*static_cast<const ScalarSubqueryExpression&>(expression).query, scope);
}

BoundExpressionPtr Binder::BindLiteral(const LiteralExpression& literal) {
  const bool parameterized =
      literal.slot >= 0 && static_cast<size_t>(literal.slot) < literals_.size();
  if (!parameterized) {
    return std::make_unique<BoundLiteral>(EvaluateLiteral(literal.form, literal.text), -1);
  }
  const auto slot = static_cast<size_t>(literal.slot);
  ++result_.type_dependents[slot];
  return std::make_unique<BoundLiteral>(literals_[slot], literal.slot);
}

BoundExpressionPtr Binder::BindColumn(const ColumnExpression& column, const Scope& scope) {
  const std::string& name = column.name.last();
  const bool qualified = column.name.parts.size() > 1;
  bool prefix_known = false;
  for (const Scope* at = &scope; at != nullptr; at = at->parent) {
    const BoundSource* found = nullptr;
    int index = -1;
    for (const BoundSource* source : at->sources) {
      if (qualified && !Qualifies(column.name, *source)) continue;
      prefix_known = true;
      const int here = IndexByName(source->columns, name);
      if (here < 0) continue;
      if (found != nullptr) Raise(errors::kAmbiguousColumnName, name);
      found = source;
      index = here;
    }
    if (found != nullptr) return std::make_unique<BoundColumn>(*found, index);
    if (qualified && prefix_known) break;
  }
  if (qualified && !prefix_known) Raise(errors::kUnboundIdentifier, WrittenName(column.name));
  Raise(errors::kInvalidColumnName, name);
}

int Binder::FindVariable(std::string_view name) const {
  const int index = IndexByName(variables_, name);
  if (index < 0) Raise(errors::kUndeclaredVariable, name);
  return index;
}

BoundExpressionPtr Binder::BindVariable(const std::string& name) {
  const int index = FindVariable(name);
  return std::make_unique<BoundVariable>(variables_[static_cast<size_t>(index)].type, index, name);
}

BoundExpressionPtr Binder::BindGlobal(const GlobalVariableExpression& global) {
  const GlobalRule* const rule = FindByName(kGlobals, global.name);
  if (rule == nullptr) Raise(errors::kUndeclaredVariable, global.name);
  return std::make_unique<BoundSessionValue>(rule->value, rule->type);
}

BoundExpressionPtr Binder::BindUnary(const UnaryExpression& unary, const Scope& scope) {
  auto operand = Bind(*unary.operand, scope);
  const SqlType type = ResolveUnary(unary.op, operand->type);
  return std::make_unique<BoundUnary>(unary.op, type, Convert(std::move(operand), type));
}

BoundExpressionPtr Binder::BindBinary(const BinaryExpression& binary, const Scope& scope) {
  auto left = Bind(*binary.left, scope);
  auto right = Bind(*binary.right, scope);
  int64_t left_value = 0, right_value = 0;
  const ArithmeticResult result =
      ResolveArithmetic(binary.op, left->type, right->type, ConstantOf(*left, left_value),
                        ConstantOf(*right, right_value));
  if (result.way == ArithmeticResult::Way::kDecimal) {
    NoteDependence(*left, LiteralDependence::kDigits);
    NoteDependence(*right, LiteralDependence::kDigits);
  }
  return std::make_unique<BoundArithmetic>(binary.op, result.way, result.type,
                                           Convert(std::move(left), result.left),
                                           Convert(std::move(right), result.right));
}

BoundExpressionPtr Binder::BindConvert(const ConvertExpression& convert, const Scope& scope) {
  auto operand = Bind(*convert.operand, scope);
  const SqlType type = ResolveTypeName(convert.type, TypeNameUse::kCast);
  CheckExplicit(operand->type, type);
  auto bound = std::make_unique<BoundConvert>(std::move(operand), type);
  bound->explicitly = true;
  if (!convert.style) return bound;
  auto style = Bind(*convert.style, scope);
  int64_t value = 0;
  if (ConstantOf(*style, value) != nullptr) {
    NoteDependence(*style, LiteralDependence::kValue);
    bound->style = static_cast<int>(value);
  } else {
    bound->style_value = Convert(std::move(style), kIntType);
  }
  return bound;
}

BoundExpressionPtr Binder::BindCase(const CaseExpression& expression, const Scope& scope) {
  std::vector<BoundCase::When> whens;
  for (const auto& when : expression.whens) {
    // CASE x WHEN v is CASE WHEN x = v, for each v anew.
    auto condition = when.condition
                         ? Bind(*when.condition, scope)
                         : Compare(ComparisonOperator::kEqual, Bind(*expression.operand, scope),
                                   Bind(*when.value, scope));
    whens.push_back({std::move(condition), Bind(*when.result, scope)});
  }
  auto otherwise = expression.otherwise ? Bind(*expression.otherwise, scope) : nullptr;
  return FinishCase(std::move(whens), std::move(otherwise));
}

BoundExpressionPtr Binder::FinishCase(std::vector<BoundCase::When> whens,
                                      BoundExpressionPtr otherwise) {
  SqlType type = otherwise ? otherwise->type : SqlType{};
  bool nullable = !otherwise || otherwise->nullable;
  for (const auto& when : whens) {
    type = CommonType(type, when.result->type);
    nullable = nullable || when.result->nullable;
  }
  if (type.kind == TypeKind::kNull) Raise(errors::kCaseOfNulls);
  auto bound = std::make_unique<BoundCase>(type);
  bound->nullable = nullable;
  for (auto& when : whens) {
    bound->whens.push_back({std::move(when.condition), Convert(std::move(when.result), type)});
  }
  if (otherwise) bound->otherwise = Convert(std::move(otherwise), type);
  return bound;
}

BoundExpressionPtr Binder::BindScalarSubquery(const Query& query, const Scope& scope) {
  if (aggregates_ != nullptr && aggregates_->inside) Raise(errors::kAggregateOfAggregateOrSubquery);
  auto bound = BindInner(query, &scope);
  if (bound->columns.size() != 1) Raise(errors::kSubqueryWithSeveralColumns);
  return std::make_unique<BoundSubquery>(std::move(bound));
}

}  // namespace tavcc::sql
