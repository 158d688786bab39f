// The emitter's working state, shared by its sources.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <vector>

#include "embedded/emit/emitter.h"

namespace tavcc::sql {

// What emits numbers the parameters that it meets: two of these in one expression would leave their
// order to the compiler, so each has a statement of its own.
class Emitter {
 public:
  // `live_variables`: variables are read through a function, row by row, not once as parameters.
  explicit Emitter(bool live_variables = false) : live_variables_(live_variables) {}

  // emit_expression.cpp
  // `certain`: the value is computed whenever the statement runs at all, so that a conversion that
  // may fail can be done before it.
  std::string Expression(const BoundExpression& expression, bool certain = false);
  // The expression as an operand of a comparison by text collation, or as one that rows are put
  // together or apart by.
  std::string Collated(const BoundExpression& expression);

  // emit_condition.cpp
  std::string Condition(const BoundCondition& condition);

  // emit_query.cpp
  std::string Query(const BoundQuery& query, bool names = false);
  // A query inside an expression or a condition.
  std::string Subquery(const BoundQuery& query, bool names = false) {
    return InOwnQuery([&] { return Query(query, names); });
  }
  std::string Source(const BoundSource& source);
  std::string From(const BoundFrom& from);
  std::string Scalar(const BoundQuery& query);
  std::string OrderedItems(const BoundQuery& query);

  Emitted Finish(std::string sql, bool changes_rows);

 protected:
  // shallow.cpp: "WITH … " of the derived tables that were taken out since the last call, or
  // nothing.
  std::string TakeCommonTables();
  std::string Limit(const BoundExpression& count);
  // emit_top.cpp: `rows` is the query that is to be cut.
  std::string LimitOf(const BoundTop& top, const std::string& rows);
  // " WHERE …"; empty for null.
  std::string Where(const BoundCondition* where);

 private:
  // shallow.cpp
  std::string OutermostValue(const BoundExpression& expression, bool certain);
  std::string KeepStep(std::string text);
  std::string WithSteps(std::string text);
  std::string DerivedTable(const BoundQuery& query);
  // The text of a query inside an expression or a condition, which `query` emits.
  std::string InOwnQuery(const std::function<std::string()>& query);
  // What `emit` emits is computed at a time of its own: a branch, a row of another query.
  template <class Emit>
  std::string InOwnStep(const Emit& emit) {
    const bool inside = inside_value_;
    inside_value_ = false;
    std::string text = emit();
    inside_value_ = inside;
    return text;
  }

  std::string ValueOfKind(const BoundExpression& expression, bool certain);
  std::string Literal(const BoundLiteral& literal);
  std::string ParameterText(const Parameter& parameter);
  std::string ParameterFrom(Parameter::Source source, int index);
  std::string Column(const BoundColumn& column);
  std::string Variable(const BoundVariable& variable);
  std::string Unary(const BoundUnary& unary);
  std::string Arithmetic(const BoundArithmetic& arithmetic);
  std::string Concatenation(const BoundArithmetic& arithmetic);
  std::string Convert(const BoundConvert& convert, bool certain);
  std::string ConvertedParameter(const BoundConvert& convert);
  std::string Call(const BoundCall& call);
  std::string NumericCall(const BoundCall& call);
  std::string DataLength(const BoundCall& call);
  std::string Case(const BoundCase& expression);
  std::string Aggregated(Aggregate aggregate, const BoundExpression* operand, const SqlType& type,
                         bool distinct = false, bool over = false);
  // emit_window.cpp
  std::string Windowed(const BoundWindow& window);
  std::string WindowCall(const BoundWindow& window);
  std::string Operands(const BoundLogical& logical);
  std::string Comparison(const BoundComparison& comparison);
  std::string Like(const BoundLike& like);
  std::string ConditionOfKind(const BoundCondition& condition);
  std::string Negation(const BoundCondition& operand);

  // `more`: further items, each after a comma.
  std::string Select(const BoundSelect& select, bool names, bool distinct_rows,
                     const std::string& more = {});
  // emit_top.cpp
  std::string Ranked(const BoundQuery& query);
  std::string SetOperation(const BoundQuery& query);
  // emit_recursion.cpp
  std::string Recursion(const BoundQuery& query);
  std::string RecursiveMembers(const BoundQuery& members, const BoundQuery& query);
  std::string Arm(const BoundQuery& query, bool distinct_rows);
  std::string Order(const BoundQuery& query);
  // One key of an order: `value` is its text.
  static std::string OrderKey(const BoundOrder& order, const std::string& value);

  // A function of the dialect's that can fail.
  std::string Failing(std::string text) {
    raises_ = true;
    return text;
  }

  const bool live_variables_;
  // shallow.cpp: whether a value is being emitted, how deep its parts are so far, and those that
  // are computed before it.
  bool inside_value_ = false;
  int height_ = 0;
  std::vector<std::string> steps_;
  int kept_ = 0;
  // The derived tables around the present place, and those that were taken out.
  int derived_ = 0;
  std::vector<std::string> common_tables_;
  int named_ = 0;
  std::vector<Parameter> parameters_;
  bool raises_ = false;
  // While set, columns of these sources are taken from a list of carried ones.
  const BoundFrom* carried_from_ = nullptr;
  std::vector<std::string> carried_;
};

// What `text` makes of each element, with commas between them.
template <class Elements, class Text>
std::string Listed(const Elements& elements, const Text& text) {
  std::string out;
  for (const auto& element : elements) {
    if (!out.empty()) out += ',';
    out += text(element);
  }
  return out;
}

// The conditions with `word`, " AND " or " OR ", between them.
std::string Joined(std::span<const std::string> conditions, std::string_view word);

// Whether the order of the rows by this value is not SQLite's order of what is stored.
bool NeedsOrderFunction(const SqlType& type);

std::string SourceName(const BoundSource& source);
// Under which the rows of a recursive query are known.
std::string RecursionName(int number);

}  // namespace tavcc::sql
