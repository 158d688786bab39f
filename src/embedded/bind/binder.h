// The binder: from the parsed tree of a statement to its bound tree.
//
// Looks every name up in the catalog, gives every expression its type by the server's rules, writes
// out each conversion that the statement leaves to the server, and refuses what the server refuses.
// Errors: SqlError without a line, for the caller to set.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/bind/bound.h"
#include "embedded/catalog/catalog.h"

namespace tavcc::sql {

struct VariableInfo {
  std::string name;  // with its "@"
  SqlType type;
};

// A name that was looked up, and what it stood for: a statement bound with it is good as long as
// the name stands for the same.
struct Dependency {
  ObjectName name;
  TablePtr table;           // or
  CatalogObjectPtr object;  // a view
};

// How much of a parameterized literal the bound tree depends on, beyond its kind (see TextForm).
enum class LiteralDependence : uint8_t {
  kKind,
  kType,    // its length, or precision and scale
  kDigits,  // of an int also the number of its digits
  kValue,
};

// The bound tree is good for another literal in this slot if its type, too, converts to `to` and
// never fails; `lossless`: nor loses decimals.
struct LiteralTypeGuard {
  size_t slot = 0;
  SqlType to;
  ConvertMode mode = ConvertMode::kCast;
  bool lossless = false;
  SqlType known;  // a type that was found to do so

  bool Includes(const SqlType& type) const;
};

// What a bound tree depends on beyond its text: the guards of its plan.
struct BindResult {
  int next_source = 1;  // the number of the statement's next source
  std::vector<Dependency> dependencies;
  std::vector<LiteralDependence> dependences;  // by slot
  std::vector<int> type_dependents;  // by slot: the places where the literal's very type counts
  std::vector<LiteralTypeGuard> type_guards;
};

class Binder {
 public:
  // `literals` are the values of the parameterized literals, by slot; empty when the tree's own
  // literals are to be taken for constants.
  Binder(const Catalog& catalog, std::span<const VariableInfo> variables,
         std::span<const TypedValue> literals, BindResult& result);

  BoundQueryPtr BindQuery(const Query& query);
  // The query of a view that is to be made. Errors: also 4511, a column without a name.
  void CheckView(const CreateViewStatement& view);
  BoundInsert BindInsert(const InsertStatement& insert, bool identity_insert);
  // An INSERT of `query`'s rows into all columns of a table that was made from its columns.
  BoundInsert BindInsertInto(const TablePtr& table, BoundQueryPtr query);
  // An INSERT whose rows come from elsewhere: parameters of the given types take their place.
  BoundInsert BindInsertRows(const InsertStatement& insert, std::span<const SourceColumn> columns,
                             bool identity_insert);
  BoundUpdate BindUpdate(const UpdateStatement& update);
  BoundDelete BindDelete(const DeleteStatement& remove);
  // An expression outside a query, converted to `type` when one is given.
  BoundExpressionPtr BindValue(const Expression& expression,
                               const std::optional<SqlType>& type = std::nullopt);
  BoundConditionPtr BindCondition(const Condition& condition);
  // The table of a statement that is neither a query nor one of the above. Errors: 208, or `number`
  // where the statement has another one.
  TablePtr RequireTable(const ObjectName& name, errors::Number number = errors::kInvalidObjectName);
  int FindVariable(std::string_view name) const;  // error 137

  // What stands for several of its operands (CASE x WHEN …, BETWEEN, COALESCE) binds them several
  // times: inside one another they would multiply without end.
  static constexpr int kMostExpressions = 250'000;

 private:
  struct Scope {
    const Scope* parent = nullptr;
    std::vector<const BoundSource*> sources;
  };
  // Where in a statement a value stands.
  enum Place : uint8_t {
    kAmongRows,   // it may be computed for no row, or after others were changed
    kValueAlone,  // it is computed first of all (see Emitter::Expression, `certain`)
  };
  // What the block at hand makes of aggregates.
  struct Aggregates {
    std::optional<errors::Number> refusal;  // the error of an aggregate where it may not stand
    bool found = false;
    bool inside = false;  // the operand of an aggregate is being bound
    // The same for window functions.
    bool windows = false;  // they may stand in this place
    bool window_found = false;
    bool inside_window = false;
  };

  // bind_expression.cpp
  BoundExpressionPtr Bind(const Expression& expression, const Scope& scope);
  BoundExpressionPtr BindLiteral(const LiteralExpression& literal);
  BoundExpressionPtr BindColumn(const ColumnExpression& column, const Scope& scope);
  BoundExpressionPtr BindVariable(const std::string& name);
  BoundExpressionPtr BindGlobal(const GlobalVariableExpression& global);
  BoundExpressionPtr BindUnary(const UnaryExpression& unary, const Scope& scope);
  BoundExpressionPtr BindBinary(const BinaryExpression& binary, const Scope& scope);
  BoundExpressionPtr BindConvert(const ConvertExpression& convert, const Scope& scope);
  BoundExpressionPtr BindCase(const CaseExpression& expression, const Scope& scope);
  BoundExpressionPtr FinishCase(std::vector<BoundCase::When> whens, BoundExpressionPtr otherwise);
  BoundExpressionPtr BindScalarSubquery(const Query& query, const Scope& scope);

  // bind_function.cpp
  BoundExpressionPtr BindFunction(const FunctionExpression& function, const Scope& scope);
  BoundExpressionPtr BindAggregate(const FunctionExpression& function, Aggregate aggregate,
                                   const Scope& scope);
  BoundExpressionPtr AggregateOperand(Aggregate aggregate, BoundExpressionPtr operand,
                                      const SqlType& type);
  // bind_window.cpp
  BoundExpressionPtr BindWindow(const FunctionExpression& function, const Scope& scope);
  void BindWindowArguments(const FunctionExpression& function, BoundWindow& window,
                           const Scope& scope);
  BoundExpressionPtr BindWindowArgument(const Expression& argument, size_t position,
                                        const BoundWindow& window, const Scope& scope);
  void BindOver(const WindowClause& over, BoundWindow& window, const Scope& scope);

  BoundExpressionPtr BindIsNull(const FunctionExpression& function, const Scope& scope);
  BoundExpressionPtr BindCoalesce(const FunctionExpression& function, const Scope& scope);
  BoundExpressionPtr BindNullIf(const FunctionExpression& function, const Scope& scope);
  BoundExpressionPtr BindCall(const FunctionExpression& function, const FunctionRule& rule,
                              const Scope& scope);
  BoundExpressionPtr BindArgument(char letter, const Expression& argument, size_t position,
                                  const FunctionRule& rule, const Scope& scope);

  // bind_condition.cpp
  BoundConditionPtr Bind(const Condition& condition, const Scope& scope);
  BoundConditionPtr Compare(ComparisonOperator op, BoundExpressionPtr left,
                            BoundExpressionPtr right);
  BoundExpressionPtr ConvertCompared(BoundExpressionPtr value, const SqlType& common);
  BoundConditionPtr BindBetween(const BetweenCondition& between, const Scope& scope);
  BoundConditionPtr BindInList(const InListCondition& in, const Scope& scope);
  BoundConditionPtr BindInQuery(const InQueryCondition& in, const Scope& scope);
  BoundConditionPtr BindLike(const LikeCondition& like, const Scope& scope);

  // bind_from.cpp
  BoundFromPtr BindFrom(const std::vector<TableSourcePtr>& sources, const Scope* parent,
                        Scope& visible);
  BoundFromPtr BindSource(const TableSource& source, const Scope* parent, Scope& visible);
  BoundFromPtr BindNamed(const NamedTable& named);
  BoundFromPtr BindTable(const TablePtr& table, const std::string& alias);
  BoundFromPtr BindView(const View& view, const std::string& alias);
  BoundFromPtr BindDerived(const DerivedTable& derived, const Scope* parent);
  // The source, its columns named.
  BoundFromPtr FinishSource(std::unique_ptr<BoundSource> source, const std::string& name,
                            const std::vector<std::string>& columns, const std::string& alias);
  BoundFromPtr BindJoin(const JoinedTable& join, const Scope* parent, Scope& visible);

  // bind_common_table.cpp
  void EnterWith(const WithClause& with);
  // Null when the name is none of a common table expression in sight.
  const CommonTable* FindCommonTable(const ObjectName& name) const;
  BoundFromPtr BindCommonTable(const CommonTable& table, const std::string& alias);
  BoundQueryPtr BindRecursive(const CommonTable& table);
  BoundQueryPtr BindRecursiveMember(const CommonTable& table, const Query& member,
                                    const std::vector<SourceColumn>& columns);
  BoundFromPtr BindRecursiveReference(const CommonTable& table, const std::string& alias);

  // bind_query.cpp
  BoundQueryPtr BindQuery(const Query& query, const Scope* parent);
  BoundQueryPtr BindInner(const Query& query, const Scope* parent);
  BoundQueryPtr BindBlock(const Query& query, const Scope* parent);
  BoundQueryPtr BindSetOperation(const Query& query, const Scope* parent);
  void BindItems(const SelectBlock& block, const Scope& scope, BoundSelect& select);
  void BindStar(const SelectItem& item, const Scope& scope, BoundSelect& select);
  void BindOrder(const Query& query, const Scope& scope, BoundQuery& bound);
  void BindSetOrder(const Query& query, BoundQuery& bound);
  int OrderOrdinal(const Expression& expression, size_t position, size_t items);
  BoundTop BindTop(const std::optional<TopClause>& top, bool ordered);
  void CheckGrouping(const BoundSelect& select, const Scope& scope,
                     const std::vector<BoundOrder>& order_by);

  // bind_write.cpp
  void BindInsertColumns(const std::vector<std::string>& names, bool identity_insert,
                         BoundInsert& bound);
  void BindInsertValues(const InsertStatement& insert, BoundInsert& bound);
  void ConvertQueryRows(BoundInsert& bound, bool all_columns);
  void AddDefaults(BoundInsert& bound);
  BoundExpressionPtr BindDefault(const Column& column);
  BoundExpressionPtr Assign(const Table& table, int index, BoundExpressionPtr value,
                            Place place = kAmongRows);
  // bind_view_write.cpp
  // The base table of columns of a view or derived table, and their places in it; without names the
  // one table that its rows come from. The target gets a column with the number of the table's row.
  // Errors: 207, 4403, 4405, 4406, 4426; of a derived table 4417, 4418, 4420, 4421.
  std::vector<int> BaseColumns(BoundSource& target, const std::vector<std::string>& names,
                               TablePtr& table, int& row_column);
  // The base table of a view that rows are inserted into; the names, all of the view's where there
  // are none, become those of its columns. Errors: the same.
  TablePtr BindViewColumns(const ObjectName& name, const CatalogObjectPtr& object,
                           std::vector<std::string>& names);
  TablePtr BindInsertTarget(const InsertStatement& insert, std::vector<std::string>& names);
  template <class Statement, class Bound>
  Scope BindTarget(const Statement& statement, Bound& bound);

  // bind_convert.cpp
  // `value` as `to`, a conversion written out where the types differ.
  BoundExpressionPtr Convert(BoundExpressionPtr value, const SqlType& to,
                             ConvertMode mode = ConvertMode::kCast);
  // The same where the statement did not ask for it. Errors: 206, 257.
  BoundExpressionPtr ConvertImplicitly(BoundExpressionPtr value, const SqlType& to);
  BoundExpressionPtr ConvertToText(BoundExpressionPtr value);
  // Brings the columns of a query to `types`, inside its blocks where that changes nothing else.
  void ConvertColumns(BoundQuery& query, const std::vector<SqlType>& types);
  // When `value` is a literal, also with a sign, that becomes a value of `to`: writes the
  // conversion out such that the tree is good for literals of other lengths, precisions and scales.
  // Otherwise, and where that cannot be, leaves it as it is.
  BoundExpressionPtr ConvertLiteral(BoundExpressionPtr value, const SqlType& to, Place place,
                                    ConvertMode mode = ConvertMode::kCast);
  // The same for a literal that is compared with a value of type `other`.
  BoundExpressionPtr GeneralizeCompared(BoundExpressionPtr value, const SqlType& other);
  // The same for a text of which nothing but its characters counts.
  void GeneralizeText(BoundExpression& value);
  // A whole literal beside a decimal or money takes its scale, so that SQLite compares two stored
  // values.
  BoundExpressionPtr ScaleCompared(BoundExpressionPtr value, const SqlType& other);
  // Notes what of the literals inside an expression the tree depends on.
  void NoteDependence(const BoundExpression& expression, LiteralDependence use);

  const Catalog& catalog_;
  std::span<const VariableInfo> variables_;
  std::span<const TypedValue> literals_;
  BindResult& result_;
  Aggregates* aggregates_ = nullptr;
  // The common table expressions in sight: the first ones of a WITH.
  struct CommonTables {
    const WithClause* with = nullptr;
    size_t count = 0;
  };
  CommonTables common_tables_;
  bool common_table_used_ = false;
  int max_recursion_ = 0;  // of the statement
  // The common table expression that is being bound.
  struct Recursion {
    const CommonTable* table = nullptr;
    // Of one that refers to itself, when its anchor is bound:
    int id = 0;
    std::vector<SourceColumn> columns;
    int depth = 0;  // of the query at hand in the recursive member: 1 is the member itself
  };
  Recursion* recursion_ = nullptr;
  int views_ = 0;  // how deep in views
  int bound_ = 0;  // expressions so far
};

// The name as the statement wrote it: "dbo.t_Stock".
std::string WrittenName(const ObjectName& name);

}  // namespace tavcc::sql
