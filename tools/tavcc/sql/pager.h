// The program through which a person at a terminal reads long output.
#pragma once

#include <sys/types.h>

#include <memory>
#include <string_view>

namespace tavcc {

class Pager {
 public:
  // Begins the environment's PAGER; where that is not set, `less`, which by itself shows what fits
  // on one screen as it is. Null when PAGER is empty or "cat", or there is no such program.
  static std::unique_ptr<Pager> Begin();
  Pager(const Pager&) = delete;
  Pager& operator=(const Pager&) = delete;
  // Waits until the person has left it.
  ~Pager();

  // What comes after the person has left is lost.
  void Write(std::string_view text);

 private:
  Pager(pid_t process, int input) : process_(process), input_(input) {}

  const pid_t process_;
  int input_;
};

}  // namespace tavcc
