// Ctrl-C, while a batch runs.
#pragma once

#include <functional>
#include <memory>

namespace tavcc {

// While it lives, Ctrl-C does not end the program but calls a function, on a thread of its own.
// There is one at a time.
class InterruptWatch {
 public:
  explicit InterruptWatch(std::function<void()> interrupted);
  InterruptWatch(const InterruptWatch&) = delete;
  InterruptWatch& operator=(const InterruptWatch&) = delete;
  ~InterruptWatch();

 private:
  struct State;
  const std::unique_ptr<State> state_;
};

// From now on Ctrl-C ends what asks for it, a watch or the line that is typed, and never the
// program.
void OutliveInterrupts();

}  // namespace tavcc
