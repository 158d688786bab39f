// Showing a person what would change in a file, and asking.
#pragma once

#include <string>

namespace tavcc {

// The changed lines with a few around them: "-" and "+" in front, red and green in colour.
std::string LineDiff(const std::string& before, const std::string& after, bool colour);

enum class Decision { kTake, kLeave, kStop };

// Shows the change of a file and asks on standard input until it is answered; the end of the input
// is kStop. Errors: CommandError when the question cannot be written.
Decision AskForChange(const std::string& file, const std::string& before, const std::string& after);

// Whether standard output is a terminal that shows colours.
bool OutputHasColours();

// The text with what WordDiff marked in red and green.
std::string WithColours(const std::string& text);

}  // namespace tavcc
