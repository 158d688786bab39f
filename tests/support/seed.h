// How hard the tests try, and random attacks that can be made again: the seed is printed, and
// TAVCC_SEED sets it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <random>

namespace tavcc::testing {

// TAVCC_SEED, or the seed of every day.
uint32_t Seed();
// Whether everything is to be tried (TAVCC_ATTACKS is "all") and not only a part.
bool TryAll();
// Whether the one of this number is this program's to try, where several programs share them out:
// TAVCC_SHARE is "1/2" for the first of two. All are, where it is not set or everything is tried.
bool IsInShare(size_t number);

class Chance {
 public:
  explicit Chance(uint32_t seed) : random_(seed) {}
  // A number from 0 to below `count`.
  size_t Below(size_t count) { return random_() % count; }
  template <class Range>
  const auto& Of(const Range& range) {
    return std::begin(range)[static_cast<std::ptrdiff_t>(Below(std::size(range)))];
  }

 private:
  std::mt19937 random_;
};

}  // namespace tavcc::testing
