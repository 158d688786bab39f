// Recursive queries, as SQLite's own.
//
//   r7(c0,level) AS (SELECT *,0 FROM (anchor)
//                    UNION ALL SELECT s8.c0+1,s_recursion(s8.level,100) FROM r7 AS s8 WHERE …)
//
// They stand in front of the query, as WITH. The server counts the steps that led to a row, and
// ends a statement that takes too many.
#include "embedded/bind/walk.h"
#include "embedded/emit/emitter_impl.h"

namespace tavcc::sql {

std::string RecursionName(int number) {
  return 'r' + std::to_string(number);
}

std::string Emitter::Recursion(const BoundQuery& query) {
  const std::string name = RecursionName(query.recursion);
  std::string columns;
  for (size_t i = 0; i < query.columns.size(); ++i) columns += 'c' + std::to_string(i) + ',';
  const std::string anchor = Query(*query.left, true);
  common_tables_.push_back(name + '(' + columns + "level) AS (SELECT *,0 FROM (" + anchor + ')' +
                           RecursiveMembers(*query.right, query) + ')');
  columns.pop_back();
  return "SELECT " + columns + " FROM " + name;
}

std::string Emitter::RecursiveMembers(const BoundQuery& members, const BoundQuery& query) {
  if (!members.select) {
    const std::string left = RecursiveMembers(*members.left, query);
    return left + RecursiveMembers(*members.right, query);
  }
  std::string level;
  ForEachSource(std::as_const(*members.select->from), [&](const BoundSource& source) {
    if (source.recursion == query.recursion) level = SourceName(source) + ".level";
  });
  const std::string next =
      query.max_recursion == 0
          ? level + "+1"
          : Failing("s_recursion(" + level + ',' + std::to_string(query.max_recursion) + ')');
  return " UNION ALL " + Select(*members.select, true, false, ',' + next);
}

}  // namespace tavcc::sql
