#include "tavcc/platform/interrupts.h"

#include <windows.h>

#include <mutex>
#include <utility>

namespace tavcc {

struct InterruptWatch::State {
  std::function<void()> interrupted;

  // Windows calls a handler on a thread of its own, which may be just about to when a watch ends.
  static inline std::mutex mutex;
  static inline State* current = nullptr;

  static BOOL WINAPI Handle(DWORD event) {
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) return FALSE;
    const std::lock_guard lock(mutex);
    if (current == nullptr) return FALSE;
    current->interrupted();
    return TRUE;
  }
};

InterruptWatch::InterruptWatch(std::function<void()> interrupted)
    : state_(std::make_unique<State>(State{std::move(interrupted)})) {
  {
    const std::lock_guard lock(State::mutex);
    State::current = state_.get();
  }
  SetConsoleCtrlHandler(State::Handle, TRUE);
}

InterruptWatch::~InterruptWatch() {
  SetConsoleCtrlHandler(State::Handle, FALSE);
  const std::lock_guard lock(State::mutex);
  State::current = nullptr;
}

namespace {

BOOL WINAPI OutliveHandler(DWORD event) {
  return event == CTRL_C_EVENT ? TRUE : FALSE;
}

}  // namespace

void OutliveInterrupts() {
  // Handlers that are set later are asked first.
  SetConsoleCtrlHandler(OutliveHandler, TRUE);
}

}  // namespace tavcc
