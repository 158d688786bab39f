// Binding of function calls and aggregates.
#include <algorithm>
#include <utility>

#include "embedded/bind/binder.h"
#include "embedded/bind/function_rules.h"
#include "embedded/catalog/names.h"
#include "embedded/functions/functions.h"

namespace tavcc::sql {
namespace {

struct SessionFunction {
  std::string_view name;
  SessionValue value;
  SqlType type;
};
constexpr SessionFunction kSessionFunctions[] = {
    {"SCOPE_IDENTITY", SessionValue::kScopeIdentity, DecimalType(38, 0)},
    {"DB_NAME", SessionValue::kDatabaseName, TextType(TypeKind::kNVarChar, 128)},
    {"USER_NAME", SessionValue::kUserName, TextType(TypeKind::kNVarChar, 128)},
    {"SUSER_SNAME", SessionValue::kUserName, TextType(TypeKind::kNVarChar, 128)},
    {"HOST_NAME", SessionValue::kServerName, TextType(TypeKind::kNVarChar, 128)},
};

// YEAR(d), MONTH(d) and DAY(d) are DATEPART with a fixed part.
struct PartFunction {
  std::string_view name;
  DatePart part;
};
constexpr PartFunction kPartFunctions[] = {
    {"YEAR", DatePart::kYear}, {"MONTH", DatePart::kMonth}, {"DAY", DatePart::kDay}};

// `parts`: arguments that are words, counted in messages only.
void CheckArgumentCount(const FunctionExpression& function, size_t least, size_t most,
                        size_t parts = 0) {
  const size_t count = function.arguments.size();
  if (count >= least && count <= most) return;
  if (least == most)
    Raise(errors::kWrongArgumentCount, FoldName(function.name.last()),
          static_cast<int64_t>(least + parts));
  Raise(errors::kArgumentCountOutOfRange, FoldName(function.name.last()),
        static_cast<int64_t>(least), static_cast<int64_t>(most));
}

// Text of the same kind without padding, as long as the source may be.
SqlType VaryingText(const SqlType& type, int least) {
  const bool national = IsNationalText(type.kind);
  const TypeKind kind = national ? TypeKind::kNVarChar : TypeKind::kVarChar;
  if (type.length == SqlType::kMax) return TextType(kind, SqlType::kMax);
  return TextType(kind, std::max(IsText(type.kind) ? type.length : 0, least));
}

SqlType NumberResult(const SqlType& type) {
  if (IsInteger(type.kind) && type.kind < TypeKind::kInt) return kIntType;
  if (type.kind == TypeKind::kReal) return Type(TypeKind::kFloat);
  if (type.kind == TypeKind::kSmallMoney) return Type(TypeKind::kMoney);
  return type;
}

SqlType ResultType(const FunctionRule& rule, const std::vector<BoundExpressionPtr>& arguments) {
  const SqlType first = arguments.empty() ? SqlType{} : arguments[0]->type;
  switch (rule.result) {
    case FunctionResult::kInt:
      return kIntType;
    case FunctionResult::kFloat:
      return Type(TypeKind::kFloat);
    case FunctionResult::kDateTime:
      return Type(TypeKind::kDateTime);
    case FunctionResult::kFirst:
      return first;
    case FunctionResult::kFirstText:
      return VaryingText(first, 1);
    case FunctionResult::kLongText:
      return VaryingText(first, IsNationalText(first.kind) ? 4000 : 8000);
    case FunctionResult::kChar:
      return TextType(TypeKind::kVarChar, 1);
    case FunctionResult::kNChar:
      return TextType(TypeKind::kNVarChar, 1);
    case FunctionResult::kNationalName:
      return TextType(TypeKind::kNVarChar, 128);
    case FunctionResult::kShortText:
      return TextType(TypeKind::kVarChar, 30);
    case FunctionResult::kFirstNumber:
      return NumberResult(first);
    case FunctionResult::kWholeNumber:
      return first.kind == TypeKind::kDecimal ? DecimalType(first.precision, 0)
                                              : NumberResult(first);
    case FunctionResult::kDateOfThird:
      return arguments[1]->type;
  }
  return first;
}

}  // namespace

BoundExpressionPtr Binder::BindFunction(const FunctionExpression& function, const Scope& scope) {
  const std::string& name = function.name.last();
  if (function.name.parts.size() > 1) {
    Raise(errors::kUnknownUserFunction, function.name.parts[0], WrittenName(function.name));
  }
  if (function.over) return BindWindow(function, scope);
  if (FindWindowFunction(name) != nullptr) Raise(errors::kOverRequired, name);
  if (const AggregateName* aggregate = FindAggregate(name)) {
    return BindAggregate(function, aggregate->aggregate, scope);
  }
  if (function.star || function.distinct) Raise(errors::kSyntaxNear, "*");
  if (const auto* session = FindByName(kSessionFunctions, name)) {
    CheckArgumentCount(function, 0, 0);
    return std::make_unique<BoundSessionValue>(session->value, session->type);
  }
  if (EqualsIgnoringCase(name, "ISNULL")) return BindIsNull(function, scope);
  if (EqualsIgnoringCase(name, "COALESCE")) return BindCoalesce(function, scope);
  if (EqualsIgnoringCase(name, "NULLIF")) return BindNullIf(function, scope);
  if (EqualsIgnoringCase(name, "IIF")) RaiseUnsupported("IIF");
  if (const auto* part = FindByName(kPartFunctions, name)) {
    CheckArgumentCount(function, 1, 1);
    const FunctionRule& rule = *FindFunction("DATEPART");
    auto call = std::make_unique<BoundCall>(rule, kIntType);
    call->date_part = static_cast<int>(part->part);
    call->arguments.push_back(BindArgument('d', *function.arguments[0], 0, rule, scope));
    return call;
  }
  const FunctionRule* rule = FindFunction(name);
  if (rule == nullptr) Raise(errors::kUnknownFunction, name, "built-in function name");
  return BindCall(function, *rule, scope);
}

BoundExpressionPtr Binder::BindAggregate(const FunctionExpression& function, Aggregate aggregate,
                                         const Scope& scope) {
  if (aggregates_ == nullptr) Raise(errors::kSyntaxNear, function.name.last());
  if (aggregates_->inside) Raise(errors::kAggregateOfAggregateOrSubquery);
  if (aggregates_->refusal) Raise(*aggregates_->refusal);
  aggregates_->found = true;
  if (function.star) {
    if (aggregate != Aggregate::kCount) Raise(errors::kSyntaxNear, "*");
    return std::make_unique<BoundAggregate>(aggregate, kIntType);
  }
  CheckArgumentCount(function, 1, 1);
  aggregates_->inside = true;
  auto operand = Bind(*function.arguments[0], scope);
  aggregates_->inside = false;
  auto bound =
      std::make_unique<BoundAggregate>(aggregate, ResolveAggregate(aggregate, operand->type));
  bound->distinct = function.distinct;
  bound->operand = AggregateOperand(aggregate, std::move(operand), bound->type);
  return bound;
}

// The server computes SUM and AVG of the small whole numbers as int, of real as float.
BoundExpressionPtr Binder::AggregateOperand(Aggregate aggregate, BoundExpressionPtr operand,
                                            const SqlType& type) {
  const bool adds = aggregate == Aggregate::kSum || aggregate == Aggregate::kAvg;
  return adds && !IsScaled(type.kind) ? Convert(std::move(operand), type) : std::move(operand);
}

// ISNULL has the type of its first argument; the second is converted to it.
BoundExpressionPtr Binder::BindIsNull(const FunctionExpression& function, const Scope& scope) {
  CheckArgumentCount(function, 2, 2);
  static constexpr FunctionRule kRule{Function::kIsNull, "ISNULL", "aa", FunctionResult::kFirst};
  auto first = Bind(*function.arguments[0], scope);
  auto second = Bind(*function.arguments[1], scope);
  const SqlType type = first->type.kind == TypeKind::kNull ? second->type : first->type;
  auto call = std::make_unique<BoundCall>(kRule, type);
  call->nullable = first->nullable && second->nullable;
  call->arguments.push_back(Convert(std::move(first), type));
  call->arguments.push_back(ConvertImplicitly(std::move(second), type));
  return call;
}

// COALESCE(a, b) is CASE WHEN a IS NOT NULL THEN a ELSE b END.
BoundExpressionPtr Binder::BindCoalesce(const FunctionExpression& function, const Scope& scope) {
  CheckArgumentCount(function, 2, 1000);
  std::vector<BoundCase::When> whens;
  for (size_t i = 0; i + 1 < function.arguments.size(); ++i) {
    auto condition = std::make_unique<BoundIsNull>();
    condition->operand = Bind(*function.arguments[i], scope);
    condition->negated = true;
    whens.push_back({std::move(condition), Bind(*function.arguments[i], scope)});
  }
  auto otherwise = Bind(*function.arguments.back(), scope);
  const auto is_null = [](const BoundExpression& value) {
    return value.type.kind == TypeKind::kNull;
  };
  if (is_null(*otherwise) &&
      std::ranges::all_of(whens, [&](const auto& when) { return is_null(*when.result); })) {
    Raise(errors::kCoalesceOfNulls);
  }
  const bool nullable = otherwise->nullable;
  auto bound = FinishCase(std::move(whens), std::move(otherwise));
  bound->nullable = nullable;
  return bound;
}

// NULLIF(a, b) is CASE WHEN a = b THEN NULL ELSE a END.
BoundExpressionPtr Binder::BindNullIf(const FunctionExpression& function, const Scope& scope) {
  CheckArgumentCount(function, 2, 2);
  auto first = Bind(*function.arguments[0], scope);
  if (first->type.kind == TypeKind::kNull) Raise(errors::kNullIfOfNull);
  std::vector<BoundCase::When> whens;
  whens.push_back(
      {Compare(ComparisonOperator::kEqual, std::move(first), Bind(*function.arguments[1], scope)),
       std::make_unique<BoundLiteral>(TypedValue{}, -1)});
  return FinishCase(std::move(whens), Bind(*function.arguments[0], scope));
}

BoundExpressionPtr Binder::BindArgument(char letter, const Expression& argument, size_t position,
                                        const FunctionRule& rule, const Scope& scope) {
  auto value = Bind(argument, scope);
  const SqlType from = value->type;
  const auto refuse_if = [&](bool wrong) {
    if (!wrong) return;
    Raise(errors::kInvalidArgumentType, KindText(from.kind), static_cast<int64_t>(position) + 1,
          FoldName(rule.name));
  };
  switch (letter) {
    case 'c':
      refuse_if(!IsText(from.kind) && from.kind != TypeKind::kNull);
      [[fallthrough]];
    case 't':
      if (from.kind == TypeKind::kNull)
        return Convert(std::move(value), TextType(TypeKind::kVarChar, 1));
      refuse_if(IsBinary(from.kind));
      return ConvertToText(std::move(value));
    case 'i':
      return ConvertImplicitly(std::move(value), kIntType);
    case 'f':
      return ConvertImplicitly(std::move(value), Type(TypeKind::kFloat));
    case 'd':
      return IsDate(from.kind) ? std::move(value)
                               : ConvertImplicitly(std::move(value), Type(TypeKind::kDateTime));
    case 'n':
      refuse_if(IsDate(from.kind) || IsBinary(from.kind));
      if (IsNumeric(from.kind)) return Convert(std::move(value), NumberResult(from));
      return ConvertImplicitly(std::move(value),
                               from.kind == TypeKind::kNull ? kIntType : Type(TypeKind::kFloat));
    default:
      return value;
  }
}

namespace {

// A date has no hours; only DATEDIFF takes them to be 0.
void CheckDatePart(const FunctionRule& rule, const std::vector<BoundExpressionPtr>& arguments,
                   int date_part) {
  if (date_part >= static_cast<int>(DatePart::kHour) && rule.name != "DATEDIFF" &&
      arguments.back()->type.kind == TypeKind::kDate) {
    Raise(errors::kDatePartNotSupported, DatePartWord(static_cast<DatePart>(date_part)),
          FoldName(rule.name), "date");
  }
}

}  // namespace

BoundExpressionPtr Binder::BindCall(const FunctionExpression& function, const FunctionRule& rule,
                                    const Scope& scope) {
  std::string_view letters = rule.arguments;
  int date_part = -1;
  if (letters.starts_with('p')) {
    letters.remove_prefix(1);
    const auto part = ParseDatePart(function.date_part);
    if (!part) Raise(errors::kUnknownOption, function.date_part, FoldName(rule.name));
    date_part = static_cast<int>(*part);
  }
  const size_t least = std::min(letters.find('|'), letters.size());
  std::string all(letters);
  std::erase(all, '|');
  CheckArgumentCount(function, least, all.size(), date_part < 0 ? 0 : 1);
  std::vector<BoundExpressionPtr> arguments;
  bool nullable = !rule.arguments.empty();
  for (size_t i = 0; i < function.arguments.size(); ++i) {
    arguments.push_back(BindArgument(all[i], *function.arguments[i], i, rule, scope));
  }
  CheckDatePart(rule, arguments, date_part);
  auto call = std::make_unique<BoundCall>(rule, ResultType(rule, arguments));
  call->nullable = nullable;
  call->arguments = std::move(arguments);
  call->date_part = date_part;
  return call;
}

}  // namespace tavcc::sql
