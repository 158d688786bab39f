// What the tests of the switches have in common: each rewrite is turned off in one of them.
#pragma once

#include <gtest/gtest.h>

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "support/seed.h"

namespace tavcc::testing {

// The name of a rewrite as a part of a test's name.
inline std::string IdentifierOf(const ::testing::TestParamInfo<std::string_view>& rewrite) {
  std::string name(rewrite.param);
  std::erase(name, '-');
  return name;
}

// What is tried without the rewrite: everything, or every n-th, so that the n rewrites share it
// out.
template <class T>
std::vector<T> ShareOf(const std::vector<T>& all, std::span<const std::string_view> rewrites,
                       std::string_view rewrite) {
  if (TryAll()) return all;
  const size_t n = rewrites.size();
  std::vector<T> share;
  for (size_t i = 0; i < all.size(); ++i) {
    if (rewrites[i % n] == rewrite) share.push_back(all[i]);
  }
  return share;
}

}  // namespace tavcc::testing
