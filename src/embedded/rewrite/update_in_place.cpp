// Update in place: an UPDATE whose new values may be written while its rows are being found.
//
//   UPDATE t SET q = q + 1 WHERE k = 7
//   UPDATE t SET q = t.q + s.q FROM t JOIN s ON t.k = s.k            k is a key of s
//
// Otherwise all new values are computed first and written by row number after it, and of several
// matches of one row the first counts. In place it may be where no new value looks into a table,
// the target is a table itself, and each of its rows is met once at most.
#include <algorithm>

#include "embedded/bind/walk.h"
#include "embedded/rewrite/rules.h"
#include "embedded/rewrite/unique_match.h"

namespace tavcc::sql {
namespace {

bool OnlyInner(const BoundFrom& from) {
  if (from.source) return true;
  if (from.join != BoundFrom::Join::kInner && from.join != BoundFrom::Join::kCross) return false;
  return OnlyInner(*from.left) && OnlyInner(*from.right);
}

bool HasQuery(const BoundExpression& expression) {
  bool has = false;
  ForEachExpression(expression, [&](const BoundExpression& inner) {
    has = has || inner.kind == BoundExpression::Kind::kSubquery;
    // Queries in the conditions of a CASE.
    ForEachChild(
        inner, [](const BoundExpression&) {}, [&](const BoundQuery&) { has = true; });
  });
  return has;
}

class UpdateInPlace final : public StatementPass {
 protected:
  void OnUpdate(BoundUpdate& update) override {
    update.matches_once =
        update.row_column < 0 && MatchesOnce(*update.from, update.where.get(), *update.target);
    update.in_place = update.matches_once && !update.top && OnlyInner(*update.from) &&
                      std::ranges::none_of(update.assignments, [](const BoundAssignment& one) {
                        return HasQuery(*one.value);
                      });
  }
};

}  // namespace

std::unique_ptr<StatementPass> UpdateInPlacePass(BindResult&) {
  return std::make_unique<UpdateInPlace>();
}

}  // namespace tavcc::sql
