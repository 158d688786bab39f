// Queries as SQLite's text.
#include "embedded/catalog/sqlite.h"
#include "embedded/emit/emitter_impl.h"

namespace tavcc::sql {
namespace {

bool MergesRows(const BoundQuery& query) {
  return query.set_operator != Query::SetOperator::kUnionAll;
}

}  // namespace

std::string Emitter::Query(const BoundQuery& query, bool names) {
  if (query.recursion != 0) return Recursion(query);
  if (query.select) {
    if (query.select->top.percent || query.select->top.with_ties) return Ranked(query);
    std::string out = Select(*query.select, names, query.select->distinct);
    out += Order(query);
    if (query.select->top) out += Limit(*query.select->top.count);
    return out;
  }
  std::string out = SetOperation(query);
  bool wrap = false;
  for (const auto& order : query.order_by) wrap = wrap || NeedsOrderFunction(order.type);
  if (wrap) out = "SELECT * FROM (" + out + ')';
  return out + Order(query);
}

std::string Emitter::Select(const BoundSelect& select, bool names, bool distinct_rows,
                            const std::string& more) {
  std::string out = select.distinct ? "SELECT DISTINCT " : "SELECT ";
  for (size_t i = 0; i < select.items.size(); ++i) {
    if (i > 0) out += ',';
    const BoundExpression& item = *select.items[i].expression;
    out += distinct_rows ? Collated(item) : Expression(item);
    if (names) out += " AS c" + std::to_string(i);
  }
  out += more;
  if (select.from) out += " FROM " + From(*select.from);
  out += Where(select.where.get());
  const std::string keys = Listed(select.group_by, [&](const auto& key) { return Collated(*key); });
  if (!keys.empty()) out += " GROUP BY " + keys;
  if (select.having) {
    // SQLite wants a GROUP BY before HAVING; grouping by nothing keeps the one group of an
    // aggregate over all rows.
    out += " HAVING " + Condition(*select.having);
  }
  return out;
}

std::string Emitter::Where(const BoundCondition* where) {
  return where == nullptr ? std::string() : " WHERE " + Condition(*where);
}

std::string Emitter::OrderKey(const BoundOrder& order, const std::string& value) {
  const std::string direction = order.descending ? " DESC" : "";
  if (NeedsOrderFunction(order.type)) {
    return "t_order_decimal(" + value + ')' + direction + ',' + value + direction;
  }
  return value + (IsText(order.type.kind) ? " COLLATE tsql" : "") + direction;
}

std::string Emitter::Order(const BoundQuery& query) {
  std::string out;
  for (const auto& order : query.order_by) {
    out += out.empty() ? " ORDER BY " : ",";
    const bool by_value = NeedsOrderFunction(order.type);
    std::string value;
    if (order.item < 0) {
      value = Expression(*order.expression);
    } else if (query.select && (by_value || !carried_.empty())) {
      value = Expression(*query.select->items[static_cast<size_t>(order.item)].expression);
    } else {
      value = by_value ? 'c' + std::to_string(order.item) : std::to_string(order.item + 1);
    }
    out += OrderKey(order, value);
  }
  return out;
}

std::string Emitter::Limit(const BoundExpression& top) {
  const auto* convert = As<BoundConvert>(top);
  const BoundExpression& count = convert != nullptr ? *convert->operand : top;
  if (As<BoundLiteral>(count) != nullptr) return " LIMIT " + Expression(top);
  return Failing(" LIMIT s_top(" + Expression(top) + ')');
}

std::string Emitter::SetOperation(const BoundQuery& query) {
  static constexpr std::string_view kWords[] = {" UNION ", " UNION ALL ", " EXCEPT ",
                                                " INTERSECT "};
  const bool merges = MergesRows(query);
  // SQLite's operators all bind alike, from left to right: only the left side may go on
  // unbracketed.
  const bool chain = !query.left->select && query.left->order_by.empty();
  const std::string left = chain ? SetOperation(*query.left) : Arm(*query.left, merges);
  return left + std::string(kWords[static_cast<size_t>(query.set_operator)]) +
         Arm(*query.right, merges);
}

std::string Emitter::Arm(const BoundQuery& query, bool distinct_rows) {
  if (query.select && !query.select->top && query.order_by.empty()) {
    return Select(*query.select, true, distinct_rows || query.select->distinct);
  }
  std::string items;
  for (size_t i = 0; i < query.columns.size(); ++i) {
    const std::string name = 'c' + std::to_string(i);
    items += (i > 0 ? "," : "") + name;
    if (IsText(query.columns[i].type.kind)) items += " COLLATE tsql AS " + name;
  }
  return "SELECT " + items + " FROM (" + Query(query, true) + ')';
}

std::string Emitter::Source(const BoundSource& source) {
  const std::string what = source.table            ? source.table->physical
                           : source.recursion != 0 ? RecursionName(source.recursion)
                                                   : DerivedTable(*source.query);
  return what + " AS " + SourceName(source);
}

std::string Emitter::From(const BoundFrom& from) {
  if (from.source) return Source(*from.source);
  static constexpr std::string_view kWords[] = {"", " JOIN ", " LEFT JOIN ", " FULL JOIN ",
                                                " JOIN "};
  std::string right = From(*from.right);
  if (!from.right->source) right = '(' + right + ')';
  std::string out = From(*from.left) + std::string(kWords[static_cast<size_t>(from.join)]) + right;
  if (from.on) out += " ON " + Condition(*from.on);
  return out;
}

// More than one row is the server's error 512, which SQLite does not know.
std::string Emitter::Scalar(const BoundQuery& query) {
  if (query.single_row) return '(' + Subquery(query) + ')';
  return Failing("(SELECT s_scalar(c0) FROM (" + Subquery(query, true) + "))");
}

Emitted Emitter::Finish(std::string sql, bool changes_rows) {
  sql.insert(0, TakeCommonTables());
  return Emitted{std::move(sql), std::move(parameters_), changes_rows && raises_};
}

Emitted EmitQuery(const BoundQuery& query) {
  Emitter emitter;
  std::string sql = emitter.Query(query);
  Emitted emitted = emitter.Finish(std::move(sql), false);
  emitted.single_row = query.single_row;
  return emitted;
}

// Where the rows are put in order first, what the items need of each row is carried through the
// sorting, and the items, which read the variables, are computed after it.
std::string Emitter::OrderedItems(const BoundQuery& query) {
  const BoundSelect& select = *query.select;
  if (select.grouped || select.distinct) RaiseUnsupported("an ordered, grouped assigning SELECT");
  if (select.windowed) RaiseUnsupported("a window function in an ordered assigning SELECT");
  if (select.top.percent || select.top.with_ties) {
    RaiseUnsupported("PERCENT and WITH TIES in an ordered assigning SELECT");
  }
  carried_from_ = select.from.get();
  const std::string items =
      Listed(select.items, [&](const BoundItem& item) { return Expression(*item.expression); });
  carried_from_ = nullptr;
  std::string columns;
  for (size_t i = 0; i < carried_.size(); ++i) {
    columns += (i > 0 ? "," : "") + carried_[i] + " AS k" + std::to_string(i);
  }
  std::string rows = "SELECT " + (columns.empty() ? "1" : columns) + " FROM " + From(*select.from);
  rows += Where(select.where.get());
  rows += Order(query);
  if (select.top) rows += Limit(*select.top.count);
  return "WITH q AS MATERIALIZED (" + rows + ") SELECT " + items + " FROM q";
}

Emitted EmitAssigningQuery(const BoundQuery& query) {
  Emitter emitter(/*live_variables=*/true);
  std::string sql = query.order_by.empty() ? emitter.Query(query) : emitter.OrderedItems(query);
  return emitter.Finish(std::move(sql), false);
}

Emitted EmitValues(const BoundValues& values) {
  Emitter emitter;
  std::string sql = "SELECT " + Listed(values.values, [&](const auto& value) {
                      return emitter.Expression(*value, /*certain=*/true);
                    });
  if (values.condition) {
    if (!values.values.empty()) sql += ',';
    sql += emitter.Condition(*values.condition);
  }
  return emitter.Finish(std::move(sql), false);
}

}  // namespace tavcc::sql
