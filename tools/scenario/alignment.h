// Setting two sequences side by side.
#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

namespace tavcc {

// A place of the first sequence and the place of the second that belongs to it; one of them is
// nothing where an element was taken out or put in.
struct Aligned {
  std::optional<size_t> first, second;
};

// The sequences of these lengths side by side: as many equal elements as possible stay together
// (a longest common subsequence); what stands between them is paired in order.
inline std::vector<Aligned> Align(size_t first, size_t second,
                                  const std::function<bool(size_t, size_t)>& same) {
  // Lengths of the longest common subsequences of what is left from (i, j) on.
  std::vector<size_t> length((first + 1) * (second + 1), 0);
  const auto at = [&](size_t i, size_t j) -> size_t& { return length[i * (second + 1) + j]; };
  for (size_t i = first; i-- > 0;) {
    for (size_t j = second; j-- > 0;) {
      at(i, j) = same(i, j) ? at(i + 1, j + 1) + 1 : std::max(at(i + 1, j), at(i, j + 1));
    }
  }
  std::vector<Aligned> pairs;
  size_t i = 0, j = 0, from_i = 0, from_j = 0;
  const auto fill = [&] {  // what stands in front of (i, j)
    for (; from_i < i || from_j < j; from_i += from_i < i, from_j += from_j < j) {
      pairs.push_back({from_i < i ? std::optional(from_i) : std::nullopt,
                       from_j < j ? std::optional(from_j) : std::nullopt});
    }
  };
  while (i < first && j < second) {
    if (same(i, j)) {
      fill();
      pairs.push_back({i++, j++});
      from_i = i;
      from_j = j;
    } else if (at(i + 1, j) >= at(i, j + 1)) {
      ++i;
    } else {
      ++j;
    }
  }
  i = first;
  j = second;
  fill();
  return pairs;
}

}  // namespace tavcc
