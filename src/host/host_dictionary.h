// The reference host's keyed dictionary.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/dictionary.h"

namespace tavcc {

// Keys keep the order in which they were first set, and the spelling of that time. They are
// compared without regard to the case of ASCII letters; other characters byte by byte.
class HostDictionary final : public Dictionary {
 public:
  using Entry = std::pair<std::string, Value>;

  Value Item(std::string_view key) const override;
  void SetItem(std::string_view key, Value value) override;
  Value ItemOr(std::string_view key, Value fallback) const override;
  bool Lookup(std::string_view key) const override;

  const std::vector<Entry>& entries() const { return entries_; }

 private:
  const Entry* Find(std::string_view key) const;

  // A bill's dictionary holds a handful of keys, so that looking through them is quicker than any
  // index over them.
  std::vector<Entry> entries_;
};

}  // namespace tavcc
