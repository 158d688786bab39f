// --trace: the statements that a call sends, as a person or a program reads them.
#pragma once

#include <string>
#include <string_view>

#include "host/statement_log.h"
#include "scenario/json.h"
#include "tavcc/command.h"

namespace tavcc {

// Shows, where --trace asks for it, each statement on standard error as it is sent, and its rows
// when the rule has let go of them.
StatementObserver TraceOf(const CommonOptions& options);

// The same for a command that prints the rows itself: without them.
StatementObserver TraceWithoutRows(const CommonOptions& options);

// For a command that prints its statements as JSON: all rows are kept, where --trace asks for it.
StatementObserver TraceForJson(const CommonOptions& options);

// The first `most` of the rows that were seen, as a table, each line behind `indent`; then how many
// more there were, and how many of the `in_all` (-1 where that is not known) were not looked at.
std::string SeenRowsText(const SeenRows& seen, int in_all, int most, std::string_view indent = "");

// What a statement came to: its error, or how many rows it answered with; empty where it has none.
std::string OutcomeText(const LoggedStatement& statement);

// A statement as --trace shows it: with what came of it, its time, its sender and its gate; and its
// rows, as far as they were seen and kept, but not more than `most`.
std::string SentText(const LoggedStatement& statement);
std::string SentRowsText(const LoggedStatement& statement, int most = StatementObserver::kAllRows);

// A statement with the members that it has in host/trace_lines.h, but its number, and values as all
// commands print them in JSON; under "seen" the rows that the rule saw.
Json StatementJson(const LoggedStatement& statement);

}  // namespace tavcc
