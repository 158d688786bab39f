// The bound tree as text.
#include "embedded/bind/describe.h"

#include <span>
#include <string_view>
#include <vector>

#include "embedded/bind/function_rules.h"
#include "embedded/types/stored_conversions.h"

namespace tavcc::sql {
namespace {

std::string Typed(const std::string& text, const SqlType& type) {
  return text + ':' + (type.kind == TypeKind::kNull ? "null" : TypeText(type));
}

constexpr std::string_view kArithmetic[] = {"+", "-", "*", "/", "%", "&", "|", "^"};
constexpr std::string_view kUnary[] = {"+", "-", "~"};
constexpr std::string_view kComparisons[] = {"=", "<>", "<", "<=", ">", ">="};
constexpr std::string_view kAggregates[] = {"sum", "avg", "min", "max", "count"};
constexpr std::string_view kSetOperators[] = {"union", "union all", "except", "intersect"};
constexpr std::string_view kSessionValues[] = {
    "@@rowcount",  "@@error",   "@@identity", "scope_identity", "@@fetch_status",
    "@@trancount", "@@version", "db_name",    "server_name",    "user_name",
    "@@spid",      "@@procid",  "@@nestlevel"};

template <class T>
std::string Word(std::span<const std::string_view> words, T which) {
  return std::string(words[static_cast<size_t>(which)]);
}

std::string DescribeLiteral(const BoundLiteral& literal) {
  if (literal.value.IsNull()) return Typed("null", literal.type);
  const std::string text = DisplayText(literal.value, literal.type);
  return Typed(IsText(literal.type.kind) ? '\'' + text + '\'' : text, literal.type);
}

std::string DescribeConvert(const BoundConvert& convert) {
  std::string out = convert.mode == ConvertMode::kAssign ? "assign(" : "convert(";
  out += TypeText(convert.type) + ", " + Describe(*convert.operand);
  if (convert.style != kNoStyle) out += ", " + std::to_string(convert.style);
  if (convert.style_value) out += ", " + Describe(*convert.style_value);
  return out + ')';
}

std::string DescribeCall(const BoundCall& call) {
  std::string out(call.rule->name);
  out += '(';
  if (call.date_part >= 0) out += "part " + std::to_string(call.date_part);
  bool first = call.date_part < 0;
  for (const auto& argument : call.arguments) {
    if (!first) out += ", ";
    first = false;
    out += Describe(*argument);
  }
  return Typed(out + ')', call.type);
}

std::string DescribeCase(const BoundCase& expression) {
  std::string out = "case";
  for (const auto& when : expression.whens) {
    out += " when " + Describe(*when.condition) + " then " + Describe(*when.result);
  }
  if (expression.otherwise) out += " else " + Describe(*expression.otherwise);
  return Typed(out + " end", expression.type);
}

constexpr std::string_view kWindowFunctions[] = {
    "",      "row_number", "rank", "dense_rank",  "percent_rank", "cume_dist",
    "ntile", "lag",        "lead", "first_value", "last_value"};

template <class List, class Text>
std::string DescribeAll(const List& list, const Text& text) {
  std::string out;
  for (const auto& element : list) out += (out.empty() ? "" : ", ") + text(element);
  return out;
}

std::string DescribeWindow(const BoundWindow& window) {
  const auto describe = [](const BoundExpressionPtr& expression) { return Describe(*expression); };
  std::string out = window.function == WindowFunction::kAggregate
                        ? Word(kAggregates, window.aggregate)
                        : Word(kWindowFunctions, window.function);
  out += '(' + DescribeAll(window.arguments, describe) + ") over (";
  if (!window.partition_by.empty()) {
    out += "partition by " + DescribeAll(window.partition_by, describe) + ' ';
  }
  if (!window.order_by.empty()) {
    out += "order by " + DescribeAll(window.order_by, [](const BoundOrder& order) {
             return Describe(*order.expression) + (order.descending ? " desc" : "");
           });
  }
  return Typed(out + ')', window.type);
}

std::string DescribeFrom(const BoundFrom& from) {
  if (from.source) {
    const std::string what = from.source->table ? from.source->table->name
                             : from.source->recursion != 0
                                 ? "recursion"
                                 : '(' + Describe(*from.source->query) + ')';
    return from.source->alias == what ? what : what + " as " + from.source->alias;
  }
  static constexpr std::string_view kJoins[] = {"", "inner join", "left join", "full join",
                                                "cross join"};
  std::string out = '(' + DescribeFrom(*from.left) + ' ' + Word(kJoins, from.join) + ' ' +
                    DescribeFrom(*from.right);
  if (from.on) out += " on " + Describe(*from.on);
  return out + ')';
}

std::string DescribeSelect(const BoundSelect& select) {
  std::string out = "select ";
  if (select.distinct) out += "distinct ";
  if (select.top) {
    out += "top " + Describe(*select.top.count) + (select.top.percent ? " percent " : " ") +
           (select.top.with_ties ? "with ties " : "");
  }
  for (size_t i = 0; i < select.items.size(); ++i) {
    const BoundItem& item = select.items[i];
    if (i > 0) out += ", ";
    if (item.variable >= 0) out += "variable " + std::to_string(item.variable) + " = ";
    out += Describe(*item.expression);
    if (!item.name.empty()) out += " as " + item.name;
  }
  if (select.from) out += " from " + DescribeFrom(*select.from);
  if (select.where) out += " where " + Describe(*select.where);
  for (size_t i = 0; i < select.group_by.size(); ++i) {
    out += (i == 0 ? " group by " : ", ") + Describe(*select.group_by[i]);
  }
  if (select.having) out += " having " + Describe(*select.having);
  return out;
}

std::string DescribeList(const std::vector<BoundConditionPtr>& operands, std::string_view word) {
  std::string out = "(";
  for (const auto& operand : operands) {
    if (out.size() > 1) out += word;
    out += Describe(*operand);
  }
  return out + ')';
}

std::string DescribeIn(const BoundInList& in) {
  std::string out = Describe(*in.operand) + (in.negated ? " not in (" : " in (");
  for (const auto& value : in.values) {
    if (&value != &in.values.front()) out += ", ";
    out += Describe(*value);
  }
  return out + ')';
}

template <class Bound>
std::string DescribeRest(const Bound& bound) {
  std::string out = " from " + DescribeFrom(*bound.from);
  if (bound.where) out += " where " + Describe(*bound.where);
  return out;
}

}  // namespace

std::string Describe(const BoundExpression& expression) {
  switch (expression.kind) {
    case BoundExpression::Kind::kLiteral:
      return DescribeLiteral(static_cast<const BoundLiteral&>(expression));
    case BoundExpression::Kind::kVariable:
      return Typed(static_cast<const BoundVariable&>(expression).name, expression.type);
    case BoundExpression::Kind::kRowParameter:
      return Typed("row " + std::to_string(static_cast<const BoundRowParameter&>(expression).index),
                   expression.type);
    case BoundExpression::Kind::kSessionValue:
      return Typed(Word(kSessionValues, static_cast<const BoundSessionValue&>(expression).which),
                   expression.type);
    case BoundExpression::Kind::kColumn: {
      const auto& column = static_cast<const BoundColumn&>(expression);
      if (column.column == BoundColumn::kRowNumber) return column.source->alias + ".row";
      return Typed(column.source->alias + '.' +
                       column.source->columns[static_cast<size_t>(column.column)].name,
                   column.type);
    }
    case BoundExpression::Kind::kUnary: {
      const auto& unary = static_cast<const BoundUnary&>(expression);
      return Typed(Word(kUnary, unary.op) + Describe(*unary.operand), unary.type);
    }
    case BoundExpression::Kind::kArithmetic: {
      const auto& arithmetic = static_cast<const BoundArithmetic&>(expression);
      return Typed('(' + Describe(*arithmetic.left) + ' ' + Word(kArithmetic, arithmetic.op) + ' ' +
                       Describe(*arithmetic.right) + ')',
                   arithmetic.type);
    }
    case BoundExpression::Kind::kConvert:
      return DescribeConvert(static_cast<const BoundConvert&>(expression));
    case BoundExpression::Kind::kCall:
      return DescribeCall(static_cast<const BoundCall&>(expression));
    case BoundExpression::Kind::kCase:
      return DescribeCase(static_cast<const BoundCase&>(expression));
    case BoundExpression::Kind::kSubquery:
      return '(' + Describe(*static_cast<const BoundSubquery&>(expression).query) + ')';
    case BoundExpression::Kind::kWindow:
      return DescribeWindow(static_cast<const BoundWindow&>(expression));
    case BoundExpression::Kind::kAggregate:
      break;
  }
  const auto& aggregate = static_cast<const BoundAggregate&>(expression);
  const std::string operand = aggregate.operand ? Describe(*aggregate.operand) : "*";
  return Typed(Word(kAggregates, aggregate.aggregate) + (aggregate.distinct ? "(distinct " : "(") +
                   operand + ')',
               aggregate.type);
}

std::string Describe(const BoundCondition& condition) {
  switch (condition.kind) {
    case BoundCondition::Kind::kComparison: {
      const auto& comparison = static_cast<const BoundComparison&>(condition);
      return Describe(*comparison.left) + ' ' + Word(kComparisons, comparison.op) + ' ' +
             Describe(*comparison.right);
    }
    case BoundCondition::Kind::kLogical: {
      const auto& logical = static_cast<const BoundLogical&>(condition);
      return DescribeList(logical.operands, logical.op == LogicalOperator::kAnd ? " and " : " or ");
    }
    case BoundCondition::Kind::kNot:
      return "not " + Describe(*static_cast<const BoundNot&>(condition).operand);
    case BoundCondition::Kind::kIsNull: {
      const auto& is_null = static_cast<const BoundIsNull&>(condition);
      return Describe(*is_null.operand) + (is_null.negated ? " is not null" : " is null");
    }
    case BoundCondition::Kind::kInList:
      return DescribeIn(static_cast<const BoundInList&>(condition));
    case BoundCondition::Kind::kInQuery: {
      const auto& in = static_cast<const BoundInQuery&>(condition);
      return Describe(*in.operand) + (in.negated ? " not in (" : " in (") + Describe(*in.query) +
             ')';
    }
    case BoundCondition::Kind::kLike: {
      const auto& like = static_cast<const BoundLike&>(condition);
      return Describe(*like.operand) + (like.negated ? " not like " : " like ") +
             Describe(*like.pattern) + (like.escape ? " escape " + Describe(*like.escape) : "");
    }
    case BoundCondition::Kind::kExists:
      return "exists (" + Describe(*static_cast<const BoundExists&>(condition).query) + ')';
    case BoundCondition::Kind::kIndexFilter:
      break;
  }
  const auto& filter = static_cast<const BoundIndexFilter&>(condition);
  return "filter of " + filter.source->alias + '.' + filter.key->name;
}

std::string Describe(const BoundQuery& query) {
  std::string out = query.select ? DescribeSelect(*query.select)
                                 : '(' + Describe(*query.left) + ") " +
                                       Word(kSetOperators, query.set_operator) + " (" +
                                       Describe(*query.right) + ')';
  for (const auto& order : query.order_by) {
    out += &order == &query.order_by.front() ? " order by " : ", ";
    out += order.item >= 0 ? std::to_string(order.item + 1) : Describe(*order.expression);
    if (order.descending) out += " desc";
  }
  return query.single_row ? "single row: " + out : out;
}

std::string Describe(const BoundInsert& insert) {
  std::string out = "insert " + insert.table->name + '(';
  for (const int column : insert.columns) {
    if (out.back() != '(') out += ", ";
    out += insert.table->columns[static_cast<size_t>(column)].name;
  }
  out += ')';
  if (insert.query) return out + ' ' + Describe(*insert.query);
  for (const auto& row : insert.rows) {
    out += &row == &insert.rows.front() ? " values (" : ", (";
    for (const auto& value : row) {
      if (&value != &row.front()) out += ", ";
      out += Describe(*value);
    }
    out += ')';
  }
  return out;
}

std::string Describe(const BoundUpdate& update) {
  std::string out = "update " + update.target->alias;
  for (const auto& assignment : update.assignments) {
    out += &assignment == &update.assignments.front() ? " set " : ", ";
    out += update.table->columns[static_cast<size_t>(assignment.column)].name + " = " +
           Describe(*assignment.value);
  }
  out += DescribeRest(update);
  if (update.matches_once) out = "once: " + out;
  return update.in_place ? "in place, " + out : out;
}

std::string Describe(const BoundDelete& remove) {
  return "delete " + remove.target->alias + DescribeRest(remove);
}

}  // namespace tavcc::sql
