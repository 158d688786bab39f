// Puts an ERP database and its host into a scenario's start state.
#pragma once

#include "host/reference_host.h"
#include "scenario/scenario.h"

namespace tavcc {

// Sets the host's user, rights, published values and texts, then changes the settings and runs the
// scenario's SQL on `connection`, which holds the schema and the base rows. Errors: the database's.
void ApplyStartState(const StartState& start, ReferenceHost& host, Connection& connection);

}  // namespace tavcc
