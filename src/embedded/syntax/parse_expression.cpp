// Values: constants, names, calls, CASE and the operators of arithmetic.
//
// The signs rank with addition, below multiplication, as the server's table of operator precedence
// has it: -a * b is -(a * b), and a / -b * c is a / -(b * c).
#include <algorithm>

#include "embedded/syntax/parser_impl.h"

namespace tavcc::sql {
namespace {

using Operator = BinaryExpression::Operator;

bool IsOneOf(std::string_view word, std::initializer_list<std::string_view> upper_words) {
  return std::ranges::any_of(
      upper_words, [&](std::string_view upper) { return EqualsIgnoringCase(word, upper); });
}

bool HasDatePart(const ObjectName& name) {
  return name.parts.size() == 1 &&
         IsOneOf(name.last(), {"DATEDIFF", "DATEDIFF_BIG", "DATEADD", "DATEPART", "DATENAME"});
}

}  // namespace

const OperatorRule* FindOperator(std::string_view symbol) {
  using enum BinaryOperator;
  static constexpr OperatorRule kOperators[] = {
      {"+", kAdd, Precedence::kSum},        {"-", kSubtract, Precedence::kSum},
      {"&", kBitAnd, Precedence::kSum},     {"|", kBitOr, Precedence::kSum},
      {"^", kBitXor, Precedence::kSum},     {"*", kMultiply, Precedence::kProduct},
      {"/", kDivide, Precedence::kProduct}, {"%", kModulo, Precedence::kProduct},
  };
  const auto* const found = std::ranges::find(kOperators, symbol, &OperatorRule::symbol);
  return found == std::end(kOperators) ? nullptr : found;
}

ExpressionPtr Parser::ParseExpression() {
  return ToExpression(ParseOperators(Precedence::kSum));
}

// A query in brackets is a value here; a condition in brackets is not.
ExpressionPtr Parser::ToExpression(Parsed parsed) {
  if (parsed.query) {
    auto subquery = MakeAt<ScalarSubqueryExpression>(parsed.query->line);
    subquery->query = std::move(parsed.query);
    return subquery;
  }
  if (!parsed.expression) RaiseUnexpected();
  return std::move(parsed.expression);
}

ExpressionPtr Parser::Binary(Operator op, ExpressionPtr left, ExpressionPtr right, int line) {
  auto binary = MakeAt<BinaryExpression>(line);
  binary->op = op;
  binary->left = std::move(left);
  binary->right = std::move(right);
  return binary;
}

// Operators of one precedence go from left to right; their operands are made of tighter ones.
Parser::Parsed Parser::ParseOperators(Precedence precedence) {
  const auto parse_operand = [&] {
    return precedence == Precedence::kProduct ? ParseFactor()
                                              : ParseOperators(Precedence::kProduct);
  };
  Chain chain(*this);
  Parsed left = parse_operand();
  if (left.condition) return left;
  if (precedence == Precedence::kProduct && At(Keyword::kCOLLATE)) RaiseUnsupported("COLLATE");
  while (Peek().kind == TokenKind::kSymbol) {
    const OperatorRule* const rule = FindOperator(Peek().text);
    if (rule == nullptr || rule->precedence != precedence) break;
    Take();
    ExpressionPtr operand = ToExpression(std::move(left));
    const int line = operand->line;
    chain.Deepen();
    ExpressionPtr right = ToExpression(parse_operand());
    left = {Binary(rule->op, std::move(operand), std::move(right), line), nullptr, nullptr};
  }
  return left;
}

Parser::Parsed Parser::ParseFactor() {
  UnaryExpression::Operator op;
  if (AtSymbol("-"))
    op = UnaryExpression::Operator::kMinus;
  else if (AtSymbol("+"))
    op = UnaryExpression::Operator::kPlus;
  else if (AtSymbol("~"))
    op = UnaryExpression::Operator::kBitNot;
  else
    return ParsePrimary();
  Nest nest(*this);
  auto unary = MakeAt<UnaryExpression>(Take().line);
  unary->op = op;
  unary->operand =
      ToExpression(op == UnaryExpression::Operator::kBitNot ? ParseFactor()
                                                            : ParseOperators(Precedence::kProduct));
  return {std::move(unary), nullptr, nullptr};
}

Parser::Parsed Parser::ParsePrimary() {
  switch (Peek().kind) {
    case TokenKind::kInteger:
    case TokenKind::kDecimal:
    case TokenKind::kFloat:
    case TokenKind::kBinary:
    case TokenKind::kText:
    case TokenKind::kNationalText:
      return {ParseLiteral(), nullptr, nullptr};
    case TokenKind::kVariable:
      return {ParseVariableReference(), nullptr, nullptr};
    case TokenKind::kQuotedName:
      return {ParseNameOrCall(), nullptr, nullptr};
    case TokenKind::kWord:
      return {IsReserved(Peek().keyword) ? ParseKeywordValue() : ParseNameOrCall(), nullptr,
              nullptr};
    default:
      break;
  }
  if (AtSymbol("{")) RaiseUnsupported("ODBC escapes");
  if (!AtSymbol("(")) RaiseUnexpected();
  return ParseBracket();
}

// (value), (condition) or (query): a query may go on after its bracket, as in ((select …) union …).
Parser::Parsed Parser::ParseBracket() {
  Nest nest(*this);
  ExpectSymbol("(");
  Parsed inside;
  if (At(Keyword::kSELECT)) {
    inside.query = ParseQuery();
  } else {
    inside = ParseConditionOrValue();
    if (inside.query) {
      inside.query = ContinueQuery(std::move(inside.query));
      ParseOrderBy(*inside.query);
    }
  }
  ExpectSymbol(")");
  return inside;
}

// A number that only this parser takes for one ("1e") is no parameter either.
void Parser::NumberLiteral(const Token& token, LiteralExpression& literal) {
  const char last = token.text.back();
  const bool unfinished = token.kind == TokenKind::kFloat && (last < '0' || last > '9');
  if (constants_ > 0 || token.kind == TokenKind::kBinary || unfinished) {
    ++constants_met_;
    return;
  }
  literal.slot = static_cast<int>(literals_.size());
  literals_.push_back(token.begin);
}

ExpressionPtr Parser::ParseLiteral() {
  const Token token = Take();
  auto literal = MakeAt<LiteralExpression>(token.line);
  literal->text = std::string(token.text);
  NumberLiteral(token, *literal);
  literal->form = FormOf(token.kind);
  switch (literal->form) {
    case LiteralForm::kFloat:
      if (literal->text.find_last_of("0123456789") != literal->text.size() - 1)
        literal->text += '0';  // 1e and 1e+ are 1e0
      return literal;
    case LiteralForm::kBinary:
      literal->text.erase(0, 2);
      return literal;
    case LiteralForm::kText:
    case LiteralForm::kNationalText:
      literal->text = Unquote(token);
      return literal;
    default:
      break;
  }
  if (LiteralPrecision(token.text) > SqlType::kMaxPrecision)
    Raise(errors::kNumberOutOfRange, {"number", Excerpt(token.text)});
  return literal;
}

ExpressionPtr Parser::ParseVariableReference() {
  const Token token = Take();
  if (token.text.starts_with("@@")) {
    auto variable = MakeAt<GlobalVariableExpression>(token.line);
    variable->name = std::string(token.text);
    return variable;
  }
  auto variable = MakeAt<VariableExpression>(token.line);
  variable->name = std::string(token.text);
  return variable;
}

// The reserved words that begin a value.
ExpressionPtr Parser::ParseKeywordValue() {
  const int line = Line();
  switch (Peek().keyword) {
    case Keyword::kNULL:
      Take();
      return MakeAt<LiteralExpression>(line);
    case Keyword::kCASE:
      return ParseCase();
    case Keyword::kCONVERT:
      return ParseConvert();
    case Keyword::kCOALESCE:
    case Keyword::kNULLIF: {
      CaseNest nest(*this);
      return ParseKeywordCall();
    }
    case Keyword::kLEFT:
    case Keyword::kRIGHT:
      return ParseKeywordCall();
    case Keyword::kCURRENT_TIMESTAMP:
    case Keyword::kCURRENT_USER:
    case Keyword::kSESSION_USER:
    case Keyword::kSYSTEM_USER:
    case Keyword::kUSER: {
      auto call = MakeAt<FunctionExpression>(line);
      call->name.parts.push_back(LowerCase(Take().text));
      return call;
    }
    case Keyword::kTRY_CONVERT:
      RaiseUnsupported("TRY_CONVERT");
    case Keyword::kIDENTITY:
      RaiseUnsupported("the IDENTITY function");
    case Keyword::kIDENTITYCOL:
    case Keyword::kROWGUIDCOL:
      RaiseUnsupported("IDENTITYCOL and ROWGUIDCOL");
    case Keyword::kALL:
    case Keyword::kANY:
    case Keyword::kSOME:
      if (AtSymbol("(", 1)) RaiseUnsupported("ALL, ANY and SOME");
      RaiseUnexpected();
    default:
      RaiseUnexpected();
  }
}

ExpressionPtr Parser::ParseKeywordCall() {
  if (!AtSymbol("(", 1)) RaiseUnexpected();
  const int line = Line();
  ObjectName name{{LowerCase(Take().text)}};
  return ParseCallOf(std::move(name), line);
}

ExpressionPtr Parser::ParseNameOrCall() {
  const int line = Line();
  if (Peek().kind == TokenKind::kWord && AtSymbol("(", 1)) {
    if (AtWord("CAST")) return ParseCast();
    if (AtWord("IIF")) return ParseIif();
    if (AtWord("TRY_CAST") || AtWord("TRY_PARSE") || AtWord("PARSE"))
      RaiseUnsupported("TRY_CAST, PARSE and TRY_PARSE");
  }
  ObjectName name = TakeObjectName();
  if (AtSymbol(":") && AtSymbol(":", 1)) RaiseUnsupported("static methods of types");
  if (AtSymbol("(")) return ParseCallOf(std::move(name), line);
  auto column = MakeAt<ColumnExpression>(line);
  column->name = std::move(name);
  return column;
}

ExpressionPtr Parser::ParseCallOf(ObjectName name, int line) {
  Nest nest(*this);
  auto call = MakeAt<FunctionExpression>(line);
  call->name = std::move(name);
  ExpectSymbol("(");
  ParseArguments(*call);
  ExpectSymbol(")");
  if ((AtWord("IGNORE") || AtWord("RESPECT")) && AtWord("NULLS", 1)) {
    RaiseUnsupported("IGNORE NULLS and RESPECT NULLS");
  }
  if (At(Keyword::kOVER)) call->over = ParseOver();
  if (AtWord("WITHIN")) RaiseUnsupported("WITHIN GROUP");
  return call;
}

void Parser::ParseArguments(FunctionExpression& call) {
  if (AtSymbol(")")) return;
  if (AcceptSymbol("*")) {
    call.star = true;
    return;
  }
  if (HasDatePart(call.name)) {
    if (Peek().kind != TokenKind::kWord || IsReserved(Peek().keyword))
      Raise(errors::kInvalidDatePart, {1, LowerCase(call.name.last())});
    call.date_part = std::string(Take().text);
    if (!AcceptSymbol(",")) return;
  } else if (Accept(Keyword::kDISTINCT)) {
    call.distinct = true;
  } else {
    Accept(Keyword::kALL);
  }
  do call.arguments.push_back(ParseExpression());
  while (AcceptSymbol(","));
}

ExpressionPtr Parser::ParseCase() {
  CaseNest nest(*this);
  auto result = MakeAt<CaseExpression>(Take().line);
  if (!At(Keyword::kWHEN)) result->operand = ParseExpression();
  do {
    Expect(Keyword::kWHEN);
    CaseExpression::When when;
    if (result->operand)
      when.value = ParseExpression();
    else
      when.condition = ParseCondition();
    Expect(Keyword::kTHEN);
    when.result = ParseExpression();
    result->whens.push_back(std::move(when));
  } while (At(Keyword::kWHEN));
  if (Accept(Keyword::kELSE)) result->otherwise = ParseExpression();
  Expect(Keyword::kEND);
  return result;
}

ExpressionPtr Parser::ParseCast() {
  Nest nest(*this);
  auto cast = MakeAt<ConvertExpression>(Take().line);
  cast->is_cast = true;
  ExpectSymbol("(");
  cast->operand = ParseExpression();
  Expect(Keyword::kAS);
  cast->type = ParseType();
  ExpectSymbol(")");
  return cast;
}

ExpressionPtr Parser::ParseConvert() {
  Nest nest(*this);
  auto convert = MakeAt<ConvertExpression>(Take().line);
  ExpectSymbol("(");
  convert->type = ParseType();
  ExpectSymbol(",");
  convert->operand = ParseExpression();
  if (AcceptSymbol(",")) {
    const Constants constants(*this);
    convert->style = ParseExpression();
  }
  ExpectSymbol(")");
  return convert;
}

// IIF(condition, a, b) is short for CASE WHEN condition THEN a ELSE b END, on the server too.
ExpressionPtr Parser::ParseIif() {
  CaseNest nest(*this);
  auto result = MakeAt<CaseExpression>(Take().line);
  ExpectSymbol("(");
  CaseExpression::When when;
  when.condition = ParseCondition();
  ExpectSymbol(",");
  when.result = ParseExpression();
  result->whens.push_back(std::move(when));
  ExpectSymbol(",");
  result->otherwise = ParseExpression();
  ExpectSymbol(")");
  return result;
}

}  // namespace tavcc::sql
