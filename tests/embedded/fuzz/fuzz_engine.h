// The whole pipeline on a text that may be anything.
#pragma once

#include <string_view>

namespace tavcc::sql {

// Runs the text as a batch on a small database in memory, held to a budget. Throws std::logic_error
// when the engine fails with an error that is neither the server's nor the budget's: then it
// emitted what SQLite does not take.
void RunOnEngine(std::string_view text);

}  // namespace tavcc::sql
