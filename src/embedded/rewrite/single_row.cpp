// One row at most: a query of which the keys say that it gives no second row.
//
//   DECLARE @x INT SET @x = (SELECT q FROM t WHERE id = 7)          id is a key of t
//
// Behind the first row nothing needs to be looked for, and a subquery in the place of a value needs
// no guard against a second row, which is an error of the server's. It may wherever a query groups
// all of its rows into one, reads no table, takes no more than TOP 1, or has a key tied to values.
#include "embedded/rewrite/rules.h"
#include "embedded/rewrite/unique_match.h"

namespace tavcc::sql {
namespace {

bool IsSingleRow(const BoundQuery& query) {
  if (!query.select) return false;
  const BoundSelect& select = *query.select;
  if (select.grouped && select.group_by.empty()) return true;
  if (!select.from) return true;
  if (select.group_by.empty() && IsOneRow(*select.from, select.where.get())) return true;
  if (!select.top || select.top.percent || select.top.with_ties) return false;
  const BoundExpression* count = select.top.count.get();
  if (const auto* convert = As<BoundConvert>(*count)) count = convert->operand.get();
  const auto* top = As<BoundLiteral>(*count);
  return top != nullptr && top->slot < 0 && top->value.kind() == StoredValue::Kind::kInteger &&
         top->value.integer() <= 1;
}

class SingleRow final : public StatementPass {
 protected:
  void OnQuery(BoundQuery& query) override { query.single_row = IsSingleRow(query); }
};

}  // namespace

std::unique_ptr<StatementPass> SingleRowPass(BindResult&) {
  return std::make_unique<SingleRow>();
}

}  // namespace tavcc::sql
