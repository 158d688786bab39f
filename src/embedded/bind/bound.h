// The bound tree: what a statement means, with every name looked up and every conversion written
// out.
//
// It is distinct from the parsed tree: columns are places in table sources, variables are numbers,
// every expression has its type, and where two types meet, the conversion is a node of its own.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "embedded/catalog/table.h"
#include "embedded/syntax/ast.h"
#include "embedded/types/sql_type.h"
#include "embedded/types/stored_value.h"
#include "embedded/types/type_rules.h"

namespace tavcc::sql {

struct BoundExpression;
struct BoundCondition;
struct BoundQuery;
struct BoundSelect;
struct BoundSource;
struct FunctionRule;

using BoundExpressionPtr = std::unique_ptr<BoundExpression>;
using BoundConditionPtr = std::unique_ptr<BoundCondition>;
using BoundQueryPtr = std::unique_ptr<BoundQuery>;

enum class WindowFunction : uint8_t {
  kAggregate,
  kRowNumber,
  kRank,
  kDenseRank,
  kPercentRank,
  kCumeDist,
  kNtile,
  kLag,
  kLead,
  kFirstValue,
  kLastValue,
};

// ---- Expressions ----

struct BoundExpression {
  enum class Kind : uint8_t {
    kLiteral,
    kVariable,
    kRowParameter,
    kSessionValue,
    kColumn,
    kUnary,
    kArithmetic,
    kConvert,
    kCall,
    kCase,
    kSubquery,
    kAggregate,
    kWindow,
  };
  explicit BoundExpression(Kind k, const SqlType& t = {}, bool n = true)
      : kind(k), type(t), nullable(n) {}
  virtual ~BoundExpression() = default;
  const Kind kind;
  SqlType type;
  bool nullable;
};

template <BoundExpression::Kind kind>
using BoundExpressionOf = NodeOf<BoundExpression, kind>;

struct BoundLiteral final : BoundExpressionOf<BoundExpression::Kind::kLiteral> {
  BoundLiteral() = default;
  BoundLiteral(TypedValue v, int s)
      : NodeOf(v.type, v.value.IsNull()), value(std::move(v.value)), slot(s) {}
  StoredValue value;
  int slot = -1;  // of the batch's parameterized literals; -1 for a constant
};

struct BoundVariable final : BoundExpressionOf<BoundExpression::Kind::kVariable> {
  BoundVariable() = default;
  BoundVariable(const SqlType& t, int i, std::string n)
      : NodeOf(t, true), index(i), name(std::move(n)) {}
  int index = 0;
  std::string name;
};

// A value that is handed to the statement each time it runs: of the row that a cursor stands on, or
// that another statement returned.
struct BoundRowParameter final : BoundExpressionOf<BoundExpression::Kind::kRowParameter> {
  BoundRowParameter() = default;
  BoundRowParameter(const SqlType& t, int i) : NodeOf(t, true), index(i) {}
  int index = 0;
};

// What the session knows: the same throughout one statement.
enum class SessionValue : uint8_t {
  kRowCount,
  kError,
  kIdentity,
  kScopeIdentity,
  kFetchStatus,
  kTransactionCount,
  kVersion,
  kDatabaseName,
  kServerName,
  kUserName,
  kProcessId,
  kProcedureId,
  kNestLevel,
};

struct BoundSessionValue final : BoundExpressionOf<BoundExpression::Kind::kSessionValue> {
  BoundSessionValue() = default;
  BoundSessionValue(SessionValue w, const SqlType& t) : NodeOf(t, true), which(w) {}
  SessionValue which = SessionValue::kRowCount;
};

struct BoundColumn final : BoundExpressionOf<BoundExpression::Kind::kColumn> {
  // In place of a column: the number of the row in its table.
  static constexpr int kRowNumber = -1;
  BoundColumn() = default;
  BoundColumn(const BoundSource& s, int column);
  const BoundSource* source = nullptr;
  int column = 0;
};

struct BoundUnary final : BoundExpressionOf<BoundExpression::Kind::kUnary> {
  BoundUnary() = default;
  BoundUnary(UnaryExpression::Operator o, const SqlType& t, BoundExpressionPtr x)
      : NodeOf(t, x->nullable), op(o), operand(std::move(x)) {}
  UnaryExpression::Operator op = UnaryExpression::Operator::kPlus;
  BoundExpressionPtr operand;
};

struct BoundArithmetic final : BoundExpressionOf<BoundExpression::Kind::kArithmetic> {
  BoundArithmetic() = default;
  BoundArithmetic(BinaryOperator o, ArithmeticResult::Way w, const SqlType& t, BoundExpressionPtr l,
                  BoundExpressionPtr r)
      : NodeOf(t, true), op(o), way(w), left(std::move(l)), right(std::move(r)) {}
  BinaryOperator op = BinaryOperator::kAdd;
  ArithmeticResult::Way way = ArithmeticResult::Way::kInteger;
  BoundExpressionPtr left, right;
};

struct BoundConvert final : BoundExpressionOf<BoundExpression::Kind::kConvert> {
  BoundConvert() = default;
  BoundConvert(BoundExpressionPtr x, const SqlType& to)
      : NodeOf(to, x->nullable), operand(std::move(x)) {}
  BoundExpressionPtr operand;
  ConvertMode mode = ConvertMode::kCast;
  int style = kNoStyle;
  BoundExpressionPtr style_value;  // a style known only at run time
  std::string table, column;       // of kAssign: for the error that names them
  bool explicitly = false;         // CAST or CONVERT was written
};

struct BoundCall final : BoundExpressionOf<BoundExpression::Kind::kCall> {
  BoundCall() = default;
  BoundCall(const FunctionRule& r, const SqlType& t) : NodeOf(t, true), rule(&r) {}
  const FunctionRule* rule = nullptr;
  std::vector<BoundExpressionPtr> arguments;
  int date_part = -1;
};

struct BoundCase final : BoundExpressionOf<BoundExpression::Kind::kCase> {
  struct When {
    BoundConditionPtr condition;
    BoundExpressionPtr result;
  };
  explicit BoundCase(const SqlType& t = {}) : NodeOf(t, true) {}
  std::vector<When> whens;
  BoundExpressionPtr otherwise;  // null when there is no ELSE
};

struct BoundSubquery final : BoundExpressionOf<BoundExpression::Kind::kSubquery> {
  BoundSubquery() = default;
  explicit BoundSubquery(BoundQueryPtr q);
  BoundQueryPtr query;
};

struct BoundAggregate final : BoundExpressionOf<BoundExpression::Kind::kAggregate> {
  BoundAggregate() = default;
  BoundAggregate(Aggregate a, const SqlType& t) : NodeOf(t, a != Aggregate::kCount), aggregate(a) {}
  Aggregate aggregate = Aggregate::kCount;
  bool distinct = false;
  BoundExpressionPtr operand;  // null for COUNT(*)
};

struct BoundOrder {
  // Either the number of an item (from 0), or an expression of its own.
  int item = -1;
  BoundExpressionPtr expression;
  SqlType type;
  bool descending = false;
};

// A function of the rows that OVER (…) says, computed for each row of the block.
struct BoundWindow final : BoundExpressionOf<BoundExpression::Kind::kWindow> {
  explicit BoundWindow(WindowFunction f = WindowFunction::kRowNumber, const SqlType& t = {})
      : NodeOf(t, true), function(f) {}
  WindowFunction function;
  Aggregate aggregate = Aggregate::kCount;    // of kAggregate
  std::vector<BoundExpressionPtr> arguments;  // none for COUNT(*)
  std::vector<BoundExpressionPtr> partition_by;
  std::vector<BoundOrder> order_by;  // expressions, no items
  std::optional<WindowFrame> frame;
};

using BoundExpressions = Kinds<BoundLiteral, BoundVariable, BoundRowParameter, BoundSessionValue,
                               BoundColumn, BoundUnary, BoundArithmetic, BoundConvert, BoundCall,
                               BoundCase, BoundSubquery, BoundAggregate, BoundWindow>;

// ---- Conditions ----

struct BoundCondition {
  enum class Kind : uint8_t {
    kComparison,
    kLogical,
    kNot,
    kIsNull,
    kInList,
    kInQuery,
    kLike,
    kExists,
    kIndexFilter,
  };
  explicit BoundCondition(Kind k) : kind(k) {}
  virtual ~BoundCondition() = default;
  const Kind kind;
};

template <BoundCondition::Kind kind>
using BoundConditionOf = NodeOf<BoundCondition, kind>;

using ComparisonOperator = ComparisonCondition::Operator;
using LogicalOperator = LogicalCondition::Operator;

// Both sides have one type, except exact numbers, which are compared at their own scales.
struct BoundComparison final : BoundConditionOf<BoundCondition::Kind::kComparison> {
  BoundComparison() = default;
  BoundComparison(ComparisonOperator o, BoundExpressionPtr l, BoundExpressionPtr r)
      : op(o), left(std::move(l)), right(std::move(r)) {}
  ComparisonOperator op = ComparisonOperator::kEqual;
  BoundExpressionPtr left, right;
};

struct BoundLogical final : BoundConditionOf<BoundCondition::Kind::kLogical> {
  BoundLogical() = default;
  explicit BoundLogical(LogicalOperator o) : op(o) {}
  LogicalOperator op = LogicalOperator::kAnd;
  std::vector<BoundConditionPtr> operands;
};

struct BoundNot final : BoundConditionOf<BoundCondition::Kind::kNot> {
  BoundNot() = default;
  explicit BoundNot(BoundConditionPtr o) : operand(std::move(o)) {}
  BoundConditionPtr operand;
};

struct BoundIsNull final : BoundConditionOf<BoundCondition::Kind::kIsNull> {
  BoundExpressionPtr operand;
  bool negated = false;
};

// All of one type.
struct BoundInList final : BoundConditionOf<BoundCondition::Kind::kInList> {
  BoundExpressionPtr operand;
  std::vector<BoundExpressionPtr> values;
  bool negated = false;
};

// The rows that have a match in the query: a semi-join. Negated, where nulls are met, it is more
// than the rows without a match: an anti-join is a BoundNot of a BoundExists.
struct BoundInQuery final : BoundConditionOf<BoundCondition::Kind::kInQuery> {
  BoundExpressionPtr operand;
  BoundQueryPtr query;  // its one column has the operand's type
  bool negated = false;
};

struct BoundLike final : BoundConditionOf<BoundCondition::Kind::kLike> {
  BoundExpressionPtr operand, pattern, escape;  // `escape` null when not given
  bool negated = false;
};

struct BoundExists final : BoundConditionOf<BoundCondition::Kind::kExists> {
  BoundQueryPtr query;
};

// That the filter of one of the source's indexes holds. Only rewrites make it.
struct BoundIndexFilter final : BoundConditionOf<BoundCondition::Kind::kIndexFilter> {
  BoundIndexFilter() = default;
  BoundIndexFilter(const BoundSource& s, const Key& k) : NodeOf(), source(&s), key(&k) {}
  const BoundSource* source = nullptr;
  const Key* key = nullptr;  // of the source's table
};

using BoundConditions = Kinds<BoundComparison, BoundLogical, BoundNot, BoundIsNull, BoundInList,
                              BoundInQuery, BoundLike, BoundExists, BoundIndexFilter>;

// ---- Queries ----

struct SourceColumn {
  std::string name;  // empty when the query gave it none
  SqlType type;
  bool nullable = true;
  bool identity = false;
};

// One table or derived table in a FROM clause.
struct BoundSource {
  int id = 0;         // of the statement: the emitted alias is "s" and the id
  std::string alias;  // under which its columns are qualified
  bool is_view = false;
  bool correlated = false;  // whether the statement gave it that name
  TablePtr table;           // or
  BoundQueryPtr query;      // or
  int recursion = 0;        // the rows of the last step of the recursive query of this number
  std::vector<SourceColumn> columns;

  // The block that a derived table is; null for anything else.
  const BoundSelect* block() const;
  BoundSelect* block();
};

struct BoundFrom {
  enum class Join : uint8_t { kNone, kInner, kLeft, kFull, kCross };
  Join join = Join::kNone;              // kNone: a single source
  std::unique_ptr<BoundSource> source;  // of kNone
  std::unique_ptr<BoundFrom> left, right;
  BoundConditionPtr on;
};
using BoundFromPtr = std::unique_ptr<BoundFrom>;

struct BoundItem {
  BoundExpressionPtr expression;
  std::string name;
  int variable = -1;  // of SELECT @v = …
};

// TOP n [PERCENT] [WITH TIES]
struct BoundTop {
  BoundExpressionPtr count;  // null when there is no TOP; bigint, or float for PERCENT
  bool percent = false;
  bool with_ties = false;

  explicit operator bool() const { return count != nullptr; }
};

struct BoundSelect {
  bool distinct = false;
  BoundTop top;
  std::vector<BoundItem> items;
  BoundFromPtr from;  // null when none
  BoundConditionPtr where;
  std::vector<BoundExpressionPtr> group_by;
  BoundConditionPtr having;
  bool grouped = false;   // GROUP BY, HAVING or an aggregate
  bool windowed = false;  // a window function is among its items or in its order
};

struct BoundQuery {
  std::unique_ptr<BoundSelect> select;  // or two queries and an operator
  BoundQueryPtr left, right;
  Query::SetOperator set_operator = Query::SetOperator::kUnion;
  std::vector<BoundOrder> order_by;
  // Not 0: a recursive query, and its number. `left` is where it begins, `right`, a block or blocks
  // set together, what follows from each row.
  int recursion = 0;
  int max_recursion = 0;              // 0 is no limit
  std::vector<SourceColumn> columns;  // of the result
  bool single_row = false;            // it is known to give one row at most
};

inline const BoundSelect* BoundSource::block() const {
  return query ? query->select.get() : nullptr;
}
inline BoundSelect* BoundSource::block() {
  return query ? query->select.get() : nullptr;
}

// ---- Statements that read or write ----

// How a row is written: one value for each written column, converted to its type.
struct BoundAssignment {
  int column;  // -1 where only a variable is set
  BoundExpressionPtr value;
  int variable = -1;  // of SET @v = …, which takes the value as `variable_type`
  SqlType variable_type;
};

struct BoundInsert {
  TablePtr table;
  std::vector<int> columns;
  // Either rows of expressions or a query; neither for all defaults.
  std::vector<std::vector<BoundExpressionPtr>> rows;
  BoundQueryPtr query;
  bool explicit_identity = false;
};

struct BoundUpdate {
  TablePtr table;
  BoundTop top;
  std::vector<BoundAssignment> assignments;
  // The target is one of the sources of `from`.
  BoundFromPtr from;
  BoundSource* target = nullptr;
  // Where the target is a view or a derived table: its column with the number of the table's row.
  int row_column = -1;
  BoundConditionPtr where;
  bool matches_once = false;  // each row of the target is known to be met once at most
  bool in_place = false;      // rows may be changed while others are still looked for
};

struct BoundDelete {
  TablePtr table;
  BoundTop top;
  BoundFromPtr from;
  BoundSource* target = nullptr;
  // Where the target is a view or a derived table: its column with the number of the table's row.
  int row_column = -1;
  BoundConditionPtr where;
};

// Some expressions and conditions to be computed without a table: SET, IF, WHILE, arguments.
struct BoundValues {
  std::vector<BoundExpressionPtr> values;
  BoundConditionPtr condition;
};

}  // namespace tavcc::sql
