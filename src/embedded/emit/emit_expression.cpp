// Expressions as SQLite's text.
#include <sqlite3.h>

#include <algorithm>

#include "embedded/bind/binder.h"
#include "embedded/bind/walk.h"
#include "embedded/catalog/sqlite.h"
#include "embedded/emit/emitter_impl.h"
#include "embedded/emit/sqlite_functions.h"
#include "embedded/functions/functions.h"
#include "embedded/types/stored_form.h"

namespace tavcc::sql {
namespace {

std::string Number(int64_t value) {
  return std::to_string(value);
}

// The part of an arithmetic function's name that says what it works on.
std::string_view KindSuffix(const SqlType& type) {
  if (type.kind == TypeKind::kBit) return KindText(TypeKind::kTinyInt);
  return IsScaled(type.kind) ? "decimal" : KindText(type.kind);
}

std::string_view OperatorName(BinaryOperator op) {
  static constexpr std::string_view kNames[] = {"t_add_", "t_sub_", "t_mul_", "t_div_", "t_mod_"};
  return kNames[static_cast<size_t>(op)];
}

bool IsText(const BoundExpression& expression) {
  return sql::IsText(expression.type.kind);
}

bool IsStoredColumn(const BoundExpression& expression) {
  const auto* column = As<BoundColumn>(expression);
  return column != nullptr && column->source->table != nullptr;
}

}  // namespace

std::string Emitter::ValueOfKind(const BoundExpression& expression, bool certain) {
  switch (expression.kind) {
    case BoundExpression::Kind::kLiteral:
      return Literal(static_cast<const BoundLiteral&>(expression));
    case BoundExpression::Kind::kVariable:
      return Variable(static_cast<const BoundVariable&>(expression));
    case BoundExpression::Kind::kRowParameter:
      return ParameterFrom(Parameter::Source::kRow,
                           static_cast<const BoundRowParameter&>(expression).index);
    case BoundExpression::Kind::kSessionValue: {
      const auto which = static_cast<const BoundSessionValue&>(expression).which;
      return ParameterFrom(Parameter::Source::kSession, static_cast<int>(which));
    }
    case BoundExpression::Kind::kColumn:
      return Column(static_cast<const BoundColumn&>(expression));
    case BoundExpression::Kind::kUnary:
      return Unary(static_cast<const BoundUnary&>(expression));
    case BoundExpression::Kind::kArithmetic:
      return Arithmetic(static_cast<const BoundArithmetic&>(expression));
    case BoundExpression::Kind::kConvert:
      return Convert(static_cast<const BoundConvert&>(expression), certain);
    case BoundExpression::Kind::kCall:
      return Call(static_cast<const BoundCall&>(expression));
    case BoundExpression::Kind::kCase:
      return Case(static_cast<const BoundCase&>(expression));
    case BoundExpression::Kind::kSubquery:
      return Scalar(*static_cast<const BoundSubquery&>(expression).query);
    case BoundExpression::Kind::kAggregate: {
      const auto& aggregate = static_cast<const BoundAggregate&>(expression);
      return Aggregated(aggregate.aggregate, aggregate.operand.get(), aggregate.type,
                        aggregate.distinct);
    }
    case BoundExpression::Kind::kWindow:
      break;
  }
  return Windowed(static_cast<const BoundWindow&>(expression));
}

// The left operand of a comparison decides by which collation SQLite compares. Only a column of a
// table brings its own.
std::string Emitter::Collated(const BoundExpression& expression) {
  std::string text = Expression(expression);
  return IsText(expression) && !IsStoredColumn(expression) ? text + " COLLATE tsql" : text;
}

std::string Emitter::ParameterText(const Parameter& parameter) {
  const auto found = std::ranges::find(parameters_, parameter);
  const auto index = found - parameters_.begin();
  if (found == parameters_.end()) parameters_.push_back(parameter);
  return '?' + Number(index + 1);
}

std::string Emitter::ParameterFrom(Parameter::Source source, int index) {
  Parameter parameter;
  parameter.source = source;
  parameter.index = index;
  return ParameterText(parameter);
}

std::string Emitter::Literal(const BoundLiteral& literal) {
  if (literal.slot < 0) return QuoteValue(literal.value);
  return ParameterFrom(Parameter::Source::kLiteral, literal.slot);
}

std::string Emitter::Variable(const BoundVariable& variable) {
  if (live_variables_) return "s_variable(" + Number(variable.index) + ')';
  return ParameterFrom(Parameter::Source::kVariable, variable.index);
}

std::string SourceName(const BoundSource& source) {
  return 's' + Number(source.id);
}

std::string Emitter::Column(const BoundColumn& column) {
  const std::string source = SourceName(*column.source) + '.';
  if (column.column == BoundColumn::kRowNumber) return source + column.source->table->rowid;
  std::string text =
      column.source->table
          ? source +
                QuoteName(column.source->table->columns[static_cast<size_t>(column.column)].name)
          : source + 'c' + Number(column.column);
  if (carried_from_ == nullptr || !HasSource(*carried_from_, column.source)) return text;
  auto found = std::ranges::find(carried_, text);
  if (found == carried_.end()) found = carried_.insert(found, std::move(text));
  return "q.k" + Number(found - carried_.begin());
}

std::string Emitter::Unary(const BoundUnary& unary) {
  const std::string operand = Expression(*unary.operand);
  switch (unary.op) {
    case UnaryExpression::Operator::kPlus:
      return operand;
    case UnaryExpression::Operator::kBitNot:
      if (unary.type.kind == TypeKind::kBit) return "(1-" + operand + ')';
      if (unary.type.kind == TypeKind::kTinyInt) return "(255-" + operand + ')';
      return "(~" + operand + ')';
    case UnaryExpression::Operator::kMinus:
      break;
  }
  if (IsApproximate(unary.type.kind)) return "(-" + operand + ')';
  return Failing("t_neg_" + std::string(KindSuffix(unary.type)) + '(' + operand + ')');
}

std::string Emitter::Arithmetic(const BoundArithmetic& arithmetic) {
  using Way = ArithmeticResult::Way;
  if (arithmetic.way == Way::kText) return Concatenation(arithmetic);
  const std::string left = Expression(*arithmetic.left);
  const std::string right = Expression(*arithmetic.right);
  switch (arithmetic.way) {
    case Way::kInteger:
    case Way::kFloat:
      return Failing(std::string(OperatorName(arithmetic.op)) +
                     std::string(KindSuffix(arithmetic.type)) + '(' + left + ',' + right + ')');
    case Way::kDecimal:
      return Failing(std::string(OperatorName(arithmetic.op)) + "decimal(" + left + ',' + right +
                     ',' +
                     Number(DecimalShape(StoredScale(arithmetic.left->type),
                                         StoredScale(arithmetic.right->type), arithmetic.type)) +
                     ')');
    case Way::kDateTime: {
      const bool adds = arithmetic.op == BinaryOperator::kAdd;
      return Failing(std::string(adds ? "t_add_datetime(" : "t_sub_datetime(") + left + ',' +
                     right + ',' + Number(TypeCode(arithmetic.type)) + ')');
    }
    default:
      break;
  }
  if (arithmetic.op == BinaryOperator::kBitXor) return "t_xor(" + left + ',' + right + ')';
  return '(' + left + (arithmetic.op == BinaryOperator::kBitAnd ? " & " : " | ") + right + ')';
}

std::string Emitter::Concatenation(const BoundArithmetic& arithmetic) {
  const int left = arithmetic.left->type.length;
  const int right = arithmetic.right->type.length;
  const int most = IsNationalText(arithmetic.type.kind) ? 4000 : 8000;
  const std::string a = Expression(*arithmetic.left);
  const std::string b = Expression(*arithmetic.right);
  if (left != SqlType::kMax && right != SqlType::kMax && left + right <= most) {
    return '(' + a + " || " + b + ')';
  }
  const int length = arithmetic.type.length == SqlType::kMax ? -1 : most;
  return "t_concat(" + a + ',' + b + ',' + Number(length) + ')';
}

// A literal or a variable is converted before the statement runs, where that cannot fail or would
// fail in any case.
std::string Emitter::ConvertedParameter(const BoundConvert& convert) {
  Parameter parameter;
  if (const auto* literal = As<BoundLiteral>(*convert.operand)) {
    parameter.source = Parameter::Source::kLiteral;
    parameter.index = literal->slot;
  } else if (const auto* row = As<BoundRowParameter>(*convert.operand)) {
    parameter.source = Parameter::Source::kRow;
    parameter.index = row->index;
  } else if (const auto* variable = As<BoundVariable>(*convert.operand)) {
    parameter.source = Parameter::Source::kVariable;
    parameter.index = live_variables_ ? -1 : variable->index;
  }
  if (parameter.index < 0) return {};
  parameter.convert = true;
  parameter.from = convert.operand->type;
  parameter.to = convert.type;
  parameter.mode = convert.mode;
  parameter.table = convert.table;
  parameter.column = convert.column;
  return ParameterText(parameter);
}

std::string Emitter::Convert(const BoundConvert& convert, bool certain) {
  const BoundExpression& operand = *convert.operand;
  const bool simple = (operand.kind == BoundExpression::Kind::kLiteral ||
                       operand.kind == BoundExpression::Kind::kVariable ||
                       operand.kind == BoundExpression::Kind::kRowParameter) &&
                      convert.style == kNoStyle && !convert.style_value;
  const SqlType& from = operand.type;
  if (simple && (certain || NeverFails(from, convert.type, convert.mode))) {
    std::string place = ConvertedParameter(convert);
    if (!place.empty()) return place;
  }
  const std::string text = Expression(operand);
  if (IsSameStored(from, convert.type)) return text;
  if (convert.style_value) {
    return Failing("t_style(" + text + ',' + Number(ConversionCode(from, convert.type)) + ',' +
                   Expression(*convert.style_value) + ')');
  }
  const int64_t code = ConversionCode(from, convert.type, convert.mode, convert.style);
  if (convert.mode == ConvertMode::kAssign && sql::IsText(convert.type.kind) &&
      !convert.table.empty()) {
    return Failing("t_conv(" + text + ',' + Number(code) + ',' + QuoteText(convert.table) + ',' +
                   QuoteText(convert.column) + ')');
  }
  return Failing("t_conv(" + text + ',' + Number(code) + ')');
}

std::string Emitter::Call(const BoundCall& call) {
  const SqliteFunction& function = SqliteFunctionOf(call.rule->function);
  if (function.form == FunctionForm::kNumeric) return NumericCall(call);
  if (function.form == FunctionForm::kDataLength) return DataLength(call);
  std::string out(function.name);
  out += '(';
  if (call.date_part >= 0) out += Number(call.date_part) + ',';
  out += Listed(call.arguments, [&](const auto& argument) { return Expression(*argument); });
  if (function.form == FunctionForm::kDateAdd) out += ',' + Number(TypeCode(call.type));
  return Failing(out + ')');
}

// ABS, SIGN, ROUND, CEILING, FLOOR, POWER: one function for each family of numbers.
std::string Emitter::NumericCall(const BoundCall& call) {
  const Function function = call.rule->function;
  const std::string name(SqliteFunctionOf(function).name);
  const SqlType& type = call.arguments[0]->type;
  std::string arguments =
      Listed(call.arguments, [&](const auto& argument) { return Expression(*argument); });
  if (function == Function::kRound && call.arguments.size() == 2) arguments += ",0";
  if (IsApproximate(type.kind)) {
    return Failing((function == Function::kAbs ? "abs" : name + "_float") + '(' + arguments + ')');
  }
  if (IsScaled(type.kind)) {
    if (function == Function::kAbs) return Failing(name + "_decimal(" + arguments + ')');
    const int64_t shape = DecimalShape(StoredScale(type), 0, call.type);
    return Failing(name + "_decimal(" + arguments + ',' + Number(shape) + ')');
  }
  if (function == Function::kCeiling || function == Function::kFloor) return arguments;
  if (function == Function::kAbs) {
    return Failing(name + '_' + std::string(KindSuffix(type)) + '(' + arguments + ')');
  }
  if (function == Function::kSign) return Failing(name + "_int(" + arguments + ')');
  const bool power = function == Function::kPower;
  const SqlType from = Type(power ? TypeKind::kFloat : TypeKind::kBigInt);
  return Failing("t_conv(" + name + (power ? "_float(1.0*" : "_int(") + arguments + ")," +
                 Number(ConversionCode(from, type)) + ')');
}

std::string Emitter::DataLength(const BoundCall& call) {
  const SqlType& type = call.arguments[0]->type;
  const std::string argument = Expression(*call.arguments[0]);
  if (sql::IsText(type.kind) || IsBinary(type.kind)) {
    return "t_datalength(" + argument + (IsNationalText(type.kind) ? ",2)" : ",1)");
  }
  int size = 8;
  if (type.kind == TypeKind::kDecimal) {
    size = type.precision <= 9 ? 5 : type.precision <= 19 ? 9 : type.precision <= 28 ? 13 : 17;
  } else if (type.kind == TypeKind::kInt || type.kind == TypeKind::kReal ||
             type.kind == TypeKind::kSmallMoney || type.kind == TypeKind::kSmallDateTime) {
    size = 4;
  } else if (type.kind == TypeKind::kBit || type.kind == TypeKind::kTinyInt) {
    size = 1;
  } else if (type.kind == TypeKind::kSmallInt) {
    size = 2;
  } else if (type.kind == TypeKind::kDate) {
    size = 3;
  }
  return "(CASE WHEN " + argument + " IS NOT NULL THEN " + Number(size) + " END)";
}

std::string Emitter::Case(const BoundCase& expression) {
  const auto result = [&](const BoundExpression& value) {
    return InOwnStep([&] { return Expression(value); });
  };
  std::string out = "CASE";
  for (const auto& when : expression.whens) {
    out += " WHEN " + Condition(*when.condition);
    out += " THEN " + result(*when.result);
  }
  if (expression.otherwise) out += " ELSE " + result(*expression.otherwise);
  return out + " END";
}

std::string Emitter::Aggregated(Aggregate aggregate, const BoundExpression* value,
                                const SqlType& result, bool distinct, bool over) {
  if (value == nullptr) return "count(*)";
  const SqlType& type = value->type;
  const std::string operand =
      (distinct ? "DISTINCT " : "") + InOwnStep([&] { return Collated(*value); });
  const bool scaled = IsScaled(type.kind);
  switch (aggregate) {
    case Aggregate::kCount:
      return "count(" + operand + ')';
    case Aggregate::kMin:
    case Aggregate::kMax: {
      const std::string name = aggregate == Aggregate::kMin ? "min" : "max";
      const bool by_function = scaled && !AlwaysStoredAsInteger(type);
      const std::string function = "t_" + name + (over ? "_decimal_over" : "_decimal");
      return (by_function ? function : name) + '(' + operand + ')';
    }
    case Aggregate::kSum:
      if (IsApproximate(type.kind)) return "sum(" + operand + ')';
      if (IsMoney(type.kind)) return Failing("t_sum_money(" + operand + ')');
      return Failing("t_sum_" + std::string(KindSuffix(type)) + '(' + operand + ')');
    case Aggregate::kAvg:
      break;
  }
  if (IsApproximate(type.kind)) return "avg(" + operand + ')';
  if (!scaled) return Failing("t_avg_" + std::string(KindSuffix(type)) + '(' + operand + ')');
  const std::string shape = Number(DecimalShape(StoredScale(type), 0, result));
  if (!distinct) return Failing("t_avg_decimal(" + operand + ',' + shape + ')');
  return Failing("t_div_decimal(t_sum_decimal(" + operand + "),count(" + operand + ")," + shape +
                 ')');
}

}  // namespace tavcc::sql
