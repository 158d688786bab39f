// Names, values and conditions.
#include "embedded/syntax/print_impl.h"

namespace tavcc::sql {

void Printer::Quoted(std::string_view prefix, std::string_view text) {
  Gap();
  out_ += prefix;
  out_ += '\'';
  for (const char c : text) out_.append(c == '\'' ? 2 : 1, c);
  out_ += '\'';
}

void Printer::Add(const ObjectName& name) {
  Gap();
  for (size_t i = 0; i < name.parts.size(); ++i) out_ += (i > 0 ? "." : "") + name.parts[i];
}

void Printer::Add(const std::vector<std::string>& names) {
  Open("");
  for (const std::string& name : names) Word(name);
  Close();
}

void Printer::Add(const TypeName& type) {
  Word(type.name);
  for (size_t i = 0; i < type.arguments.size(); ++i) {
    const int argument = type.arguments[i];
    out_ += i == 0 ? "(" : ",";
    out_ += argument == SqlType::kMax ? "max" : std::to_string(argument);
  }
  if (!type.arguments.empty()) out_ += ')';
}

void Printer::AddLiteral(const LiteralExpression& literal) {
  using Form = LiteralExpression::Form;
  const std::string slot = literal.slot < 0 ? "" : "#" + std::to_string(literal.slot);
  if (slots_ == PrintSlots::kInsteadOfValues && !slot.empty()) {
    Word(slot);
    return;
  }
  switch (literal.form) {
    case Form::kNull:
      Word("null");
      break;
    case Form::kText:
      Quoted("", literal.text);
      break;
    case Form::kNationalText:
      Quoted("N", literal.text);
      break;
    case Form::kBinary:
      Word("0x" + literal.text);
      break;
    default:
      Word(literal.text);
  }
  if (slots_ == PrintSlots::kYes) out_ += slot;
}

void Printer::AddCall(const FunctionExpression& call) {
  Open("call");
  Add(call.name);
  if (!call.date_part.empty()) Word(":" + call.date_part);
  if (call.distinct) Word("distinct");
  if (call.star) Word("*");
  AddAll(call.arguments);
  if (call.over) AddOver(*call.over);
  Close();
}

void Printer::AddCase(const CaseExpression& expression) {
  Open("case");
  if (expression.operand) Add(expression.operand.get());
  for (const CaseExpression::When& when : expression.whens) {
    Open("when");
    if (when.value) Add(when.value.get());
    if (when.condition) Add(when.condition.get());
    Add(when.result.get());
    Close();
  }
  if (expression.otherwise) {
    Open("else");
    Add(expression.otherwise.get());
    Close();
  }
  Close();
}

// Null stands for the word DEFAULT.
void Printer::Add(const Expression* expression) {
  if (expression == nullptr) {
    Word("default");
    return;
  }
  switch (expression->kind) {
    case Expression::Kind::kLiteral:
      AddLiteral(To<LiteralExpression>(*expression));
      return;
    case Expression::Kind::kColumn:
      Add(To<ColumnExpression>(*expression).name);
      return;
    case Expression::Kind::kVariable:
      Word(To<VariableExpression>(*expression).name);
      return;
    case Expression::Kind::kGlobalVariable:
      Word(To<GlobalVariableExpression>(*expression).name);
      return;
    case Expression::Kind::kUnary: {
      const auto& unary = To<UnaryExpression>(*expression);
      constexpr std::string_view kSymbols[] = {"+", "-", "~"};
      Open(kSymbols[static_cast<size_t>(unary.op)]);
      Add(unary.operand.get());
      Close();
      return;
    }
    case Expression::Kind::kBinary: {
      const auto& binary = To<BinaryExpression>(*expression);
      constexpr std::string_view kSymbols[] = {"+", "-", "*", "/", "%", "&", "|", "^"};
      Open(kSymbols[static_cast<size_t>(binary.op)]);
      Add(binary.left.get());
      Add(binary.right.get());
      Close();
      return;
    }
    case Expression::Kind::kFunction:
      AddCall(To<FunctionExpression>(*expression));
      return;
    case Expression::Kind::kConvert: {
      const auto& convert = To<ConvertExpression>(*expression);
      Open(convert.is_cast ? "cast" : "convert");
      Add(convert.type);
      Add(convert.operand.get());
      if (convert.style) Add(convert.style.get());
      Close();
      return;
    }
    case Expression::Kind::kCase:
      AddCase(To<CaseExpression>(*expression));
      return;
    case Expression::Kind::kScalarSubquery:
      Add(*To<ScalarSubqueryExpression>(*expression).query);
      return;
  }
}

// ---- Conditions ----

void Printer::AddInCondition(const Condition& condition) {
  if (condition.kind == Condition::Kind::kInList) {
    const auto& in = To<InListCondition>(condition);
    Open(in.negated ? "not-in" : "in");
    Add(in.operand.get());
    AddAll(in.values);
  } else {
    const auto& in = To<InQueryCondition>(condition);
    Open(in.negated ? "not-in" : "in");
    Add(in.operand.get());
    Add(*in.query);
  }
  Close();
}

void Printer::Add(const Condition* condition) {
  switch (condition->kind) {
    case Condition::Kind::kComparison: {
      const auto& comparison = To<ComparisonCondition>(*condition);
      constexpr std::string_view kSymbols[] = {"=", "<>", "<", "<=", ">", ">="};
      Open(kSymbols[static_cast<size_t>(comparison.op)]);
      Add(comparison.left.get());
      Add(comparison.right.get());
      break;
    }
    case Condition::Kind::kLogical: {
      const auto& logical = To<LogicalCondition>(*condition);
      Open(logical.op == LogicalCondition::Operator::kAnd ? "and" : "or");
      AddAll(logical.operands);
      break;
    }
    case Condition::Kind::kNot:
      Open("not");
      Add(To<NotCondition>(*condition).operand.get());
      break;
    case Condition::Kind::kIsNull: {
      const auto& is_null = To<IsNullCondition>(*condition);
      Open(is_null.negated ? "is-not-null" : "is-null");
      Add(is_null.operand.get());
      break;
    }
    case Condition::Kind::kBetween: {
      const auto& between = To<BetweenCondition>(*condition);
      Open(between.negated ? "not-between" : "between");
      Add(between.operand.get());
      Add(between.low.get());
      Add(between.high.get());
      break;
    }
    case Condition::Kind::kInList:
    case Condition::Kind::kInQuery:
      AddInCondition(*condition);
      return;
    case Condition::Kind::kLike: {
      const auto& like = To<LikeCondition>(*condition);
      Open(like.negated ? "not-like" : "like");
      Add(like.operand.get());
      Add(like.pattern.get());
      if (like.escape) Add(like.escape.get());
      break;
    }
    case Condition::Kind::kExists:
      Open("exists");
      Add(*To<ExistsCondition>(*condition).query);
      break;
  }
  Close();
}

}  // namespace tavcc::sql
