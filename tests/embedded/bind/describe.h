// A bound tree as text, every type and conversion written out: what tests compare.
#pragma once

#include <string>

#include "embedded/bind/bound.h"

namespace tavcc::sql {

std::string Describe(const BoundExpression& expression);
std::string Describe(const BoundCondition& condition);
std::string Describe(const BoundQuery& query);
std::string Describe(const BoundInsert& insert);
std::string Describe(const BoundUpdate& update);
std::string Describe(const BoundDelete& remove);

}  // namespace tavcc::sql
