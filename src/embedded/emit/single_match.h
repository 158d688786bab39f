// Whether a join meets each row of its target at most once.
#pragma once

#include "embedded/bind/bound.h"

namespace tavcc::sql {

// True when the conditions tie every other source, by one of its keys, to the target or to a source
// that is tied already. False when that cannot be told.
bool MatchesOnce(const BoundFrom& from, const BoundCondition* where, const BoundSource& target);

}  // namespace tavcc::sql
