// Building programs from parsed statements.
#pragma once

#include <memory>

#include "embedded/catalog/catalog.h"
#include "embedded/session/program.h"

namespace tavcc::sql {

// Errors: 134 variable declared twice, 137, 135, 136; those of types.
std::shared_ptr<Program> BuildBatch(std::shared_ptr<const Batch> batch);
// A procedure's body; its parameters are the first variables.
std::shared_ptr<Program> BuildProcedure(const Procedure& procedure);

}  // namespace tavcc::sql
