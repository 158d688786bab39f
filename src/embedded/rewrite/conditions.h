// Taking conditions apart and putting them together.
#pragma once

#include "embedded/bind/bound.h"

namespace tavcc::sql {

// `where` AND `condition`, in front of it or behind it. An empty `where` is no condition.
void AddInFront(BoundConditionPtr& where, BoundConditionPtr condition);
void AddBehind(BoundConditionPtr& where, BoundConditionPtr condition);

// The operands of an AND, those of inner ones too, or the condition itself.
std::vector<BoundConditionPtr> SplitConjuncts(BoundConditionPtr condition);

// They all, by AND; the only one itself; null for none.
BoundConditionPtr All(std::vector<BoundConditionPtr> conditions);

}  // namespace tavcc::sql
