// Which sources give one row at most, by keys that the conditions tie.
#pragma once

#include "embedded/bind/bound.h"

namespace tavcc::sql {

// True when the conditions tie every other source, by one of its keys, to the target or to a source
// that is tied already. False when that cannot be told.
bool MatchesOnce(const BoundFrom& from, const BoundCondition* where, const BoundSource& target);

// True when `from` is one source and the condition ties one of its keys to values: it gives one row
// at most. False when that cannot be told.
bool IsOneRow(const BoundFrom& from, const BoundCondition* where);

}  // namespace tavcc::sql
