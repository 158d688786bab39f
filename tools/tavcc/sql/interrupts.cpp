#include "tavcc/sql/interrupts.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <utility>

namespace tavcc {
namespace {

// What a handler may do is little: it writes a byte, and the thread does the rest.
int ends[2] = {-1, -1};
struct sigaction earlier;

constexpr char kInterrupted = 'i';
constexpr char kEnd = 'e';

void Tell(char what) {
  const int error = errno;
  while (write(ends[1], &what, 1) < 0 && errno == EINTR) {
  }
  errno = error;
}

}  // namespace

InterruptWatch::InterruptWatch(std::function<void()> interrupted)
    : interrupted_(std::move(interrupted)) {
  if (ends[0] < 0 && pipe2(ends, O_CLOEXEC) != 0) return;  // then Ctrl-C ends the program, as ever
  thread_ = std::thread([this] { Wait(); });
  struct sigaction action = {};
  action.sa_handler = [](int) { Tell(kInterrupted); };
  action.sa_flags = SA_RESTART;
  sigaction(SIGINT, &action, &earlier);
}

InterruptWatch::~InterruptWatch() {
  if (!thread_.joinable()) return;
  sigaction(SIGINT, &earlier, nullptr);
  Tell(kEnd);
  thread_.join();
}

void InterruptWatch::Wait() {
  for (char what = 0;;) {
    const ssize_t got = read(ends[0], &what, 1);
    if (got < 0 && errno == EINTR) continue;
    if (got != 1 || what == kEnd) return;
    interrupted_();
  }
}

}  // namespace tavcc
