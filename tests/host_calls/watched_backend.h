// A backend on which a test stands beside each call: all scenarios, for what holds of every method.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "foundation/connection.h"
#include "registry/class_registry.h"
#include "scenario/backend.h"

namespace tavcc::testing {

// Makes the call that it is given, and looks on. `past_the_log` is the database of the scenario.
using AroundCall = std::function<Value(
    const ClassDescription& cls, const Method& method, std::vector<Value>& arguments,
    Connection& past_the_log, const std::function<Value(std::vector<Value>& arguments)>& call)>;

// Runs every scenario of the project on the embedded database, its sweeps left out, with `around`
// around each call. Scenarios that fail are failures of the test.
void RunAllScenarios(const AroundCall& around);

}  // namespace tavcc::testing
