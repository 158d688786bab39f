// Conditions: comparisons, the predicates, and AND, OR and NOT.
#include "embedded/syntax/parser_impl.h"

namespace tavcc::sql {

ConditionPtr Parser::ParseCondition() {
  return ToCondition(ParseConditionOrValue());
}

// A value where a condition has to stand is an error of its own, which names the token after it (at
// the end of the text, the last one).
ConditionPtr Parser::ToCondition(Parsed parsed) {
  if (parsed.condition) return std::move(parsed.condition);
  const Token near = Peek().kind == TokenKind::kEnd ? last_ : Token(Peek());
  if (near.kind >= TokenKind::kUnclosedQuote) RaiseUnexpected();
  Raise(errors::kNoCondition, {Excerpt(Inside(near))});
}

Parser::Parsed Parser::ParseConditionOrValue() {
  return ParseChain(Keyword::kOR, LogicalCondition::Operator::kOr, &Parser::ParseConjunction);
}

Parser::Parsed Parser::ParseConjunction() {
  return ParseChain(Keyword::kAND, LogicalCondition::Operator::kAnd, &Parser::ParseNegation);
}

Parser::Parsed Parser::ParseChain(Keyword word, LogicalCondition::Operator op,
                                  Parsed (Parser::*parse_operand)()) {
  const int line = Line();
  Parsed first = (this->*parse_operand)();
  if (!At(word)) return first;
  auto chain = MakeAt<LogicalCondition>(line);
  chain->op = op;
  chain->operands.push_back(ToCondition(std::move(first)));
  while (Accept(word)) chain->operands.push_back(ToCondition((this->*parse_operand)()));
  return {nullptr, std::move(chain), nullptr};
}

Parser::Parsed Parser::ParseNegation() {
  if (!At(Keyword::kNOT)) return ParsePredicate();
  Nest nest(*this);
  auto negation = MakeAt<NotCondition>(Take().line);
  negation->operand = ToCondition(ParseNegation());
  return {nullptr, std::move(negation), nullptr};
}

Parser::Parsed Parser::ParsePredicate() {
  if (At(Keyword::kEXISTS)) return {nullptr, ParseExists(), nullptr};
  if (At(Keyword::kCONTAINS) || At(Keyword::kFREETEXT)) RaiseUnsupported("full-text search");
  if (At(Keyword::kUPDATE) && AtSymbol("(", 1)) RaiseUnsupported("UPDATE() of triggers");
  Parsed left = ParseOperators(Precedence::kSum);
  if (left.condition) return left;
  const auto predicate = [&](ConditionPtr condition) {
    return Parsed{nullptr, std::move(condition), nullptr};
  };
  if (AtComparison()) return predicate(ParseComparison(ToExpression(std::move(left))));
  if (At(Keyword::kIS)) return predicate(ParseIs(ToExpression(std::move(left))));
  const bool negated = At(Keyword::kNOT) &&
                       (At(Keyword::kIN, 1) || At(Keyword::kBETWEEN, 1) || At(Keyword::kLIKE, 1));
  if (negated) Take();
  if (At(Keyword::kIN)) return predicate(ParseIn(ToExpression(std::move(left)), negated));
  if (At(Keyword::kBETWEEN)) return predicate(ParseBetween(ToExpression(std::move(left)), negated));
  if (At(Keyword::kLIKE)) return predicate(ParseLike(ToExpression(std::move(left)), negated));
  return left;
}

ConditionPtr Parser::ParseExists() {
  Nest nest(*this);
  auto exists = MakeAt<ExistsCondition>(Take().line);
  ExpectSymbol("(");
  exists->query = ParseQuery();
  ExpectSymbol(")");
  return exists;
}

// The two characters of an operator may stand apart: "> =" is ">=".
bool Parser::AtComparison() {
  return AtSymbol("=") || AtSymbol("<") || AtSymbol(">") ||
         (AtSymbol("!") && (AtSymbol("=", 1) || AtSymbol("<", 1) || AtSymbol(">", 1)));
}

ComparisonCondition::Operator Parser::TakeComparison() {
  using Operator = ComparisonCondition::Operator;
  if (AcceptSymbol("=")) return Operator::kEqual;
  if (AcceptSymbol("<")) {
    if (AcceptSymbol("=")) return Operator::kLessEqual;
    return AcceptSymbol(">") ? Operator::kNotEqual : Operator::kLess;
  }
  if (AcceptSymbol(">")) return AcceptSymbol("=") ? Operator::kGreaterEqual : Operator::kGreater;
  ExpectSymbol("!");
  if (AcceptSymbol("<")) return Operator::kGreaterEqual;  // not less
  if (AcceptSymbol(">")) return Operator::kLessEqual;
  ExpectSymbol("=");
  return Operator::kNotEqual;
}

ConditionPtr Parser::ParseComparison(ExpressionPtr left) {
  auto comparison = MakeAt<ComparisonCondition>(left->line);
  comparison->op = TakeComparison();
  comparison->left = std::move(left);
  comparison->right = ParseExpression();
  return comparison;
}

ConditionPtr Parser::ParseIs(ExpressionPtr operand) {
  auto is_null = MakeAt<IsNullCondition>(operand->line);
  Take();
  is_null->negated = Accept(Keyword::kNOT);
  if (At(Keyword::kDISTINCT)) RaiseUnsupported("IS DISTINCT FROM");
  Expect(Keyword::kNULL);
  is_null->operand = std::move(operand);
  return is_null;
}

ConditionPtr Parser::ParseIn(ExpressionPtr operand, bool negated) {
  Nest nest(*this);
  const int line = operand->line;
  Take();
  ExpectSymbol("(");
  if (At(Keyword::kSELECT)) {
    auto in = MakeAt<InQueryCondition>(line);
    in->operand = std::move(operand);
    in->query = ParseQuery();
    in->negated = negated;
    ExpectSymbol(")");
    return in;
  }
  auto in = MakeAt<InListCondition>(line);
  in->operand = std::move(operand);
  in->negated = negated;
  do in->values.push_back(ParseExpression());
  while (AcceptSymbol(","));
  ExpectSymbol(")");
  return in;
}

ConditionPtr Parser::ParseBetween(ExpressionPtr operand, bool negated) {
  auto between = MakeAt<BetweenCondition>(operand->line);
  Take();
  between->operand = std::move(operand);
  between->low = ParseExpression();
  Expect(Keyword::kAND);
  between->high = ParseExpression();
  between->negated = negated;
  return between;
}

ConditionPtr Parser::ParseLike(ExpressionPtr operand, bool negated) {
  auto like = MakeAt<LikeCondition>(operand->line);
  Take();
  like->operand = std::move(operand);
  like->pattern = ParseExpression();
  if (Accept(Keyword::kESCAPE)) like->escape = ParseExpression();
  like->negated = negated;
  return like;
}

}  // namespace tavcc::sql
