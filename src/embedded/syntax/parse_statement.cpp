// Statements: how they follow one another, and those that steer.
#include "embedded/syntax/parser_impl.h"

namespace tavcc::sql {

void Parser::AcceptSemicolons() {
  while (AcceptSymbol(";")) unterminated_ = false;
}

// The statement inside of IF, ELSE or WHILE.
StatementPtr Parser::ParseBranch() {
  unterminated_ = false;
  return ParseStatement();
}

std::vector<StatementPtr> Parser::ParseStatementsToEnd() {
  std::vector<StatementPtr> statements;
  AcceptSemicolons();
  while (Peek().kind != TokenKind::kEnd) {
    statements.push_back(ParseStatement());
    AcceptSemicolons();
  }
  return statements;
}

// One statement and the semicolons after it.
StatementPtr Parser::ParseStatement() {
  Nest nest(*this);
  // What stands inside of IF, WHILE or BEGIN is not first any more.
  if (!AtName() && !At(Keyword::kCREATE)) first_statement_ = false;
  StatementPtr statement;
  if (AtName())
    statement = ParseWordStatement();
  else if (Peek().kind == TokenKind::kWord)
    statement = ParseStatementOf(Peek().keyword);
  else if (AtSymbol("(") && (At(Keyword::kSELECT, 1) || AtSymbol("(", 1)))
    statement = ParseStatementOf(Keyword::kSELECT);
  else
    RaiseUnexpected();
  first_statement_ = false;
  unterminated_ = !AcceptSymbol(";");
  return statement;
}

// A statement that begins with no reserved word: at the start of a batch, a procedure's name.
StatementPtr Parser::ParseWordStatement() {
  if (AtWord("THROW")) RaiseUnsupported("THROW");
  if (AtSymbol(":", 1)) RaiseUnsupported("labels and GOTO");
  if (AtWord("DISABLE") || AtWord("ENABLE"))
    if (At(Keyword::kTRIGGER, 1)) RaiseUnsupported("triggers");
  if (!first_statement_) RaiseUnexpected();
  return ParseCall(Line());
}

StatementPtr Parser::ParseStatementOf(Keyword keyword) {
  switch (keyword) {
    case Keyword::kSELECT: {
      auto select = MakeAt<SelectStatement>(Line());
      select->query = ParseQuery();
      ParseQueryOption();
      select->query->with = TakeWith();
      return select;
    }
    case Keyword::kINSERT:
      return ParseInsert();
    case Keyword::kUPDATE:
      return ParseUpdate();
    case Keyword::kDELETE:
      return ParseDelete();
    case Keyword::kTRUNCATE:
      return ParseTruncate();
    case Keyword::kCREATE:
      return ParseCreate();
    case Keyword::kDROP:
      return ParseDrop();
    case Keyword::kALTER:
      return ParseAlter();
    case Keyword::kDECLARE:
      return ParseDeclare();
    case Keyword::kSET:
      return ParseSet();
    case Keyword::kIF:
      return ParseIf();
    case Keyword::kWHILE:
      return ParseWhile();
    case Keyword::kBEGIN:
      return ParseBegin();
    case Keyword::kBREAK:
      return MakeAt<BreakStatement>(Take().line);
    case Keyword::kCONTINUE:
      return MakeAt<ContinueStatement>(Take().line);
    case Keyword::kRETURN:
      return ParseReturn();
    case Keyword::kOPEN:
      return ParseCursorStatement(CursorStatement::What::kOpen);
    case Keyword::kCLOSE:
      return ParseCursorStatement(CursorStatement::What::kClose);
    case Keyword::kDEALLOCATE:
      return ParseCursorStatement(CursorStatement::What::kDeallocate);
    case Keyword::kFETCH:
      return ParseFetch();
    case Keyword::kEXEC:
    case Keyword::kEXECUTE:
      return ParseExecute();
    case Keyword::kCOMMIT:
      return ParseTransaction(TransactionStatement::What::kCommit);
    case Keyword::kROLLBACK:
      return ParseTransaction(TransactionStatement::What::kRollback);
    case Keyword::kSAVE:
      return ParseTransaction(TransactionStatement::What::kSave);
    case Keyword::kPRINT:
      return ParsePrint();
    case Keyword::kRAISERROR:
      return ParseRaisError();
    case Keyword::kWITH:
      return ParseWithStatement();
    case Keyword::kGOTO:
      RaiseUnsupported("labels and GOTO");
    case Keyword::kMERGE:
    case Keyword::kWAITFOR:
    case Keyword::kGRANT:
    case Keyword::kREVOKE:
    case Keyword::kDENY:
    case Keyword::kREVERT:
    case Keyword::kBACKUP:
    case Keyword::kRESTORE:
    case Keyword::kBULK:
    case Keyword::kCHECKPOINT:
    case Keyword::kDBCC:
    case Keyword::kKILL:
    case Keyword::kLOAD:
    case Keyword::kREADTEXT:
    case Keyword::kRECONFIGURE:
    case Keyword::kSETUSER:
    case Keyword::kSHUTDOWN:
    case Keyword::kUPDATETEXT:
    case Keyword::kUSE:
    case Keyword::kWRITETEXT:
      RaiseUnsupported(KeywordText(keyword));
    default:
      RaiseUnexpected();
  }
}

StatementPtr Parser::ParseBegin() {
  const int line = Line();
  if (At(Keyword::kTRAN, 1) || At(Keyword::kTRANSACTION, 1))
    return ParseTransaction(TransactionStatement::What::kBegin);
  Take();
  if (At(Keyword::kDISTRIBUTED)) RaiseUnsupported("distributed transactions");
  if (AtWord("TRY") || AtWord("CATCH")) RaiseUnsupported("TRY and CATCH");
  if (AtWord("DIALOG") || AtWord("CONVERSATION") || AtWord("ATOMIC"))
    RaiseUnsupported("BEGIN " + std::string(Peek().text));
  auto block = MakeAt<BlockStatement>(line);
  unterminated_ = false;
  AcceptSemicolons();
  do {
    block->statements.push_back(ParseStatement());
    AcceptSemicolons();
  } while (!At(Keyword::kEND));
  Take();
  return block;
}

StatementPtr Parser::ParseIf() {
  auto statement = MakeAt<IfStatement>(Take().line);
  statement->condition = ParseCondition();
  statement->then = ParseBranch();
  if (Accept(Keyword::kELSE)) statement->otherwise = ParseBranch();
  return statement;
}

StatementPtr Parser::ParseWhile() {
  auto statement = MakeAt<WhileStatement>(Take().line);
  statement->condition = ParseCondition();
  statement->body = ParseBranch();
  return statement;
}

// Whether a value can begin here, which RETURN needs to know.
bool Parser::AtValue() {
  switch (Peek().kind) {
    case TokenKind::kEnd:
      return false;
    case TokenKind::kSymbol:
      return AtSymbol("(") || AtSymbol("-") || AtSymbol("+") || AtSymbol("~");
    case TokenKind::kWord:
      break;
    default:
      return true;
  }
  switch (Peek().keyword) {
    case Keyword::kNULL:
    case Keyword::kCASE:
    case Keyword::kCONVERT:
    case Keyword::kCOALESCE:
    case Keyword::kNULLIF:
    case Keyword::kLEFT:
    case Keyword::kRIGHT:
      return true;
    default:
      return !IsReserved(Peek().keyword);
  }
}

StatementPtr Parser::ParseReturn() {
  auto statement = MakeAt<ReturnStatement>(Take().line);
  if (AtValue()) statement->value = ParseExpression();
  return statement;
}

StatementPtr Parser::ParsePrint() {
  auto print = MakeAt<PrintStatement>(Take().line);
  print->value = ParseExpression();
  return print;
}

StatementPtr Parser::ParseRaisError() {
  auto raise = MakeAt<RaisErrorStatement>(Take().line);
  if (!AtSymbol("(")) RaiseUnsupported("RAISERROR without brackets");
  Take();
  do raise->arguments.push_back(ParseExpression());
  while (AcceptSymbol(","));
  ExpectSymbol(")");
  if (Accept(Keyword::kWITH)) {
    // Where the message goes besides to the client, and when.
    do {
      if (AtWord("SETERROR")) RaiseUnsupported("RAISERROR WITH SETERROR");
      if (!AcceptWord("NOWAIT")) ExpectWord("LOG");
    } while (AcceptSymbol(","));
  }
  return raise;
}

StatementPtr Parser::ParseTransaction(TransactionStatement::What what) {
  auto statement = MakeAt<TransactionStatement>(Take().line);
  statement->what = what;
  const bool begins =
      what == TransactionStatement::What::kBegin || what == TransactionStatement::What::kSave;
  if (!Accept(Keyword::kTRAN) && !Accept(Keyword::kTRANSACTION)) {
    if (begins) RaiseUnexpected();
    AcceptWord("WORK");
    return statement;
  }
  if (Peek().kind == TokenKind::kVariable)
    statement->name = TakeVariable();
  else if (AtName())
    statement->name = TakeName();
  else if (what == TransactionStatement::What::kSave)
    RaiseUnexpected();
  if (At(Keyword::kWITH)) RaiseUnsupported("options of transactions");
  return statement;
}

}  // namespace tavcc::sql
