// A table variable that is filled once, and read once by the statement after it, to see which rows
// have no match there: the DELETE is run with the INSERT's query in its place.
#pragma once

#include "embedded/bind/bound.h"

namespace tavcc::sql {

// Puts the query of `insert`, which must be one that cannot fail, in the place of the table that it
// fills. False when that may not be; the two statements are then to be bound anew.
bool ReadInPlace(BoundInsert& insert, BoundDelete& remove);

}  // namespace tavcc::sql
