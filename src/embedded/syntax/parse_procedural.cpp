// Variables, SET, cursors and calls of procedures.
#include "embedded/syntax/parser_impl.h"

namespace tavcc::sql {
namespace {

// The options of SET that are ON or OFF.
constexpr std::string_view kSwitches[] = {
    "ANSI_DEFAULTS",
    "ANSI_NULLS",
    "ANSI_NULL_DFLT_OFF",
    "ANSI_NULL_DFLT_ON",
    "ANSI_PADDING",
    "ANSI_WARNINGS",
    "ARITHABORT",
    "ARITHIGNORE",
    "CONCAT_NULL_YIELDS_NULL",
    "CURSOR_CLOSE_ON_COMMIT",
    "FMTONLY",
    "FORCEPLAN",
    "IMPLICIT_TRANSACTIONS",
    "NOCOUNT",
    "NOEXEC",
    "NUMERIC_ROUNDABORT",
    "PARSEONLY",
    "QUOTED_IDENTIFIER",
    "REMOTE_PROC_TRANSACTIONS",
    "SHOWPLAN_ALL",
    "SHOWPLAN_TEXT",
    "SHOWPLAN_XML",
    "XACT_ABORT",
};

// Those that take a value.
constexpr std::string_view kValueOptions[] = {
    "CONTEXT_INFO", "DATEFIRST",    "DATEFORMAT", "DEADLOCK_PRIORITY",
    "LANGUAGE",     "LOCK_TIMEOUT", "ROWCOUNT",   "QUERY_GOVERNOR_COST_LIMIT",
    "TEXTSIZE",
};

template <size_t kCount>
bool IsIn(const std::string_view (&options)[kCount], std::string_view name) {
  for (const std::string_view option : options)
    if (option == name) return true;
  return false;
}

}  // namespace

// ---- DECLARE and SET ----

StatementPtr Parser::ParseDeclare() {
  const int line = Take().line;
  if (AtName()) return ParseDeclareCursor(line);
  auto declare = MakeAt<DeclareStatement>(line);
  do declare->variables.push_back(ParseVariableDefinition());
  while (AcceptSymbol(","));
  return declare;
}

VariableDefinition Parser::ParseVariableDefinition() {
  VariableDefinition variable;
  variable.name = TakeVariable();
  Accept(Keyword::kAS);
  if (Accept(Keyword::kTABLE)) {
    variable.table = ParseTableDefinition();
    return variable;
  }
  variable.type = ParseType();
  if (AcceptSymbol("=")) variable.initial = ParseExpression();
  return variable;
}

StatementPtr Parser::ParseSet() {
  const int line = Take().line;
  return Peek().kind == TokenKind::kVariable ? ParseSetVariable(line) : ParseSetOption(line);
}

StatementPtr Parser::ParseSetVariable(int line) {
  auto set = MakeAt<SetVariableStatement>(line);
  auto variable = MakeAt<VariableExpression>(Line());
  set->variable = variable->name = TakeVariable();
  if (AtSymbol(".")) RaiseUnsupported("methods and fields of variables");
  if (AtSymbol("=") && At(Keyword::kCURSOR, 1)) RaiseUnsupported("cursor variables");
  set->value = ParseCompound(std::move(variable));
  return set;
}

StatementPtr Parser::ParseSetOption(int line) {
  auto set = MakeAt<SetOptionStatement>(line);
  if (Peek().kind != TokenKind::kWord) RaiseUnexpected();
  const Token option = Take();
  set->name = UpperCase(option.text);
  if (option.keyword == Keyword::kIDENTITY_INSERT) {
    const size_t begin = Begin();
    TakeObjectName();
    TakeOnOrOff();
    set->value = TextBetween(begin, last_.end);
  } else if (option.keyword == Keyword::kTRANSACTION) {
    ParseIsolationLevel(*set);
  } else if (option.keyword == Keyword::kSTATISTICS) {
    set->name += " " + UpperCase(TakeName());
    set->value = TakeOnOrOff();
  } else if (IsIn(kValueOptions, set->name)) {
    const size_t begin = Begin();
    if (!AcceptSymbol("-")) AcceptSymbol("+");
    if (Peek().kind == TokenKind::kEnd || Peek().kind == TokenKind::kSymbol) RaiseUnexpected();
    Take();
    set->value = TextBetween(begin, last_.end);
  } else if (IsIn(kSwitches, set->name)) {
    ParseSwitches(*set);
  } else {
    if (IsReserved(option.keyword)) RaiseUnexpectedAt(option);
    Raise(errors::kUnknownFunction, {option.text, "SET option"});
  }
  return set;
}

std::string Parser::TakeOnOrOff() {
  if (!At(Keyword::kON) && !At(Keyword::kOFF)) RaiseUnexpected();
  return UpperCase(Take().text);
}

void Parser::ParseIsolationLevel(SetOptionStatement& set) {
  ExpectWord("ISOLATION");
  ExpectWord("LEVEL");
  set.name = "TRANSACTION ISOLATION LEVEL";
  const size_t begin = Begin();
  if (Accept(Keyword::kREAD)) {
    if (!AcceptWord("COMMITTED")) ExpectWord("UNCOMMITTED");
  } else if (AcceptWord("REPEATABLE")) {
    Expect(Keyword::kREAD);
  } else if (!AcceptWord("SNAPSHOT")) {
    ExpectWord("SERIALIZABLE");
  }
  set.value = UpperCase(TextBetween(begin, last_.end));
}

// The first switch is taken already; several may be set at once.
void Parser::ParseSwitches(SetOptionStatement& set) {
  while (AcceptSymbol(",")) {
    if (!IsIn(kSwitches, UpperCase(Peek().text))) RaiseUnexpected();
    set.name += "," + UpperCase(Take().text);
  }
  // Then "x" would be a text, and the batch would have been read wrongly.
  if (At(Keyword::kOFF) && (set.name.find("QUOTED_IDENTIFIER") != std::string::npos ||
                            set.name.find("ANSI_DEFAULTS") != std::string::npos))
    RaiseUnsupported("QUOTED_IDENTIFIER OFF");
  set.value = TakeOnOrOff();
}

// ---- Cursors ----

std::string Parser::TakeCursorName() {
  if (Peek().kind == TokenKind::kVariable) RaiseUnsupported("cursor variables");
  if (AtWord("GLOBAL") && AtName(1)) Take();
  return TakeName();
}

StatementPtr Parser::ParseDeclareCursor(int line) {
  auto declare = MakeAt<DeclareCursorStatement>(line);
  declare->name = TakeName();
  // The options before the word CURSOR are those of the standard.
  if (AcceptWord("INSENSITIVE")) declare->sight = DeclareCursorStatement::Sight::kStatic;
  declare->scroll = AcceptWord("SCROLL");
  Expect(Keyword::kCURSOR);
  ParseCursorOptions(*declare);
  Expect(Keyword::kFOR);
  ParseOptionalWith();
  if (!At(Keyword::kSELECT) && !AtSymbol("(")) RaiseUnexpected();
  declare->query = ParseQuery();
  declare->query->with = TakeWith();
  if (At(Keyword::kFOR) && At(Keyword::kREAD, 1)) {
    Take();
    Take();
    ExpectWord("ONLY");
    declare->read_only = true;
  } else if (Accept(Keyword::kFOR)) {
    Expect(Keyword::kUPDATE);
    if (Accept(Keyword::kOF)) do
        TakeName();
      while (AcceptSymbol(","));
  }
  return declare;
}

// The server's own options. Those that say how rows are locked have no effect here.
void Parser::ParseCursorOptions(DeclareCursorStatement& declare) {
  using Sight = DeclareCursorStatement::Sight;
  bool forward_only = false;
  while (!At(Keyword::kFOR)) {
    if (AcceptWord("LOCAL")) {
      declare.local = true;
    } else if (AcceptWord("STATIC")) {
      declare.sight = Sight::kStatic;
    } else if (AcceptWord("KEYSET")) {
      declare.sight = Sight::kKeyset;
    } else if (AcceptWord("DYNAMIC")) {
      declare.sight = Sight::kDynamic;
    } else if (AcceptWord("READ_ONLY")) {
      declare.read_only = true;
    } else if (AcceptWord("SCROLL")) {
      declare.scroll = true;
    } else if (AcceptWord("FORWARD_ONLY")) {
      forward_only = true;
    } else if (AcceptWord("FAST_FORWARD")) {
      forward_only = declare.read_only = true;
    } else if (!AcceptWord("GLOBAL") && !AcceptWord("SCROLL_LOCKS") && !AcceptWord("OPTIMISTIC") &&
               !AcceptWord("TYPE_WARNING")) {
      RaiseUnexpected();
    }
  }
  if (forward_only && declare.scroll)
    Raise(errors::kConflictingCursorOptions, {"SCROLL", "FORWARD_ONLY"});
  const bool standard = last_.keyword == Keyword::kCURSOR;
  if (declare.sight != Sight::kUnsaid && !forward_only && !standard) declare.scroll = true;
}

StatementPtr Parser::ParseCursorStatement(CursorStatement::What what) {
  auto statement = MakeAt<CursorStatement>(Take().line);
  statement->what = what;
  if (At(Keyword::kKEY) || AtWord("SYMMETRIC") || AtWord("MASTER")) RaiseUnsupported("keys");
  statement->name = TakeCursorName();
  return statement;
}

// A cursor may bear the name of a direction: FETCH NEXT INTO @a reads from a cursor called NEXT.
void Parser::ParseFetchDirection(FetchStatement& fetch) {
  using Direction = FetchStatement::Direction;
  if (AtWord("ABSOLUTE") || AtWord("RELATIVE")) {
    if (At(Keyword::kINTO, 1)) return;
    fetch.direction = AtWord("ABSOLUTE") ? Direction::kAbsolute : Direction::kRelative;
    Take();
    fetch.offset = ToExpression(ParseFactor());
    return;
  }
  constexpr std::pair<std::string_view, Direction> kDirections[] = {
      {"NEXT", Direction::kNext},
      {"PRIOR", Direction::kPrior},
      {"FIRST", Direction::kFirst},
      {"LAST", Direction::kLast},
  };
  for (const auto& [word, direction] : kDirections) {
    if (!AtWord(word) || !(At(Keyword::kFROM, 1) || AtName(1))) continue;
    Take();
    fetch.direction = direction;
    return;
  }
}

StatementPtr Parser::ParseFetch() {
  auto fetch = MakeAt<FetchStatement>(Take().line);
  ParseFetchDirection(*fetch);
  Accept(Keyword::kFROM);
  fetch->cursor = TakeCursorName();
  if (Accept(Keyword::kINTO)) {
    do fetch->variables.push_back(TakeVariable());
    while (AcceptSymbol(","));
  }
  return fetch;
}

// ---- Calls ----

StatementPtr Parser::ParseExecute() {
  const int line = Take().line;
  if (AtSymbol("(")) return ParseExecuteText(line);
  if (At(Keyword::kAS)) RaiseUnsupported("EXECUTE AS");
  return ParseCall(line);
}

// EXEC('text' + @v): only texts and variables may be joined here, as on the server.
StatementPtr Parser::ParseExecuteText(int line) {
  auto execute = MakeAt<ExecuteTextStatement>(line);
  ExpectSymbol("(");
  const auto part = [&]() -> ExpressionPtr {
    if (AtText()) return ParseLiteral();
    if (Peek().kind != TokenKind::kVariable) RaiseUnexpected();
    return ParseVariableReference();
  };
  Chain chain(*this);
  execute->text = part();
  while (AcceptSymbol("+")) {
    chain.Deepen();
    ExpressionPtr left = std::move(execute->text);
    const int left_line = left->line;
    execute->text = Binary(BinaryExpression::Operator::kAdd, std::move(left), part(), left_line);
  }
  ExpectSymbol(")");
  if (At(Keyword::kAS) || AtWord("AT")) RaiseUnsupported("EXECUTE of a text AS or AT");
  return execute;
}

StatementPtr Parser::ParseCall(int line) {
  auto call = MakeAt<ExecuteProcedureStatement>(line);
  if (Peek().kind == TokenKind::kVariable && AtSymbol("=", 1)) {
    call->return_variable = TakeVariable();
    Take();
  }
  if (Peek().kind == TokenKind::kVariable)
    RaiseUnsupported("EXECUTE of a procedure that a variable names");
  call->name = TakeObjectName();
  if (AtSymbol(";") && Peek(1).kind == TokenKind::kInteger) RaiseUnsupported("numbered procedures");
  if (AtExecuteArgument()) do
      call->arguments.push_back(ParseExecuteArgument());
    while (AcceptSymbol(","));
  CheckNamesToTheEnd(*call);
  if (At(Keyword::kWITH) && AtWord("RECOMPILE", 1)) {
    Take();
    Take();
  }
  return call;
}

void Parser::CheckNamesToTheEnd(const ExecuteProcedureStatement& call) {
  bool named = false;
  for (size_t i = 0; i < call.arguments.size(); ++i) {
    if (named && call.arguments[i].parameter.empty()) {
      RaiseAt(call.line, errors::kPositionalAfterNamedArgument, {static_cast<int64_t>(i) + 1});
    }
    named = !call.arguments[i].parameter.empty();
  }
}

bool Parser::AtExecuteArgument() {
  switch (Peek().kind) {
    case TokenKind::kEnd:
      return false;
    case TokenKind::kWord:
      return !IsReserved(Peek().keyword) || At(Keyword::kNULL) || At(Keyword::kDEFAULT);
    case TokenKind::kSymbol:
      return AtSymbol("-") || AtSymbol("+");
    default:
      return true;
  }
}

// Constants, variables, DEFAULT, and a bare word, which stands for its own text.
ExecuteArgument Parser::ParseExecuteArgument() {
  ExecuteArgument argument;
  if (Peek().kind == TokenKind::kVariable && AtSymbol("=", 1)) {
    argument.parameter = TakeVariable();
    Take();
  }
  const Token token(Peek());
  if (Accept(Keyword::kDEFAULT)) return argument;
  if (AtName()) {
    auto literal = MakeAt<LiteralExpression>(token.line);
    literal->form = LiteralExpression::Form::kNationalText;
    literal->text = TakeName();
    argument.value = std::move(literal);
  } else if (AtSymbol("-") || AtSymbol("+")) {
    auto unary = MakeAt<UnaryExpression>(token.line);
    unary->op =
        Take().text == "-" ? UnaryExpression::Operator::kMinus : UnaryExpression::Operator::kPlus;
    if (Peek().kind < TokenKind::kInteger || Peek().kind > TokenKind::kFloat) RaiseUnexpected();
    unary->operand = ParseLiteral();
    argument.value = std::move(unary);
  } else if (At(Keyword::kNULL) || token.kind == TokenKind::kVariable || AtText() ||
             (token.kind >= TokenKind::kInteger && token.kind <= TokenKind::kBinary)) {
    argument.value = ToExpression(ParsePrimary());
  } else {
    RaiseUnexpected();
  }
  argument.output = AcceptWord("OUTPUT") || AcceptWord("OUT");
  return argument;
}

}  // namespace tavcc::sql
