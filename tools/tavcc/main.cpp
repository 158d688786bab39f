// tavcc: the rules from a shell. Runs one command, and turns whatever goes wrong into one line on
// standard error and exit status 2.
#include <fmt/core.h>

#include <algorithm>
#include <csignal>
#include <string>

#include "foundation/error.h"
#include "tavcc/command_line.h"
#include "tavcc/output.h"

namespace tavcc {
namespace {

Exit Fail(const std::string& text) {
  std::string line = text.substr(0, text.find_last_not_of("\r\n") + 1);
  std::replace(line.begin(), line.end(), '\r', ' ');
  std::replace(line.begin(), line.end(), '\n', ' ');
  PrintAside(fmt::format("tavcc: {}\n", line));
  return Exit::kFailed;
}

Exit Main(int argc, const char* const* argv) {
  try {
    const auto line = ReadCommandLine(argc, argv);
    return line ? line->command(*line) : Exit::kPassed;
  } catch (const AutomationError& error) {
    return Fail(ErrorText(error));
  } catch (const std::exception& error) {
    return Fail(error.what());
  }
}

}  // namespace
}  // namespace tavcc

int main(int argc, char** argv) {
  // A reader that has gone away is an output that cannot be written, no end without a word.
  std::signal(SIGPIPE, SIG_IGN);
  return static_cast<int>(tavcc::Main(argc, argv));
}
