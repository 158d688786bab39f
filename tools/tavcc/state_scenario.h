// A recorded case as an ordinary scenario: the rows that its calls touch as start state, so that it
// runs on the embedded database and can be changed.
#pragma once

#include <vector>

#include "scenario/recording.h"
#include "tavcc/touched_rows.h"

namespace tavcc {

// The scenario, with no more rows than the case needs: without any one of them a statement would be
// answered otherwise, or the calls would change something else.
// Errors: JsonError where the rows do not tell the whole case, with what then differs.
Json StateScenario(const Recording& recording, const std::vector<TouchedTable>& tables);

}  // namespace tavcc
