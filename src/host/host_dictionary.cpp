// The reference host's keyed dictionary.
#include "host/host_dictionary.h"

#include <algorithm>

#include "foundation/text.h"

namespace tavcc {

const HostDictionary::Entry* HostDictionary::Find(std::string_view key) const {
  const auto found = std::find_if(entries_.begin(), entries_.end(), [&](const Entry& entry) {
    return EqualsIgnoringCase(entry.first, key);
  });
  return found == entries_.end() ? nullptr : &*found;
}

Value HostDictionary::Item(std::string_view key) const {
  return ItemOr(key, Empty{});
}

void HostDictionary::SetItem(std::string_view key, Value value) {
  if (const Entry* entry = Find(key)) {
    entries_[static_cast<size_t>(entry - entries_.data())].second = std::move(value);
    return;
  }
  entries_.emplace_back(key, std::move(value));
}

Value HostDictionary::ItemOr(std::string_view key, Value fallback) const {
  const Entry* entry = Find(key);
  if (entry == nullptr) return fallback;
  return entry->second;
}

bool HostDictionary::Lookup(std::string_view key) const {
  return Find(key) != nullptr;
}

}  // namespace tavcc
