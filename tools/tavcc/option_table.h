// What the command line knows, as plain data: for the manual page and for shells that complete.
#pragma once

#include <string>
#include <vector>

namespace tavcc {

struct OptionText {
  std::vector<std::string> names;    // "--db", "-v"; of what stands without one, how it is called
  std::string value;                 // what stands behind it, e.g. "FILE"; empty for a flag
  std::string what;                  // a sentence without its point
  std::vector<std::string> choices;  // all the values there are; empty where there are many
  bool is_file = false;
};

struct CommandText {
  std::string name;
  std::string summary;
  std::vector<OptionText> arguments;
  std::vector<OptionText> options;
};

// The manual page, for `man -l -`.
std::string ManualPage(const std::vector<CommandText>& commands);

// The script by which a shell completes: "bash", "zsh" or "fish".
std::string CompletionScript(const std::string& shell, const std::vector<CommandText>& commands);

}  // namespace tavcc
