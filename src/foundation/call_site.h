// A line of source, as the place that something comes from.
#pragma once

namespace tavcc {

// As std::source_location, which not every compiler has yet.
struct CallSite {
  const char* file = "";  // as the compiler was given it
  int line = 0;           // from 1; 0 is nowhere

  static constexpr CallSite Current(const char* file = __builtin_FILE(),
                                    int line = __builtin_LINE()) {
    return {file, line};
  }
};

}  // namespace tavcc
