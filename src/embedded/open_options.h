// What is to be opened, and how.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "foundation/date_time.h"

namespace tavcc::sql {

struct OpenOptions {
  // A file, or ":memory:".
  std::string path = ":memory:";
  // What a database in memory begins with: the Image() of another. Empty where there is none.
  std::shared_ptr<const std::string> image = nullptr;
  // Whether a file that does not exist is made. When false, a missing file is an error.
  bool create = true;
  // How long a lock that another process has on the file is waited for; 0 does not wait.
  int busy_seconds = 10;
  // What GETDATE() answers; the machine's local time when empty.
  std::function<DateTime()> clock;
  // How much work one batch may do, so that text that nobody vouches for cannot run for ever or
  // fill the memory: about a thousand of the store's own steps are one, and so is each statement.
  // 0 is no limit.
  int64_t budget = 0;
};

}  // namespace tavcc::sql
