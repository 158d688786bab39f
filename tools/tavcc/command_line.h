// The command line: which commands there are, and what each may be told.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tavcc/command.h"

namespace tavcc {

struct CommandLine {
  CommonOptions common;
  DemoOptions demo;
  InitOptions init;
  CallOptions call;
  AuditOptions audit;
  RecordTraceOptions record;
  RunOptions run;
  SqlOptions sql;
  ExplainOptions explain;
  RefusalsOptions refusals;
  ClassesOptions classes;
  std::string help_for;  // a command; empty for all
  std::string shell;     // that is to complete
  std::string language;  // of the program's own words; empty for the environment's
  // The command that was chosen, with its part of this line.
  Exit (*command)(const CommandLine& line) = nullptr;
};

// Chooses the language, which the environment or --lang names, then reads the words behind the
// program's name; prints the help where it is asked for, and answers nothing then. Errors:
// CommandError for a line that no command takes.
std::optional<CommandLine> ReadCommandLine(const std::vector<std::string>& words);

}  // namespace tavcc
