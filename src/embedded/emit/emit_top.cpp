// TOP n PERCENT and TOP n WITH TIES, for which SQLite's LIMIT has no word: the rows are numbered,
// or ranked, by the order of the query.
#include "embedded/emit/emitter_impl.h"

namespace tavcc::sql {

bool NeedsOrderFunction(const SqlType& type) {
  return IsScaled(type.kind) && !AlwaysStoredAsInteger(type);
}

std::string Emitter::Ranked(const BoundQuery& query) {
  const BoundSelect& select = *query.select;
  std::string more, keys;
  for (size_t i = 0; i < query.order_by.size(); ++i) {
    const BoundOrder& order = query.order_by[i];
    std::string key = 'c' + std::to_string(order.item);
    if (order.item < 0) {
      key = 'o' + std::to_string(i);
      more += ',' + Expression(*order.expression) + " AS " + key;
    }
    keys += (keys.empty() ? "ORDER BY " : ",") + OrderKey(order, key);
  }
  std::string out = "SELECT ";
  for (size_t i = 0; i < select.items.size(); ++i) {
    out += (i > 0 ? ",c" : "c") + std::to_string(i);
  }
  const std::string over = " OVER (" + keys + ") AS ";
  out += " FROM (SELECT *,row_number()" + over + "place,rank()" + over +
         "tie,count(*) OVER () AS total FROM (" + Select(select, true, select.distinct, more) +
         ")) WHERE " + (select.top.with_ties ? "tie<=" : "place<=");
  const std::string count = Expression(*select.top.count);
  out += Failing(select.top.percent ? "s_percent(total," + count + ')' : "s_top(" + count + ')');
  return out + " ORDER BY place";
}

std::string Emitter::LimitOf(const BoundTop& top, const std::string& rows) {
  if (!top.percent) return Limit(*top.count);
  return Failing(" LIMIT s_percent((SELECT count(*) FROM (" + rows + "))," +
                 Expression(*top.count) + ')');
}

}  // namespace tavcc::sql
