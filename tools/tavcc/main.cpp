// tavcc: the rules from a shell. Runs one command, and turns whatever goes wrong into one line on
// standard error and exit status 2.
#include <fmt/core.h>

#include <algorithm>
#include <string>
#include <vector>

#include "foundation/error.h"
#include "tavcc/command_line.h"
#include "tavcc/output.h"
#include "tavcc/platform/process.h"

namespace tavcc {
namespace {

Exit Fail(const std::string& text) {
  std::string line = text.substr(0, text.find_last_not_of("\r\n") + 1);
  std::replace(line.begin(), line.end(), '\r', ' ');
  std::replace(line.begin(), line.end(), '\n', ' ');
  PrintAside(fmt::format("tavcc: {}\n", line));
  return Exit::kFailed;
}

Exit Main(const std::vector<std::string>& words) {
  try {
    const auto line = ReadCommandLine(words);
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
  tavcc::PrepareProcess();
  return static_cast<int>(tavcc::Main(tavcc::CommandLineWords(argc, argv)));
}
