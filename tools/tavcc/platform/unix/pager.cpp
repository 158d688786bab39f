#include "tavcc/platform/pager.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <string>

#include "tavcc/platform/process.h"

namespace tavcc {
namespace {

// Quits where all fits on one screen, shows colours, cuts long lines, and leaves the screen as it
// is.
constexpr const char* kLessOptions = "-FRSX";

bool IsProgram(const std::string& name) {
  if (name.find('/') != std::string::npos) return access(name.c_str(), X_OK) == 0;
  const std::string path = EnvironmentVariable("PATH").value_or("");
  for (size_t at = 0; at <= path.size();) {
    const size_t end = std::min(path.find(':', at), path.size());
    if (access((path.substr(at, end - at) + "/" + name).c_str(), X_OK) == 0) return true;
    at = end + 1;
  }
  return false;
}

std::string PagerCommand() {
  const std::string command = EnvironmentVariable("PAGER").value_or("less");
  const std::string program = command.substr(0, command.find(' '));
  return program == "cat" || program.empty() || !IsProgram(program) ? "" : command;
}

[[noreturn]] void Become(const std::string& command, int input, int other_end) {
  dup2(input, STDIN_FILENO);
  close(input);
  close(other_end);
  std::signal(SIGPIPE, SIG_DFL);
  std::signal(SIGINT, SIG_DFL);
  setenv("LESS", kLessOptions, /*overwrite=*/0);
  execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
  _exit(127);
}

class PagerProcess : public Pager {
 public:
  PagerProcess(pid_t process, int input) : process_(process), input_(input) {}
  ~PagerProcess() override {
    if (input_ >= 0) close(input_);
    while (waitpid(process_, nullptr, 0) < 0 && errno == EINTR) {
    }
  }

  void Write(std::string_view text) override {
    while (input_ >= 0 && !text.empty()) {
      const ssize_t written = write(input_, text.data(), text.size());
      if (written < 0 && errno == EINTR) continue;
      if (written < 0) {
        close(input_);
        input_ = -1;
        return;
      }
      text.remove_prefix(static_cast<size_t>(written));
    }
  }

 private:
  const pid_t process_;
  int input_;
};

}  // namespace

std::unique_ptr<Pager> Pager::Begin() {
  const std::string command = PagerCommand();
  int ends[2];
  if (command.empty() || pipe2(ends, O_CLOEXEC) != 0) return nullptr;
  const pid_t process = fork();
  if (process == 0) Become(command, ends[0], ends[1]);
  close(ends[0]);
  if (process < 0) {
    close(ends[1]);
    return nullptr;
  }
  return std::make_unique<PagerProcess>(process, ends[1]);
}

}  // namespace tavcc
