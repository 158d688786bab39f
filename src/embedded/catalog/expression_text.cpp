// Default values as text: literals, signs, arithmetic, function calls and casts.
#include "embedded/catalog/expression_text.h"

#include <utility>

#include "embedded/error.h"
#include "embedded/types/sql_type.h"

namespace tavcc::sql {
namespace {

std::string QuotedText(std::string_view text) {
  std::string out = "'";
  for (const char c : text) {
    if (c == '\'') out += c;
    out += c;
  }
  return out + '\'';
}

std::string LiteralText(const LiteralExpression& literal) {
  switch (literal.form) {
    case LiteralExpression::Form::kNull:
      return "NULL";
    case LiteralExpression::Form::kText:
      return QuotedText(literal.text);
    case LiteralExpression::Form::kNationalText:
      return 'N' + QuotedText(literal.text);
    case LiteralExpression::Form::kBinary:
      return "0x" + literal.text;
    default:
      return literal.text;
  }
}

std::string TypeNameText(const TypeName& type) {
  std::string out = type.name;
  for (size_t i = 0; i < type.arguments.size(); ++i) {
    out += i == 0 ? '(' : ',';
    out += type.arguments[i] == SqlType::kMax ? "max" : std::to_string(type.arguments[i]);
  }
  if (!type.arguments.empty()) out += ')';
  return out;
}

std::string FunctionText(const FunctionExpression& function) {
  std::string out = function.name.last() + '(' + function.date_part;
  bool first = function.date_part.empty();
  for (const auto& argument : function.arguments) {
    if (!std::exchange(first, false)) out += ',';
    out += ExpressionText(*argument);
  }
  return out + ')';
}

std::string ConvertText(const ConvertExpression& convert) {
  const std::string operand = ExpressionText(*convert.operand);
  if (convert.is_cast) return "CAST(" + operand + " AS " + TypeNameText(convert.type) + ')';
  const std::string style = convert.style ? ',' + ExpressionText(*convert.style) : "";
  return "CONVERT(" + TypeNameText(convert.type) + ',' + operand + style + ')';
}

}  // namespace

std::string ExpressionText(const Expression& expression) {
  switch (expression.kind) {
    case Expression::Kind::kLiteral:
      return LiteralText(static_cast<const LiteralExpression&>(expression));
    case Expression::Kind::kUnary: {
      const auto& unary = static_cast<const UnaryExpression&>(expression);
      static constexpr char kSigns[] = {'+', '-', '~'};
      return std::string("(") + kSigns[static_cast<size_t>(unary.op)] +
             ExpressionText(*unary.operand) + ')';
    }
    case Expression::Kind::kBinary: {
      const auto& binary = static_cast<const BinaryExpression&>(expression);
      static constexpr char kSigns[] = {'+', '-', '*', '/', '%', '&', '|', '^'};
      return '(' + ExpressionText(*binary.left) + kSigns[static_cast<size_t>(binary.op)] +
             ExpressionText(*binary.right) + ')';
    }
    case Expression::Kind::kFunction:
      return FunctionText(static_cast<const FunctionExpression&>(expression));
    case Expression::Kind::kConvert:
      return ConvertText(static_cast<const ConvertExpression&>(expression));
    default:
      RaiseUnsupported("a default value of this form");
  }
}

}  // namespace tavcc::sql
