// Common conjuncts: what all sides of an OR ask is asked once.
//
//   … ON (a.x = b.x AND a.y = 1) OR (a.x = b.x AND b.y = 2)
//   … ON a.x = b.x AND (a.y = 1 OR b.y = 2)
//
// SQLite finds the index of a join only in the second form. It may for every condition, also where
// nulls are met; it is done for those that join columns, which depend on no literal.
#include <algorithm>
#include <utility>

#include "embedded/bind/same.h"
#include "embedded/bind/walk.h"
#include "embedded/rewrite/conditions.h"
#include "embedded/rewrite/rules.h"

namespace tavcc::sql {
namespace {

using Conditions = std::vector<BoundConditionPtr>;

bool JoinsColumns(const BoundCondition& condition) {
  const BoundComparison* equality = AsEquality(condition);
  return equality != nullptr && As<BoundColumn>(*equality->left) != nullptr &&
         As<BoundColumn>(*equality->right) != nullptr;
}

bool Holds(const BoundCondition& side, const BoundCondition& asked) {
  bool holds = false;
  ForEachConjunct(
      &side, [&](const BoundCondition& conjunct) { holds = holds || AreSame(conjunct, asked); });
  return holds;
}

bool Holds(const Conditions& conditions, const BoundCondition& asked) {
  return std::ranges::any_of(conditions, [&](const auto& one) { return AreSame(*one, asked); });
}

class CommonConjuncts final : public StatementPass {
 protected:
  void OnCondition(BoundConditionPtr& condition) override {
    auto* const either = As<BoundLogical>(*condition);
    if (either == nullptr || either->op != LogicalOperator::kOr) return;
    auto& sides = either->operands;
    if (!HasCommon(sides)) return;
    Conditions common;
    bool nothing_left = false;  // of a side, so that the others say no more than what is common
    for (BoundConditionPtr& side : sides) {
      Conditions rest;
      for (BoundConditionPtr& conjunct : SplitConjuncts(std::move(side))) {
        if (Holds(common, *conjunct)) continue;
        const bool is_common = &side == &sides.front() && JoinsColumns(*conjunct) &&
                               std::ranges::all_of(sides, [&](const BoundConditionPtr& other) {
                                 return other == nullptr || Holds(*other, *conjunct);
                               });
        (is_common ? common : rest).push_back(std::move(conjunct));
      }
      nothing_left = nothing_left || rest.empty();
      side = All(std::move(rest));
    }
    if (!nothing_left) common.push_back(std::move(condition));
    condition = All(std::move(common));
  }

 private:
  static bool HasCommon(const Conditions& sides) {
    bool has = false;
    ForEachConjunct(sides.front().get(), [&](const BoundCondition& conjunct) {
      has = has || (JoinsColumns(conjunct) && std::ranges::all_of(sides, [&](const auto& side) {
                      return Holds(*side, conjunct);
                    }));
    });
    return has;
  }
};

}  // namespace

std::unique_ptr<StatementPass> CommonConjunctsPass(BindResult&) {
  return std::make_unique<CommonConjuncts>();
}

}  // namespace tavcc::sql
