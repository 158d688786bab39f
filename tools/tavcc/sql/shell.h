// The shell of tavcc sql: a person types batches and commands.
#pragma once

#include "tavcc/command.h"
#include "tavcc/sql/batch_runner.h"
#include "tavcc/sql/script.h"

namespace tavcc {

// Reads from the terminal until the person leaves, or the connection is lost.
Exit RunShell(BatchRunner& runner, ScriptVariables variables);

// Whether a line's end is the end of the batch: it ends with ";", outside of BEGIN … END and CASE,
// and is neither the text of a procedure, view, function or trigger, nor a declaration, which waits
// for what uses it. All of these end at GO.
bool IsWholeBatch(std::string_view text);

}  // namespace tavcc
