// The road that calls the classes directly, on the embedded database.
#pragma once

#include <functional>
#include <memory>

#include "scenario/road.h"

namespace tavcc {

using StatementObserver = std::function<void(const LoggedStatement&)>;

// Each road has a database of its own, in memory, whose clock stands still at the scenario's `now`.
// `observer`, where given, sees each statement that a call sends.
std::unique_ptr<Roads> MakeEmbeddedRoads(StatementObserver observer = nullptr);

}  // namespace tavcc
