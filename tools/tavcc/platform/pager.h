// The program through which a person at a terminal reads long output.
#pragma once

#include <memory>
#include <string_view>

namespace tavcc {

class Pager {
 public:
  // Begins the environment's PAGER; where that is not set, `less` on Unix, which by itself shows
  // what fits on one screen as it is. Null when PAGER is empty or "cat", or there is no such
  // program.
  static std::unique_ptr<Pager> Begin();
  Pager() = default;
  Pager(const Pager&) = delete;
  Pager& operator=(const Pager&) = delete;
  // Waits until the person has left it.
  virtual ~Pager() = default;

  // What comes after the person has left is lost.
  virtual void Write(std::string_view text) = 0;
};

}  // namespace tavcc
