// INSERT, UPDATE, DELETE and TRUNCATE.
#include "embedded/syntax/parser_impl.h"

namespace tavcc::sql {
namespace {

constexpr size_t kMaxRows = 1000;

}  // namespace

// The table that a statement changes, and its hints, which have no effect.
ObjectName Parser::TakeTarget() {
  if (At(Keyword::kOPENQUERY) || At(Keyword::kOPENROWSET) || At(Keyword::kOPENDATASOURCE))
    RaiseUnsupported(KeywordText(Peek().keyword));
  ObjectName name = TakeTableName();
  std::vector<std::string> hints;
  if (At(Keyword::kWITH) && AtSymbol("(", 1)) {
    Take();
    ParseHints(hints);
  } else if (AtLegacyHints()) {
    ParseHints(hints);
  }
  return name;
}

void Parser::CheckNoOutputClause() {
  if (AtWord("OUTPUT")) RaiseUnsupported("the OUTPUT clause");
}

ConditionPtr Parser::ParseOptionalWhere(std::string& current_of) {
  if (!Accept(Keyword::kWHERE)) return nullptr;
  if (At(Keyword::kCURRENT) && At(Keyword::kOF, 1)) {
    Take();
    Take();
    current_of = TakeCursorName();
    return nullptr;
  }
  return ParseCondition();
}

StatementPtr Parser::ParseInsert() {
  auto insert = MakeAt<InsertStatement>(Take().line);
  if (At(Keyword::kTOP)) RaiseUnsupported("INSERT TOP");
  Accept(Keyword::kINTO);
  insert->table = TakeTarget();
  if (AtSymbol("(") && !At(Keyword::kSELECT, 1) && !AtSymbol("(", 1)) {
    Take();
    do insert->columns.push_back(TakeObjectName().last());
    while (AcceptSymbol(","));
    ExpectSymbol(")");
  }
  CheckNoOutputClause();
  if (At(Keyword::kVALUES)) {
    ParseRows(*insert);
  } else if (Accept(Keyword::kDEFAULT)) {
    Expect(Keyword::kVALUES);
  } else if (At(Keyword::kEXEC) || At(Keyword::kEXECUTE)) {
    insert->execute = ParseExecute();
  } else {
    if (!At(Keyword::kSELECT) && !AtSymbol("(")) RaiseUnexpected();
    insert->query = ParseQuery();
    ParseQueryOption();
  }
  insert->with = TakeWith();
  return insert;
}

void Parser::ParseRows(InsertStatement& insert) {
  Take();
  do {
    ExpectSymbol("(");
    std::vector<ExpressionPtr> row;
    do row.push_back(Accept(Keyword::kDEFAULT) ? nullptr : ParseExpression());
    while (AcceptSymbol(","));
    ExpectSymbol(")");
    insert.rows.push_back(std::move(row));
    if (insert.rows.size() > kMaxRows) Raise(errors::kTooManyRowValues, {});
  } while (AcceptSymbol(","));
}

StatementPtr Parser::ParseUpdate() {
  auto update = MakeAt<UpdateStatement>(Take().line);
  if (At(Keyword::kSTATISTICS)) RaiseUnsupported("UPDATE STATISTICS");
  update->top = ParseOptionalTop();
  if (update->top && update->top->with_ties) Raise(errors::kSyntaxNearKeyword, {"WITH"});
  update->target = TakeTarget();
  Expect(Keyword::kSET);
  do update->assignments.push_back(ParseAssignment());
  while (AcceptSymbol(","));
  CheckNoOutputClause();
  if (Accept(Keyword::kFROM)) update->from = ParseFromList();
  update->where = ParseOptionalWhere(update->current_of);
  ParseQueryOption();
  update->with = TakeWith();
  return update;
}

// column = value, @v = value, @v = column = value, and each with an operator such as +=.
Assignment Parser::ParseAssignment() {
  Assignment assignment;
  if (Peek().kind == TokenKind::kVariable) {
    auto variable = MakeAt<VariableExpression>(Line());
    assignment.variable = variable->name = TakeVariable();
    assignment.value = ParseCompound(std::move(variable));
    if (assignment.value->kind != Expression::Kind::kColumn || !AtSymbol("=")) return assignment;
    Take();
    assignment.column_name = std::move(static_cast<ColumnExpression&>(*assignment.value).name);
  } else {
    auto column = MakeAt<ColumnExpression>(Line());
    column->name = TakeObjectName();
    if (AtSymbol("(")) RaiseUnsupported("methods of column types");
    assignment.column_name = column->name;
    if (!AtSymbol("=")) {
      assignment.column = assignment.column_name.last();
      assignment.value = ParseCompound(std::move(column));
      return assignment;
    }
    Take();
  }
  assignment.column = assignment.column_name.last();
  assignment.value = Accept(Keyword::kDEFAULT) ? nullptr : ParseExpression();
  return assignment;
}

// What follows the target of an assignment: "= value", or "+= value" for "= target + value".
ExpressionPtr Parser::ParseCompound(ExpressionPtr target) {
  if (AcceptSymbol("=")) return ParseExpression();
  const std::string_view symbol = Peek().text;
  const bool compound =
      Peek().kind == TokenKind::kSymbol && symbol.size() == 2 && symbol.back() == '=';
  const OperatorRule* const rule = compound ? FindOperator(symbol.substr(0, 1)) : nullptr;
  if (rule == nullptr) RaiseUnexpected();
  Take();
  const int line = target->line;
  return Binary(rule->op, std::move(target), ParseExpression(), line);
}

StatementPtr Parser::ParseDelete() {
  auto statement = MakeAt<DeleteStatement>(Take().line);
  statement->top = ParseOptionalTop();
  if (statement->top && statement->top->with_ties) Raise(errors::kSyntaxNearKeyword, {"WITH"});
  Accept(Keyword::kFROM);
  statement->target = TakeTarget();
  CheckNoOutputClause();
  if (Accept(Keyword::kFROM)) statement->from = ParseFromList();
  statement->where = ParseOptionalWhere(statement->current_of);
  ParseQueryOption();
  statement->with = TakeWith();
  return statement;
}

StatementPtr Parser::ParseTruncate() {
  auto truncate = MakeAt<TruncateStatement>(Take().line);
  Expect(Keyword::kTABLE);
  truncate->table = TakeObjectName();
  if (At(Keyword::kWITH) && AtSymbol("(", 1)) RaiseUnsupported("TRUNCATE TABLE of partitions");
  return truncate;
}

}  // namespace tavcc::sql
