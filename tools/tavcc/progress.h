// A progress bar on standard error, for work that a person waits for at a terminal.
#pragma once

#include <chrono>
#include <cstddef>
#include <string_view>

namespace tavcc {

// Shows nothing where standard error is no terminal, and nothing for work that takes less than half
// a second. The bar is gone when the object is.
class Progress {
 public:
  explicit Progress(size_t total);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // Takes the bar away until it is shown again: before something else is printed.
  void Hide();

  // `done` of the total; `what` is being worked on now.
  void Show(size_t done, std::string_view what);

 private:
  using Clock = std::chrono::steady_clock;
  size_t total_;
  bool terminal_;
  bool drawn_ = false;
  Clock::time_point started_ = Clock::now();
  Clock::time_point last_ = started_;
};

}  // namespace tavcc
