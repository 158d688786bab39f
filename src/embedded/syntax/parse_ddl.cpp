// CREATE, ALTER TABLE … ADD and DROP.
#include <charconv>

#include "embedded/syntax/parser_impl.h"

namespace tavcc::sql {

void Parser::CheckFirstInBatch(std::string_view what) {
  if (!first_statement_) Raise(errors::kNotFirstInBatch, {what});
}

StatementPtr Parser::ParseCreate() {
  const size_t begin = Begin();
  const int line = Take().line;
  switch (Peek().keyword) {
    case Keyword::kTABLE:
      return ParseCreateTable(line);
    case Keyword::kUNIQUE:
    case Keyword::kCLUSTERED:
    case Keyword::kNONCLUSTERED:
    case Keyword::kINDEX:
      return ParseCreateIndex(line);
    case Keyword::kVIEW:
      CheckFirstInBatch("CREATE VIEW");
      return ParseCreateView(line);
    case Keyword::kPROC:
    case Keyword::kPROCEDURE:
      CheckFirstInBatch("CREATE/ALTER PROCEDURE");
      return ParseCreateProcedure(line, begin);
    case Keyword::kOR:
      RaiseUnsupported("CREATE OR ALTER");
    default:
      break;
  }
  if (Peek().kind != TokenKind::kWord) RaiseUnexpected();
  RaiseUnsupported("CREATE " + std::string(Peek().text));
}

StatementPtr Parser::ParseCreateTable(int line) {
  Take();
  auto create = MakeAt<CreateTableStatement>(line);
  create->name = TakeObjectName();
  if (At(Keyword::kAS)) RaiseUnsupported("CREATE TABLE AS");
  create->definition = ParseTableDefinition();
  if (Accept(Keyword::kON)) TakeName();  // a file group
  if (At(Keyword::kWITH) && AtSymbol("(", 1)) RaiseUnsupported("options of CREATE TABLE");
  return create;
}

StatementPtr Parser::ParseCreateIndex(int line) {
  auto create = MakeAt<CreateIndexStatement>(line);
  create->unique = Accept(Keyword::kUNIQUE);
  if (!Accept(Keyword::kCLUSTERED)) Accept(Keyword::kNONCLUSTERED);
  Expect(Keyword::kINDEX);
  create->name = TakeName();
  Expect(Keyword::kON);
  create->table = TakeObjectName();
  create->columns = ParseKeyColumns();
  if (AtWord("INCLUDE")) {
    Take();
    TakeNameList();  // columns that are only carried along
  }
  if (Accept(Keyword::kWHERE)) {
    const Constants constants(*this);
    create->filter = ParseCondition();
  }
  SkipKeyOptions();
  return create;
}

StatementPtr Parser::ParseCreateView(int line) {
  Take();
  auto create = MakeAt<CreateViewStatement>(line);
  create->name = TakeObjectName();
  if (AtSymbol("(")) create->columns = TakeNameList();
  if (At(Keyword::kWITH)) RaiseUnsupported("options of CREATE VIEW");
  Expect(Keyword::kAS);
  const size_t begin = Begin();
  const Constants constants(*this);
  ParseOptionalWith();
  create->query = ParseQuery();
  create->query->with = TakeWith();
  create->text = TextBetween(begin, last_.end);
  if (At(Keyword::kWITH)) RaiseUnsupported("WITH CHECK OPTION");
  AcceptSemicolons();
  if (Peek().kind != TokenKind::kEnd) RaiseUnexpected();  // a view is alone in its batch
  return create;
}

// The body goes to the end of the batch.
StatementPtr Parser::ParseCreateProcedure(int line, size_t begin) {
  Take();
  auto create = MakeAt<CreateProcedureStatement>(line);
  create->name = TakeObjectName();
  if (AtSymbol(";")) RaiseUnsupported("numbered procedures");
  const Constants constants(*this);
  const bool bracketed = AtSymbol("(") && Peek(1).kind == TokenKind::kVariable;
  if (bracketed) Take();
  if (Peek().kind == TokenKind::kVariable) do
      create->parameters.push_back(ParseParameter());
    while (AcceptSymbol(","));
  if (bracketed) ExpectSymbol(")");
  if (Accept(Keyword::kWITH) && !AcceptWord("RECOMPILE"))
    RaiseUnsupported("options of CREATE PROCEDURE other than RECOMPILE");
  if (At(Keyword::kFOR)) RaiseUnsupported("FOR REPLICATION");
  Expect(Keyword::kAS);
  if (AtWord("EXTERNAL") || At(Keyword::kEXTERNAL)) RaiseUnsupported("external procedures");
  first_statement_ = false;
  create->body = ParseStatementsToEnd();
  if (create->body.empty()) RaiseUnexpected();
  create->text = TextBetween(begin, lexer_.text().size());
  return create;
}

ParameterDefinition Parser::ParseParameter() {
  ParameterDefinition parameter;
  parameter.name = TakeVariable();
  Accept(Keyword::kAS);
  if (At(Keyword::kCURSOR)) RaiseUnsupported("cursor parameters");
  parameter.type = ParseType();
  if (At(Keyword::kNULL)) Take();  // every parameter takes nulls
  if (AcceptSymbol("=")) parameter.default_value = ParseExpression();
  parameter.output = AcceptWord("OUTPUT") || AcceptWord("OUT");
  if (AtWord("READONLY")) RaiseUnsupported("table-valued parameters");
  return parameter;
}

StatementPtr Parser::ParseDrop() {
  auto drop = MakeAt<DropStatement>(Take().line);
  switch (Peek().keyword) {
    case Keyword::kTABLE:
      drop->what = DropStatement::What::kTable;
      break;
    case Keyword::kVIEW:
      drop->what = DropStatement::What::kView;
      break;
    case Keyword::kPROC:
    case Keyword::kPROCEDURE:
      drop->what = DropStatement::What::kProcedure;
      break;
    case Keyword::kINDEX:
      drop->what = DropStatement::What::kIndex;
      break;
    default:
      if (Peek().kind != TokenKind::kWord) RaiseUnexpected();
      RaiseUnsupported("DROP " + std::string(Peek().text));
  }
  Take();
  if (Accept(Keyword::kIF)) {
    Expect(Keyword::kEXISTS);
    drop->if_exists = true;
  }
  if (drop->what == DropStatement::What::kIndex) return ParseDropIndex(std::move(drop));
  do drop->names.push_back(TakeObjectName());
  while (AcceptSymbol(","));
  return drop;
}

// DROP INDEX name ON table, or the older DROP INDEX table.name.
StatementPtr Parser::ParseDropIndex(std::unique_ptr<DropStatement> drop) {
  ObjectName name = TakeObjectName();
  if (Accept(Keyword::kON)) {
    if (name.parts.size() > 1) RaiseUnexpected();
    drop->on_table = TakeObjectName();
  } else {
    if (name.parts.size() < 2) RaiseUnexpected();
    drop->on_table.parts.assign(name.parts.begin(), name.parts.end() - 1);
    name.parts.erase(name.parts.begin(), name.parts.end() - 1);
  }
  drop->names.push_back(std::move(name));
  if (AtSymbol(",")) RaiseUnsupported("DROP INDEX of several indexes");
  return drop;
}

StatementPtr Parser::ParseAlter() {
  const int line = Take().line;
  if (!At(Keyword::kTABLE)) {
    if (Peek().kind != TokenKind::kWord) RaiseUnexpected();
    RaiseUnsupported("ALTER " + std::string(Peek().text));
  }
  Take();
  auto alter = MakeAt<AlterTableAddStatement>(line);
  alter->name = TakeObjectName();
  if (Accept(Keyword::kWITH) && !Accept(Keyword::kCHECK)) Expect(Keyword::kNOCHECK);
  if (!Accept(Keyword::kADD)) {
    if (Peek().kind != TokenKind::kWord) RaiseUnexpected();
    RaiseUnsupported("ALTER TABLE " + std::string(Peek().text));
  }
  do ParseTableElement(alter->definition);
  while (AcceptSymbol(","));
  return alter;
}

TableDefinition Parser::ParseTableDefinition() {
  TableDefinition table;
  ExpectSymbol("(");
  do ParseTableElement(table);
  while (AcceptSymbol(","));
  ExpectSymbol(")");
  return table;
}

void Parser::ParseTableElement(TableDefinition& table) {
  const Constants constants(*this);
  if (Accept(Keyword::kCONSTRAINT)) {
    std::string name = TakeName();
    ParseTableConstraint(table, std::move(name));
    return;
  }
  switch (Peek().keyword) {
    case Keyword::kPRIMARY:
    case Keyword::kUNIQUE:
    case Keyword::kCHECK:
    case Keyword::kFOREIGN:
    case Keyword::kDEFAULT:
      ParseTableConstraint(table, {});
      return;
    case Keyword::kINDEX:
      RaiseUnsupported("indexes inside CREATE TABLE");
    default:
      ParseColumn(table);
  }
}

void Parser::ParseTableConstraint(TableDefinition& table, std::string name) {
  if (At(Keyword::kCHECK)) RaiseUnsupported("CHECK constraints");
  if (At(Keyword::kFOREIGN)) RaiseUnsupported("FOREIGN KEY constraints");
  if (At(Keyword::kDEFAULT)) RaiseUnsupported("DEFAULT constraints outside of a column");
  KeyDefinition key;
  key.name = std::move(name);
  key.primary = Accept(Keyword::kPRIMARY);
  Expect(key.primary ? Keyword::kKEY : Keyword::kUNIQUE);
  if (!Accept(Keyword::kCLUSTERED)) Accept(Keyword::kNONCLUSTERED);
  key.columns = ParseKeyColumns();
  SkipKeyOptions();
  table.keys.push_back(std::move(key));
}

// (a, b DESC): the order of a key's columns has no effect on results.
std::vector<std::string> Parser::ParseKeyColumns() {
  std::vector<std::string> columns;
  ExpectSymbol("(");
  do {
    columns.push_back(TakeName());
    if (!Accept(Keyword::kASC)) Accept(Keyword::kDESC);
  } while (AcceptSymbol(","));
  ExpectSymbol(")");
  return columns;
}

// WITH (FILLFACTOR = 80), ON [PRIMARY]: how the server lays out the data. One option changes what a
// statement does.
void Parser::SkipKeyOptions() {
  if (At(Keyword::kWITH)) {
    Take();
    if (Accept(Keyword::kFILLFACTOR)) {
      ExpectSymbol("=");
      ParseSignedInteger();
    } else {
      SkipBrackets("IGNORE_DUP_KEY");
    }
  }
  if (Accept(Keyword::kON)) TakeName();
}

void Parser::ParseColumn(TableDefinition& table) {
  ColumnDefinition column;
  column.line = Line();
  column.name = TakeName();
  if (At(Keyword::kAS)) RaiseUnsupported("computed columns");
  if (AtSymbol(",") || AtSymbol(")")) Raise(errors::kColumnWithoutType, {column.name});
  column.type = ParseType();
  while (ParseColumnOption(column)) {
  }
  table.columns.push_back(std::move(column));
}

// False when no option of a column follows.
bool Parser::ParseColumnOption(ColumnDefinition& column) {
  if (Accept(Keyword::kCONSTRAINT)) TakeName();  // the name of the option that follows
  switch (Peek().keyword) {
    case Keyword::kNULL:
      Take();
      column.nullable = true;
      return true;
    case Keyword::kNOT:
      Take();
      Expect(Keyword::kNULL);
      column.nullable = false;
      return true;
    case Keyword::kIDENTITY:
      ParseIdentity(column);
      return true;
    case Keyword::kDEFAULT:
      Take();
      column.default_value = ParseExpression();
      if (At(Keyword::kWITH) && At(Keyword::kVALUES, 1)) RaiseUnsupported("DEFAULT … WITH VALUES");
      return true;
    case Keyword::kPRIMARY:
    case Keyword::kUNIQUE:
      (At(Keyword::kPRIMARY) ? column.primary_key : column.unique) = true;
      if (Take().keyword == Keyword::kPRIMARY) Expect(Keyword::kKEY);
      if (!Accept(Keyword::kCLUSTERED)) Accept(Keyword::kNONCLUSTERED);
      SkipKeyOptions();
      return true;
    case Keyword::kCHECK:
      RaiseUnsupported("CHECK constraints");
    case Keyword::kREFERENCES:
    case Keyword::kFOREIGN:
      RaiseUnsupported("FOREIGN KEY constraints");
    case Keyword::kCOLLATE:
      RaiseUnsupported("COLLATE");
    case Keyword::kROWGUIDCOL:
      RaiseUnsupported("ROWGUIDCOL");
    default:
      break;
  }
  if (AtWord("SPARSE") || AtWord("FILESTREAM") || AtWord("MASKED") || AtWord("GENERATED"))
    RaiseUnsupported("the column option " + std::string(Peek().text));
  return false;
}

// IDENTITY, IDENTITY(seed, increment)
void Parser::ParseIdentity(ColumnDefinition& column) {
  Take();
  column.identity = true;
  if (AcceptSymbol("(")) {
    column.identity_seed = ParseSignedInteger();
    ExpectSymbol(",");
    column.identity_increment = ParseSignedInteger();
    ExpectSymbol(")");
  }
  if (At(Keyword::kNOT) && At(Keyword::kFOR, 1)) RaiseUnsupported("NOT FOR REPLICATION");
}

int64_t Parser::ParseSignedInteger() {
  const bool negative = AcceptSymbol("-");
  if (!negative) AcceptSymbol("+");
  if (Peek().kind != TokenKind::kInteger) RaiseUnexpected();
  const Token token = Take();
  int64_t value = 0;
  const char* const end = token.text.data() + token.text.size();
  if (std::from_chars(token.text.data(), end, value).ec != std::errc()) RaiseUnexpectedAt(token);
  return negative ? -value : value;
}

// int, decimal(28, 10), nvarchar(max), [varchar](20), double precision
TypeName Parser::ParseType() {
  TypeName type;
  if (Accept(Keyword::kDOUBLE)) {
    Expect(Keyword::kPRECISION);
    type.name = "float";
    return type;
  }
  if (At(Keyword::kNATIONAL)) RaiseUnsupported("NATIONAL CHARACTER");
  if (At(Keyword::kCURSOR)) RaiseUnsupported("cursor variables");
  ObjectName name = TakeObjectName();
  if (name.parts.size() > 1) RaiseUnsupported("types with a schema");
  type.name = name.last();
  if (At(Keyword::kVARYING)) RaiseUnsupported("CHARACTER VARYING");
  if (AtSymbol("(")) ParseTypeArguments(type);
  if (At(Keyword::kCOLLATE)) RaiseUnsupported("COLLATE");
  return type;
}

void Parser::ParseTypeArguments(TypeName& type) {
  Take();
  do {
    if (AcceptWord("MAX")) {
      type.arguments.push_back(SqlType::kMax);
      continue;
    }
    if (Peek().kind != TokenKind::kInteger) RaiseUnexpected();
    const Token token = Take();
    int value = 0;
    const char* const end = token.text.data() + token.text.size();
    const bool fits = std::from_chars(token.text.data(), end, value).ec == std::errc();
    if (!fits || value > 0x7FFF)
      Raise(errors::kInvalidLengthSpecification, {Line(), token.text.substr(0, 40)});
    type.arguments.push_back(value);
  } while (AcceptSymbol(","));
  ExpectSymbol(")");
}

}  // namespace tavcc::sql
