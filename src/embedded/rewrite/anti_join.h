// Deletions of rows that have no match in another table.
#pragma once

#include "embedded/bind/bound.h"

namespace tavcc::sql {

// Of DELETE … FROM … LEFT JOIN u ON … WHERE u.k IS NULL the table u, when the statement asks
// nothing of it but that there be no match; null otherwise.
const BoundSource* FindAntiJoined(const BoundDelete& remove);

}  // namespace tavcc::sql
