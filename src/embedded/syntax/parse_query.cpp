// Queries: SELECT blocks and how they are set together.
#include "embedded/syntax/parser_impl.h"

namespace tavcc::sql {

QueryPtr Parser::ParseQuery() {
  QueryPtr query = ParseQueryExpression();
  ParseOrderBy(*query);
  return query;
}

QueryPtr Parser::ParseQueryExpression() {
  return ContinueQuery(ParseQueryTerm());
}

// INTERSECT binds tighter than UNION and EXCEPT, which go from left to right.
QueryPtr Parser::ContinueQuery(QueryPtr first) {
  Chain chain(*this);
  QueryPtr left = ParseIntersection(std::move(first));
  while (At(Keyword::kUNION) || At(Keyword::kEXCEPT)) {
    if (!left->order_by.empty()) RaiseUnexpected();  // only the whole is ordered
    Query::SetOperator op = Query::SetOperator::kExcept;
    if (Take().keyword == Keyword::kUNION)
      op = Accept(Keyword::kALL) ? Query::SetOperator::kUnionAll : Query::SetOperator::kUnion;
    chain.Deepen();
    QueryPtr right = ParseIntersection(ParseQueryTerm());
    left = Combine(std::move(left), op, std::move(right));
  }
  return left;
}

QueryPtr Parser::ParseIntersection(QueryPtr first) {
  Chain chain(*this);
  QueryPtr left = std::move(first);
  while (At(Keyword::kINTERSECT)) {
    if (!left->order_by.empty()) RaiseUnexpected();
    Take();
    chain.Deepen();
    left = Combine(std::move(left), Query::SetOperator::kIntersect, ParseQueryTerm());
  }
  return left;
}

QueryPtr Parser::Combine(QueryPtr left, Query::SetOperator op, QueryPtr right) {
  auto query = MakeAt<Query>(left->line);
  query->set_operator = op;
  query->left = std::move(left);
  query->right = std::move(right);
  return query;
}

QueryPtr Parser::ParseQueryTerm() {
  Nest nest(*this);
  if (!AtSymbol("(")) return ParseSelectBlock();
  Take();
  QueryPtr query = ParseQuery();
  ExpectSymbol(")");
  return query;
}

QueryPtr Parser::ParseSelectBlock() {
  auto query = MakeAt<Query>(Line());
  query->block = std::make_unique<SelectBlock>();
  SelectBlock& block = *query->block;
  block.line = Line();
  Expect(Keyword::kSELECT);
  if (!Accept(Keyword::kALL)) block.distinct = Accept(Keyword::kDISTINCT);
  block.top = ParseOptionalTop();
  do block.items.push_back(ParseSelectItem());
  while (AcceptSymbol(","));
  if (Accept(Keyword::kINTO)) block.into = TakeObjectName();
  if (Accept(Keyword::kFROM)) block.from = ParseFromList();
  if (Accept(Keyword::kWHERE)) block.where = ParseCondition();
  if (At(Keyword::kGROUP)) ParseGroupBy(block);
  if (Accept(Keyword::kHAVING)) block.having = ParseCondition();
  if (AtWord("WINDOW") && AtName(1)) RaiseUnsupported("the WINDOW clause");
  return query;
}

// TOP 5, TOP (@n): without brackets only a number may follow.
std::optional<TopClause> Parser::ParseOptionalTop() {
  if (!Accept(Keyword::kTOP)) return std::nullopt;
  const Constants constants(*this);
  TopClause top;
  if (AtSymbol("(")) {
    Nest nest(*this);
    Take();
    top.count = ParseExpression();
    ExpectSymbol(")");
  } else {
    if (Peek().kind < TokenKind::kInteger || Peek().kind > TokenKind::kFloat) RaiseUnexpected();
    top.count = ParseLiteral();
  }
  top.percent = Accept(Keyword::kPERCENT);
  if (At(Keyword::kWITH) && AtWord("TIES", 1)) {
    Take();
    Take();
    top.with_ties = true;
  }
  return top;
}

SelectItem Parser::ParseSelectItem() {
  SelectItem item;
  item.line = Line();
  if (ParseStar(item)) return item;
  if (Peek().kind == TokenKind::kVariable && !Peek().text.starts_with("@@")) {
    const bool compound = Peek(1).kind == TokenKind::kSymbol && Peek(1).text.size() == 2 &&
                          Peek(1).text.back() == '=';
    if (compound || AtSymbol("=", 1)) {
      item.form = SelectItem::Form::kAssignment;
      auto variable = MakeAt<VariableExpression>(Line());
      item.variable = variable->name = TakeVariable();
      item.expression = ParseCompound(std::move(variable));
      return item;
    }
  }
  if ((AtName() || AtText()) && AtSymbol("=", 1)) {
    item.alias = AtText() ? Unquote(Take()) : TakeName();
    Take();
    item.expression = ParseExpression();
    return item;
  }
  item.expression = ParseExpression();
  // "T1.*": the name stops before ".*".
  if (AtSymbol(".") && item.expression->kind == Expression::Kind::kColumn) {
    Take();
    ExpectSymbol("*");
    item.form = SelectItem::Form::kStar;
    item.qualifier = std::move(static_cast<ColumnExpression&>(*item.expression).name);
    item.expression = nullptr;
    return item;
  }
  ParseOptionalAlias(item);
  return item;
}

bool Parser::ParseStar(SelectItem& item) {
  if (!AcceptSymbol("*")) return false;
  item.form = SelectItem::Form::kStar;
  return true;
}

void Parser::ParseOptionalAlias(SelectItem& item) {
  const bool as = Accept(Keyword::kAS);
  if (AtText()) {
    item.alias = Unquote(Take());
  } else if (AtName()) {
    item.alias = TakeName();
  } else if (as) {
    RaiseUnexpected();
  }
}

void Parser::ParseGroupBy(SelectBlock& block) {
  Take();
  Expect(Keyword::kBY);
  if (At(Keyword::kALL)) RaiseUnsupported("GROUP BY ALL");
  if ((AtWord("ROLLUP") || AtWord("CUBE")) && AtSymbol("(", 1)) RaiseUnsupported("ROLLUP and CUBE");
  if (AtWord("GROUPING") && AtWord("SETS", 1)) RaiseUnsupported("GROUPING SETS");
  do block.group_by.push_back(ParseListItem());
  while (AcceptSymbol(","));
  if (At(Keyword::kWITH) && (AtWord("ROLLUP", 1) || AtWord("CUBE", 1)))
    RaiseUnsupported("ROLLUP and CUBE");
}

void Parser::ParseOrderDirection(OrderItem& item) {
  item.descending = At(Keyword::kDESC);
  if (At(Keyword::kASC) || At(Keyword::kDESC)) Take();
}

void Parser::ParseOrderBy(Query& query) {
  if (!At(Keyword::kORDER)) return;
  if (!query.order_by.empty()) RaiseUnexpected();
  Take();
  Expect(Keyword::kBY);
  do {
    OrderItem item;
    item.expression = ParseListItem();
    ParseOrderDirection(item);
    query.order_by.push_back(std::move(item));
  } while (AcceptSymbol(","));
  if (AtWord("OFFSET")) RaiseUnsupported("OFFSET and FETCH in ORDER BY");
}

}  // namespace tavcc::sql
