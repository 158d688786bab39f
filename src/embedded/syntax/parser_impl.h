// The parser's inside: one member function per construct, in the files parse_*.cpp.
//
// It is a plain recursive descent. Two things are out of the ordinary. A bracket in a condition may
// hold a condition, a value or a query, and nothing but its content tells which, so the functions
// for values and conditions pass a Parsed along that is one of the three. And every recursion
// passes a Nest, which keeps both the parser's own depth and the depth of the tree within bounds.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "embedded/error.h"
#include "embedded/syntax/ast.h"
#include "embedded/syntax/lexer.h"
#include "foundation/text.h"

namespace tavcc::sql {

// How tightly the operators of arithmetic bind, the loosest first.
enum class Precedence : uint8_t { kSum, kProduct };

struct OperatorRule {
  std::string_view symbol;
  BinaryOperator op;
  Precedence precedence;
};
// Null when the symbol is no operator.
const OperatorRule* FindOperator(std::string_view symbol);

class Parser {
 public:
  explicit Parser(std::string_view text) : lexer_(text) {}

  Batch Run();
  ExpressionPtr RunExpression();

 private:
  // What a bracket, or anything that may begin with one, turned out to be. Exactly one is set.
  struct Parsed {
    ExpressionPtr expression;
    ConditionPtr condition;
    QueryPtr query;
  };

  // One level of the parser's recursion and of the tree it builds.
  class Nest {
   public:
    explicit Nest(Parser& parser);
    ~Nest();
    Nest(const Nest&) = delete;
    Nest& operator=(const Nest&) = delete;

   private:
    Parser& parser_;
    const int height_of_siblings_;
  };

  // While one lives, literals are part of what the batch says, not parameters of it.
  class Constants {
   public:
    explicit Constants(Parser& parser) : parser_(parser) { ++parser_.constants_; }
    ~Constants() { --parser_.constants_; }
    Constants(const Constants&) = delete;
    Constants& operator=(const Constants&) = delete;

   private:
    Parser& parser_;
  };

  // One level of CASE.
  class CaseNest {
   public:
    explicit CaseNest(Parser& parser);
    ~CaseNest();
    CaseNest(const CaseNest&) = delete;
    CaseNest& operator=(const CaseNest&) = delete;

   private:
    Parser& parser_;
    const Nest nest_;
  };

  // A row of operators, which builds a tree that leans to the left.
  class Chain {
   public:
    explicit Chain(Parser& parser);
    ~Chain();
    Chain(const Chain&) = delete;
    Chain& operator=(const Chain&) = delete;
    // What was parsed of the row so far becomes the left side of a further operator.
    void Deepen();

   private:
    Parser& parser_;
    const int height_of_siblings_;
  };

  // ---- Tokens (parser.cpp) ----
  const Token& Peek(size_t ahead = 0) { return lexer_.Peek(ahead); }
  Token Take();
  bool At(Keyword keyword, size_t ahead = 0) { return Peek(ahead).keyword == keyword; }
  bool AtSymbol(std::string_view symbol, size_t ahead = 0);
  bool AtWord(std::string_view upper, size_t ahead = 0);  // a word that is not reserved
  bool AtName(size_t ahead = 0);                          // a bare or quoted name
  bool AtText(size_t ahead = 0);
  bool Accept(Keyword keyword);
  bool AcceptSymbol(std::string_view symbol);
  bool AcceptWord(std::string_view upper);
  void Expect(Keyword keyword);
  void ExpectSymbol(std::string_view symbol);
  void ExpectWord(std::string_view upper);
  int Line() { return Peek().line; }
  size_t Begin() { return Peek().begin; }
  std::string TextBetween(size_t begin, size_t end) const;
  std::string TakeName();
  std::string TakeVariable();
  ObjectName TakeObjectName();
  std::vector<std::string> TakeNameList();  // (a, b), the bracket already seen
  ObjectName TakeTableName();               // also of a table variable
  // Takes brackets and all that is in them; the word `refused`, when given, may not be.
  void SkipBrackets(std::string_view refused = {});
  // An item of GROUP BY or ORDER BY, which must be found again in the select list: a literal in it,
  // ordinals excepted, keeps the batch from being shared.
  ExpressionPtr ParseListItem();

  // ---- Errors (parser.cpp) ----
  [[noreturn]] void RaiseUnexpected();
  [[noreturn]] void RaiseUnexpectedAt(const Token& token);
  [[noreturn]] void RaiseTooDeep();
  [[noreturn]] void RaiseUnsupported(std::string_view construct);
  // An error of the table in errors.def, on the line of the current token.
  [[noreturn]] void Raise(errors::Number number, std::initializer_list<ErrorArgument> arguments);
  [[noreturn]] void RaiseAt(int line, errors::Number number,
                            std::initializer_list<ErrorArgument> arguments);
  // As much of the batch's own text as an error text repeats.
  static std::string Excerpt(std::string_view text);

  // ---- Statements (parse_statement.cpp) ----
  std::vector<StatementPtr> ParseStatementsToEnd();
  StatementPtr ParseStatement();
  StatementPtr ParseStatementOf(Keyword keyword);
  StatementPtr ParseWordStatement();
  StatementPtr ParseWithStatement();
  StatementPtr ParseBegin();
  StatementPtr ParseBranch();
  StatementPtr ParseIf();
  StatementPtr ParseWhile();
  StatementPtr ParseReturn();
  StatementPtr ParsePrint();
  StatementPtr ParseRaisError();
  StatementPtr ParseTransaction(TransactionStatement::What what);
  void AcceptSemicolons();
  bool AtValue();

  // ---- Variables, cursors, calls (parse_procedural.cpp) ----
  StatementPtr ParseDeclare();
  StatementPtr ParseDeclareCursor(int line);
  void ParseCursorOptions(DeclareCursorStatement& declare);
  void ParseFetchDirection(FetchStatement& fetch);
  VariableDefinition ParseVariableDefinition();
  StatementPtr ParseSet();
  StatementPtr ParseSetVariable(int line);
  StatementPtr ParseSetOption(int line);
  std::string TakeOnOrOff();
  void ParseIsolationLevel(SetOptionStatement& set);
  void ParseSwitches(SetOptionStatement& set);
  StatementPtr ParseCursorStatement(CursorStatement::What what);
  StatementPtr ParseFetch();
  StatementPtr ParseExecute();
  StatementPtr ParseExecuteText(int line);
  StatementPtr ParseCall(int line);
  ExecuteArgument ParseExecuteArgument();
  void CheckNamesToTheEnd(const ExecuteProcedureStatement& call);
  bool AtExecuteArgument();
  std::string TakeCursorName();

  // ---- Changes of rows (parse_change.cpp) ----
  StatementPtr ParseInsert();
  StatementPtr ParseUpdate();
  StatementPtr ParseDelete();
  StatementPtr ParseTruncate();
  void ParseRows(InsertStatement& insert);
  Assignment ParseAssignment();
  ExpressionPtr ParseCompound(ExpressionPtr target);
  ObjectName TakeTarget();
  void CheckNoOutputClause();
  ConditionPtr ParseOptionalWhere(std::string& current_of);

  // ---- Definitions (parse_ddl.cpp) ----
  StatementPtr ParseCreate();
  StatementPtr ParseCreateTable(int line);
  StatementPtr ParseCreateIndex(int line);
  StatementPtr ParseCreateView(int line);
  StatementPtr ParseCreateProcedure(int line, size_t begin);
  ParameterDefinition ParseParameter();
  StatementPtr ParseDrop();
  StatementPtr ParseDropIndex(std::unique_ptr<DropStatement> drop);
  StatementPtr ParseAlter();
  TableDefinition ParseTableDefinition();  // (…), the bracket not yet taken
  void ParseTableElement(TableDefinition& table);
  void ParseTableConstraint(TableDefinition& table, std::string name);
  void ParseColumn(TableDefinition& table);
  bool ParseColumnOption(ColumnDefinition& column);
  void ParseIdentity(ColumnDefinition& column);
  int64_t ParseSignedInteger();
  std::vector<std::string> ParseKeyColumns();
  void SkipKeyOptions();
  TypeName ParseType();
  void ParseTypeArguments(TypeName& type);
  void CheckFirstInBatch(std::string_view what);

  // ---- WITH (parse_with.cpp) ----
  // Takes a WITH clause, if there is one, for the statement that follows.
  void ParseOptionalWith();
  CommonTable ParseCommonTable();
  // The statement's own, when all of it is parsed.
  WithClause TakeWith() { return std::exchange(with_, {}); }
  void ParseQueryOption();
  void ParseMaxRecursion();
  int64_t TakeWholeNumber();

  // ---- Queries (parse_query.cpp, parse_source.cpp) ----
  QueryPtr ParseQuery();            // with ORDER BY
  QueryPtr ParseQueryExpression();  // without
  QueryPtr ContinueQuery(QueryPtr first);
  QueryPtr ParseIntersection(QueryPtr first);
  QueryPtr ParseQueryTerm();
  QueryPtr ParseSelectBlock();
  void ParseOrderBy(Query& query);
  void ParseOrderDirection(OrderItem& item);
  QueryPtr Combine(QueryPtr left, Query::SetOperator op, QueryPtr right);
  std::optional<TopClause> ParseOptionalTop();
  SelectItem ParseSelectItem();
  bool ParseStar(SelectItem& item);
  void ParseOptionalAlias(SelectItem& item);
  void ParseGroupBy(SelectBlock& block);
  std::vector<TableSourcePtr> ParseFromList();
  TableSourcePtr ParseTableSource();
  TableSourcePtr ContinueJoins(TableSourcePtr left, bool until_on);
  bool ParseJoinWords(JoinedTable::Join& join);
  TableSourcePtr ParseTablePrimary(bool bracketed);
  TableSourcePtr ParseBracketedSource(bool bracketed);
  TableSourcePtr ParseNamedTable();
  TableSourcePtr FinishDerivedTable(QueryPtr query, int line, bool bracketed);
  std::string ParseOptionalTableAlias();
  bool AtLegacyHints();
  void ParseHints(std::vector<std::string>& hints);
  void CheckNoTableSuffix();

  // ---- Values (parse_expression.cpp) ----
  ExpressionPtr ParseExpression();
  Parsed ParseOperators(Precedence precedence);
  Parsed ParseFactor();
  Parsed ParsePrimary();
  Parsed ParseBracket();
  ExpressionPtr ParseLiteral();
  void NumberLiteral(const Token& token, LiteralExpression& literal);
  ExpressionPtr ParseVariableReference();
  ExpressionPtr ParseKeywordValue();
  ExpressionPtr ParseKeywordCall();
  ExpressionPtr ParseNameOrCall();
  ExpressionPtr ParseCase();
  ExpressionPtr ParseCast();
  ExpressionPtr ParseConvert();
  ExpressionPtr ParseIif();
  ExpressionPtr ParseCallOf(ObjectName name, int line);
  void ParseArguments(FunctionExpression& call);
  ExpressionPtr ToExpression(Parsed parsed);
  ExpressionPtr Binary(BinaryExpression::Operator op, ExpressionPtr left, ExpressionPtr right,
                       int line);

  // ---- OVER (parse_window.cpp) ----
  std::unique_ptr<WindowClause> ParseOver();
  WindowFrame ParseFrame();
  FrameBound ParseFrameBound();

  // ---- Conditions (parse_condition.cpp) ----
  ConditionPtr ParseCondition();
  Parsed ParseConditionOrValue();
  Parsed ParseConjunction();
  Parsed ParseChain(Keyword word, LogicalCondition::Operator op, Parsed (Parser::*parse_operand)());
  Parsed ParseNegation();
  Parsed ParsePredicate();
  ConditionPtr ParseExists();
  bool AtComparison();
  ComparisonCondition::Operator TakeComparison();
  ConditionPtr ParseComparison(ExpressionPtr left);
  ConditionPtr ParseIs(ExpressionPtr operand);
  ConditionPtr ParseIn(ExpressionPtr operand, bool negated);
  ConditionPtr ParseBetween(ExpressionPtr operand, bool negated);
  ConditionPtr ParseLike(ExpressionPtr operand, bool negated);
  ConditionPtr ToCondition(Parsed parsed);

  Lexer lexer_;
  Token last_;  // the token taken last
  // Which literals are parameters: see Batch.
  int constants_ = 0;      // how many Constants live
  int constants_met_ = 0;  // literals so far that are none
  std::vector<size_t> literals_;
  bool shareable_ = true;
  std::vector<std::string> table_variables_;
  bool first_statement_ = true;
  bool unterminated_ = false;  // the statement before the present one has no semicolon
  WithClause with_;            // of the statement at hand
  int depth_ = 0;
  int cases_ = 0;   // around the present place
  int height_ = 0;  // of the tallest tree parsed on the present level
};

template <typename Node>
std::unique_ptr<Node> MakeAt(int line) {
  auto node = std::make_unique<Node>();
  node->line = line;
  return node;
}

}  // namespace tavcc::sql
