// Ctrl-C, while a batch runs.
#pragma once

#include <functional>
#include <thread>

namespace tavcc {

// While it lives, SIGINT does not end the program but calls a function, on a thread of its own.
class InterruptWatch {
 public:
  explicit InterruptWatch(std::function<void()> interrupted);
  InterruptWatch(const InterruptWatch&) = delete;
  InterruptWatch& operator=(const InterruptWatch&) = delete;
  ~InterruptWatch();

 private:
  void Wait();

  const std::function<void()> interrupted_;
  std::thread thread_;
};

}  // namespace tavcc
