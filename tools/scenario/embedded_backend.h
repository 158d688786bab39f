// The session that calls the classes directly, on the embedded database.
#pragma once

#include <memory>

#include "scenario/erp_session.h"

namespace tavcc {

// The company's database in memory in the start state, and the host over it; the clock stands still
// at the state's `now`. Errors: AutomationError where its SQL fails.
std::unique_ptr<Erp> MakeEmbeddedErp(const StartState& start);

// Each session has a database of its own, in memory, whose clock stands still at the scenario's
// `now`. `observer`, where given, sees each statement that a call sends.
std::unique_ptr<Backend> MakeEmbeddedBackend(StatementObserver observer = {});

}  // namespace tavcc
