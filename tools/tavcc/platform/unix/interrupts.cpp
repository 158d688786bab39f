#include "tavcc/platform/interrupts.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <thread>
#include <utility>

namespace tavcc {
namespace {

// What a handler may do is little: it writes a byte, and the thread does the rest.
int pipe_ends[2] = {-1, -1};
struct sigaction earlier;

constexpr char kInterrupted = 'i';
constexpr char kEnd = 'e';

void Tell(char what) {
  const int error = errno;
  while (write(pipe_ends[1], &what, 1) < 0 && errno == EINTR) {
  }
  errno = error;
}

}  // namespace

struct InterruptWatch::State {
  std::function<void()> interrupted;
  std::thread thread;

  void Wait() {
    for (char what = 0;;) {
      const ssize_t got = read(pipe_ends[0], &what, 1);
      if (got < 0 && errno == EINTR) continue;
      if (got != 1 || what == kEnd) return;
      interrupted();
    }
  }
};

InterruptWatch::InterruptWatch(std::function<void()> interrupted)
    : state_(std::make_unique<State>(State{std::move(interrupted), {}})) {
  if (pipe_ends[0] < 0 && pipe2(pipe_ends, O_CLOEXEC) != 0)
    return;  // then Ctrl-C ends the program, as ever
  state_->thread = std::thread([this] { state_->Wait(); });
  struct sigaction action = {};
  action.sa_handler = [](int) { Tell(kInterrupted); };
  action.sa_flags = SA_RESTART;
  sigaction(SIGINT, &action, &earlier);
}

InterruptWatch::~InterruptWatch() {
  if (!state_->thread.joinable()) return;
  sigaction(SIGINT, &earlier, nullptr);
  Tell(kEnd);
  state_->thread.join();
}

void OutliveInterrupts() {
  std::signal(SIGINT, SIG_IGN);
}

}  // namespace tavcc
