// The process and its surroundings.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tavcc {

// Readies the process for a command: a reader that has gone away is an error of writing, no end
// without a word, and standard input comes as it is.
void PrepareProcess();

// The command line's words in UTF-8, without the program's name.
std::vector<std::string> CommandLineWords(int argc, const char* const* argv);

// A variable of the environment in UTF-8; nothing where it is not set.
std::optional<std::string> EnvironmentVariable(const std::string& name);

// The languages that the user prefers, as Windows names them ("zh-CN"), the best one first. None on
// Unix, where the environment names them.
std::vector<std::string> UserLanguages();

}  // namespace tavcc
