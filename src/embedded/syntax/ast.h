// The parsed tree: what a batch says, before any name or type is looked up.
//
// Names are kept as written; nothing is folded, typed or rewritten here. Every node knows the line
// of its first token, for error messages.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "embedded/syntax/node.h"
#include "embedded/types/literals.h"
#include "embedded/types/operators.h"
#include "embedded/types/sql_type.h"
#include "embedded/types/type_name.h"

namespace tavcc::sql {

struct Expression;
struct Condition;
struct TableSource;
struct Query;
struct Statement;
struct WindowClause;

using ExpressionPtr = std::unique_ptr<Expression>;
using ConditionPtr = std::unique_ptr<Condition>;
using TableSourcePtr = std::unique_ptr<TableSource>;
using QueryPtr = std::unique_ptr<Query>;
using StatementPtr = std::unique_ptr<Statement>;

// A possibly qualified name, outermost qualifier first: {"dbo", "t_Stock"}, {"tempdb", "", "#T"}.
// Brackets and quotes are gone; temporary tables keep their "#", table variables their "@".
struct ObjectName {
  std::vector<std::string> parts;
  const std::string& last() const { return parts.back(); }
};

// ---- Expressions (values) ----

struct Expression {
  enum class Kind : uint8_t {
    kLiteral,
    kColumn,
    kVariable,
    kGlobalVariable,
    kUnary,
    kBinary,
    kFunction,
    kConvert,
    kCase,
    kScalarSubquery,
  };
  explicit Expression(Kind k) : kind(k) {}
  virtual ~Expression() = default;
  const Kind kind;
  int line = 0;
};

template <Expression::Kind kind>
using ExpressionOf = NodeOf<Expression, kind>;

struct LiteralExpression final : ExpressionOf<Expression::Kind::kLiteral> {
  using Form = LiteralForm;
  Form form = Form::kNull;
  // Digits as written ("007", "1.50", "1e3"), the text without quotes and with doubled quotes made
  // single, or the hexadecimal digits after 0x.
  std::string text;
  // The number of the parameter that it is (see Batch::literals), -1 when it is none.
  int slot = -1;
};

struct ColumnExpression final : ExpressionOf<Expression::Kind::kColumn> {
  ObjectName name;  // column last
};

struct VariableExpression final : ExpressionOf<Expression::Kind::kVariable> {
  std::string name;  // with its "@"
};

struct GlobalVariableExpression final : ExpressionOf<Expression::Kind::kGlobalVariable> {
  std::string name;  // with its "@@"
};

struct UnaryExpression final : ExpressionOf<Expression::Kind::kUnary> {
  using Operator = UnaryOperator;
  Operator op = Operator::kPlus;
  ExpressionPtr operand;
};

struct BinaryExpression final : ExpressionOf<Expression::Kind::kBinary> {
  using Operator = BinaryOperator;
  Operator op = Operator::kAdd;
  ExpressionPtr left, right;
};

// A function or aggregate call; COUNT(*) has `star`.
struct FunctionExpression final : ExpressionOf<Expression::Kind::kFunction> {
  ObjectName name;
  std::vector<ExpressionPtr> arguments;
  // DATEDIFF(Day, …), DATEADD, DATEPART, DATENAME: the bare word in first place.
  std::string date_part;
  bool distinct = false;
  bool star = false;
  std::unique_ptr<WindowClause> over;  // null when there is no OVER
};

struct ConvertExpression final : ExpressionOf<Expression::Kind::kConvert> {
  bool is_cast = false;  // CAST(x AS t), otherwise CONVERT(t, x[, style])
  TypeName type;
  ExpressionPtr operand;
  ExpressionPtr style;  // null when not given
};

struct CaseExpression final : ExpressionOf<Expression::Kind::kCase> {
  struct When {
    ExpressionPtr value;     // of CASE x WHEN value
    ConditionPtr condition;  // of CASE WHEN condition
    ExpressionPtr result;
  };
  ExpressionPtr operand;  // null for the searched form
  std::vector<When> whens;
  ExpressionPtr otherwise;  // null when there is no ELSE
};

struct ScalarSubqueryExpression final : ExpressionOf<Expression::Kind::kScalarSubquery> {
  QueryPtr query;
};

// ---- Conditions (three-valued) ----

struct Condition {
  enum class Kind : uint8_t {
    kComparison,
    kLogical,
    kNot,
    kIsNull,
    kBetween,
    kInList,
    kInQuery,
    kLike,
    kExists,
  };
  explicit Condition(Kind k) : kind(k) {}
  virtual ~Condition() = default;
  const Kind kind;
  int line = 0;
};

template <Condition::Kind kind>
using ConditionOf = NodeOf<Condition, kind>;

struct ComparisonCondition final : ConditionOf<Condition::Kind::kComparison> {
  enum class Operator : uint8_t { kEqual, kNotEqual, kLess, kLessEqual, kGreater, kGreaterEqual };
  Operator op = Operator::kEqual;
  ExpressionPtr left, right;
};

struct LogicalCondition final : ConditionOf<Condition::Kind::kLogical> {
  enum class Operator : uint8_t { kAnd, kOr };
  Operator op = Operator::kAnd;
  // Two or more operands: a chain of the same word is one node, so that depth is that of brackets.
  std::vector<ConditionPtr> operands;
};

struct NotCondition final : ConditionOf<Condition::Kind::kNot> {
  ConditionPtr operand;
};

struct IsNullCondition final : ConditionOf<Condition::Kind::kIsNull> {
  ExpressionPtr operand;
  bool negated = false;
};

struct BetweenCondition final : ConditionOf<Condition::Kind::kBetween> {
  ExpressionPtr operand, low, high;
  bool negated = false;
};

struct InListCondition final : ConditionOf<Condition::Kind::kInList> {
  ExpressionPtr operand;
  std::vector<ExpressionPtr> values;
  bool negated = false;
};

struct InQueryCondition final : ConditionOf<Condition::Kind::kInQuery> {
  ExpressionPtr operand;
  QueryPtr query;
  bool negated = false;
};

struct LikeCondition final : ConditionOf<Condition::Kind::kLike> {
  ExpressionPtr operand, pattern;
  ExpressionPtr escape;  // null when not given
  bool negated = false;
};

struct ExistsCondition final : ConditionOf<Condition::Kind::kExists> {
  QueryPtr query;
};

// ---- Queries ----

struct TableSource {
  enum class Kind : uint8_t { kNamed, kDerived, kJoin };
  explicit TableSource(Kind k) : kind(k) {}
  virtual ~TableSource() = default;
  const Kind kind;
  int line = 0;
};

template <TableSource::Kind kind>
using TableSourceOf = NodeOf<TableSource, kind>;

// A table, view, temporary table or table variable.
struct NamedTable final : TableSourceOf<TableSource::Kind::kNamed> {
  ObjectName name;
  std::string alias;               // empty when none
  std::vector<std::string> hints;  // NOLOCK, HOLDLOCK …, read and without effect
};

struct DerivedTable final : TableSourceOf<TableSource::Kind::kDerived> {
  QueryPtr query;
  std::string alias;
  std::vector<std::string> columns;  // empty when not given
};

struct JoinedTable final : TableSourceOf<TableSource::Kind::kJoin> {
  enum class Join : uint8_t { kInner, kLeft, kRight, kFull, kCross };
  Join join = Join::kInner;
  TableSourcePtr left, right;
  ConditionPtr on;  // null for kCross
};

struct SelectItem {
  enum class Form : uint8_t { kExpression, kStar, kAssignment };
  Form form = Form::kExpression;
  ExpressionPtr expression;  // kExpression, kAssignment
  std::string alias;         // kExpression: AS alias, or alias = expression; empty when none
  std::string variable;      // kAssignment: @v = expression
  ObjectName qualifier;      // kStar: T1.*; no parts for a bare star
  int line = 0;
};

struct OrderItem {
  ExpressionPtr expression;
  bool descending = false;
};

// One end of a window frame: ROWS BETWEEN 2 PRECEDING AND CURRENT ROW.
struct FrameBound {
  enum class Kind : uint8_t {
    kUnboundedPreceding,
    kPreceding,
    kCurrentRow,
    kFollowing,
    kUnboundedFollowing,
  };
  Kind kind = Kind::kCurrentRow;
  int64_t rows = 0;  // of kPreceding and kFollowing

  friend bool operator==(const FrameBound&, const FrameBound&) = default;
};

struct WindowFrame {
  bool range = false;  // RANGE, otherwise ROWS
  FrameBound begin, end;

  friend bool operator==(const WindowFrame&, const WindowFrame&) = default;
};

// OVER (PARTITION BY … ORDER BY … ROWS …)
struct WindowClause {
  std::vector<ExpressionPtr> partition_by;
  std::vector<OrderItem> order_by;
  std::optional<WindowFrame> frame;
};

struct TopClause {
  ExpressionPtr count;
  bool percent = false;
  bool with_ties = false;
};

// One SELECT … FROM … WHERE … GROUP BY … HAVING …
struct SelectBlock {
  bool distinct = false;
  std::optional<TopClause> top;
  std::vector<SelectItem> items;
  std::optional<ObjectName> into;
  std::vector<TableSourcePtr> from;  // separated by commas: a cross join
  ConditionPtr where;
  std::vector<ExpressionPtr> group_by;
  ConditionPtr having;
  int line = 0;
};

// name (columns) AS (query), of WITH.
struct CommonTable {
  std::string name;
  std::vector<std::string> columns;  // empty when not given
  QueryPtr query;
};

// What stands before a statement, and its OPTION (MAXRECURSION …) behind it.
struct WithClause {
  std::vector<CommonTable> tables;  // each sees those before it, and itself
  int max_recursion = 100;          // 0 is no limit
};

// A select, or several set together, with the order of the whole.
struct Query {
  enum class SetOperator : uint8_t { kUnion, kUnionAll, kExcept, kIntersect };
  // Either a block, or two queries and an operator.
  std::unique_ptr<SelectBlock> block;
  QueryPtr left, right;
  SetOperator set_operator = SetOperator::kUnion;
  std::vector<OrderItem> order_by;
  WithClause with;  // of the query of a SELECT, a view or a cursor
  int line = 0;
};

// ---- Statements ----

struct Statement {
  enum class Kind : uint8_t {
    kSelect,
    kInsert,
    kUpdate,
    kDelete,
    kTruncate,
    kCreateTable,
    kCreateIndex,
    kCreateView,
    kCreateProcedure,
    kDrop,
    kAlterTableAdd,
    kDeclare,
    kSetVariable,
    kSetOption,
    kIf,
    kWhile,
    kBlock,
    kBreak,
    kContinue,
    kReturn,
    kDeclareCursor,
    kCursor,
    kFetch,
    kExecuteProcedure,
    kExecuteText,
    kTransaction,
    kPrint,
    kRaisError,
  };
  explicit Statement(Kind k) : kind(k) {}
  virtual ~Statement() = default;
  const Kind kind;
  int line = 0;
};

template <Statement::Kind kind>
using StatementOf = NodeOf<Statement, kind>;

struct SelectStatement final : StatementOf<Statement::Kind::kSelect> {
  QueryPtr query;
};

struct InsertStatement final : StatementOf<Statement::Kind::kInsert> {
  WithClause with;
  ObjectName table;
  std::vector<std::string> columns;  // empty when not given
  // One of: rows, query, execute, or none of them for DEFAULT VALUES. A null element of a row is
  // the word DEFAULT.
  std::vector<std::vector<ExpressionPtr>> rows;
  QueryPtr query;
  StatementPtr execute;
};

struct Assignment {
  std::string column;      // empty for SET @v = …
  ObjectName column_name;  // the same with what stands before it: SET t.FQty = …; else no parts
  std::string variable;    // of SET @v = …; both for SET @v = column = …
  ExpressionPtr value;     // null for the word DEFAULT
};

struct UpdateStatement final : StatementOf<Statement::Kind::kUpdate> {
  WithClause with;
  ObjectName target;  // a table, or an alias of `from`
  std::optional<TopClause> top;
  std::vector<Assignment> assignments;
  std::vector<TableSourcePtr> from;
  ConditionPtr where;
  std::string current_of;  // the cursor of WHERE CURRENT OF; then there is no `where`
};

struct DeleteStatement final : StatementOf<Statement::Kind::kDelete> {
  WithClause with;
  ObjectName target;
  std::optional<TopClause> top;
  std::vector<TableSourcePtr> from;  // the second FROM
  ConditionPtr where;
  std::string current_of;
};

struct TruncateStatement final : StatementOf<Statement::Kind::kTruncate> {
  ObjectName table;
};

struct ColumnDefinition {
  std::string name;
  TypeName type;
  std::optional<bool> nullable;  // not said: the default of the place
  bool identity = false;
  int64_t identity_seed = 1, identity_increment = 1;
  ExpressionPtr default_value;
  bool primary_key = false, unique = false;
  int line = 0;
};

struct KeyDefinition {
  bool primary = false;  // otherwise UNIQUE
  std::string name;      // empty when not given
  std::vector<std::string> columns;
};

struct TableDefinition {
  std::vector<ColumnDefinition> columns;
  std::vector<KeyDefinition> keys;
};

struct CreateTableStatement final : StatementOf<Statement::Kind::kCreateTable> {
  ObjectName name;
  TableDefinition definition;
};

struct CreateIndexStatement final : StatementOf<Statement::Kind::kCreateIndex> {
  std::string name;
  ObjectName table;
  bool unique = false;
  std::vector<std::string> columns;
  ConditionPtr filter;  // null for an index of all rows
};

struct AlterTableAddStatement final : StatementOf<Statement::Kind::kAlterTableAdd> {
  ObjectName name;
  TableDefinition definition;
};

struct CreateViewStatement final : StatementOf<Statement::Kind::kCreateView> {
  ObjectName name;
  std::vector<std::string> columns;
  QueryPtr query;
  std::string text;  // the query's own text, for the catalog
};

struct ParameterDefinition {
  std::string name;  // with its "@"
  TypeName type;
  ExpressionPtr default_value;  // null when there is none
  bool output = false;
};

struct CreateProcedureStatement final : StatementOf<Statement::Kind::kCreateProcedure> {
  ObjectName name;
  std::vector<ParameterDefinition> parameters;
  std::vector<StatementPtr> body;
  std::string text;  // the whole statement's text, for the catalog
};

struct DropStatement final : StatementOf<Statement::Kind::kDrop> {
  enum class What : uint8_t { kTable, kView, kProcedure, kIndex };
  What what = What::kTable;
  bool if_exists = false;
  std::vector<ObjectName> names;
  ObjectName on_table;  // of DROP INDEX name ON table
};

struct VariableDefinition {
  std::string name;
  TypeName type;
  ExpressionPtr initial;                 // null when none
  std::optional<TableDefinition> table;  // DECLARE @t TABLE (…)
};

struct DeclareStatement final : StatementOf<Statement::Kind::kDeclare> {
  std::vector<VariableDefinition> variables;
};

struct SetVariableStatement final : StatementOf<Statement::Kind::kSetVariable> {
  std::string variable;
  ExpressionPtr value;
};

// SET NOCOUNT ON and its like; `name` in upper case.
struct SetOptionStatement final : StatementOf<Statement::Kind::kSetOption> {
  std::string name;
  std::string value;  // "ON", "OFF", or the rest as written
};

struct IfStatement final : StatementOf<Statement::Kind::kIf> {
  ConditionPtr condition;
  StatementPtr then, otherwise;  // `otherwise` null when there is no ELSE
};

struct WhileStatement final : StatementOf<Statement::Kind::kWhile> {
  ConditionPtr condition;
  StatementPtr body;
};

struct BlockStatement final : StatementOf<Statement::Kind::kBlock> {
  std::vector<StatementPtr> statements;
};

struct BreakStatement final : StatementOf<Statement::Kind::kBreak> {};

struct ContinueStatement final : StatementOf<Statement::Kind::kContinue> {};

struct ReturnStatement final : StatementOf<Statement::Kind::kReturn> {
  ExpressionPtr value;  // null when none
};

struct DeclareCursorStatement final : StatementOf<Statement::Kind::kDeclareCursor> {
  // What it shows of later changes, as far as the statement says so.
  enum class Sight : uint8_t { kUnsaid, kStatic, kKeyset, kDynamic };
  std::string name;
  QueryPtr query;
  Sight sight = Sight::kUnsaid;
  bool scroll = false;  // any FETCH, not only NEXT
  bool read_only = false;
  bool local = false;
};

// OPEN, CLOSE, DEALLOCATE name
struct CursorStatement final : StatementOf<Statement::Kind::kCursor> {
  enum class What : uint8_t { kOpen, kClose, kDeallocate };
  What what = What::kOpen;
  std::string name;
};

struct FetchStatement final : StatementOf<Statement::Kind::kFetch> {
  enum class Direction : uint8_t { kNext, kPrior, kFirst, kLast, kAbsolute, kRelative };
  Direction direction = Direction::kNext;
  ExpressionPtr offset;  // of kAbsolute and kRelative
  std::string cursor;
  std::vector<std::string> variables;  // INTO; empty returns the row to the client
};

struct ExecuteArgument {
  std::string parameter;  // "@name" of @name = value; empty when by position
  ExpressionPtr value;    // null for the word DEFAULT
  bool output = false;
};

struct ExecuteProcedureStatement final : StatementOf<Statement::Kind::kExecuteProcedure> {
  ObjectName name;
  std::vector<ExecuteArgument> arguments;
  std::string return_variable;  // EXEC @r = name; empty when none
};

// EXEC(text)
struct ExecuteTextStatement final : StatementOf<Statement::Kind::kExecuteText> {
  ExpressionPtr text;
};

struct TransactionStatement final : StatementOf<Statement::Kind::kTransaction> {
  enum class What : uint8_t { kBegin, kCommit, kRollback, kSave };
  What what = What::kBegin;
  std::string name;  // of a transaction or savepoint; empty when none
};

struct PrintStatement final : StatementOf<Statement::Kind::kPrint> {
  ExpressionPtr value;
};

struct RaisErrorStatement final : StatementOf<Statement::Kind::kRaisError> {
  std::vector<ExpressionPtr> arguments;  // message, severity, state, then format arguments
};

struct Batch {
  std::vector<StatementPtr> statements;
  // Where the literals begin in the text that are its parameters: others of the same kind in their
  // places make a text that can share the compiled batch. They are numbered in this order.
  //
  // Other literals are part of what the batch says: TOP counts, styles of CONVERT, ordinals of
  // ORDER BY, whatever stands in a table definition, view or procedure, the filter of an index, and
  // binary constants.
  std::vector<size_t> literals;
  // False where a literal stands in a place that decides on more than a value, so that no other
  // text can share the batch.
  bool shareable = true;
  // The table variables that statements read or write, each as often as one is named.
  std::vector<std::string> table_variables;
};

}  // namespace tavcc::sql
