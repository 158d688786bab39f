// Whether two parts of a bound tree say the same.
//
// The same columns are columns of one source; sources that stand inside the two parts, in their
// subqueries, are the same where they stand in the same place. Literals are the same by type and
// value, whatever place of the text they come from: whoever builds on that has to note that the
// tree depends on their values (see LiteralDependence).
#pragma once

#include "embedded/bind/bound.h"

namespace tavcc::sql {

bool AreSame(const BoundExpression& a, const BoundExpression& b);
bool AreSame(const BoundCondition& a, const BoundCondition& b);
bool AreSame(const BoundQuery& a, const BoundQuery& b);

}  // namespace tavcc::sql
