#include "tavcc/platform/process.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>

namespace tavcc {

void PrepareProcess() {
  std::signal(SIGPIPE, SIG_IGN);
}

std::vector<std::string> CommandLineWords(int argc, const char* const* argv) {
  return {argv + std::min(argc, 1), argv + argc};
}

std::optional<std::string> EnvironmentVariable(const std::string& name) {
  const char* const value = std::getenv(name.c_str());
  return value == nullptr ? std::nullopt : std::optional<std::string>(value);
}

std::vector<std::string> UserLanguages() {
  return {};
}

}  // namespace tavcc
