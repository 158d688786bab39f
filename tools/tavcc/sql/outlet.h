// Where what a batch gives is written: standard output, on a terminal through a pager.
#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <string_view>

#include "tavcc/platform/pager.h"

namespace tavcc {

class Outlet {
 public:
  // `pages`: whether a pager may be begun, when there is something to show.
  explicit Outlet(bool pages) : pages_(pages) {}

  // Whole lines. They are written when they are many, or the last writing was a moment ago; at the
  // latest by Flush, which whoever knows that no more comes for now has to call.
  // Errors: CommandError when they cannot be written.
  void Write(std::string_view text);
  void Flush();
  // Behind what was written before: to the pager where there is one, else to standard error.
  void WriteAside(std::string_view text);
  // Flushes, and waits for the person to leave the pager.
  void Finish();

 private:
  bool Page(std::string_view text);

  const bool pages_;
  std::unique_ptr<Pager> pager_;
  std::string waiting_;
  std::chrono::steady_clock::time_point flushed_;
};

}  // namespace tavcc
