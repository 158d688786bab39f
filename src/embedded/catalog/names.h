// Names of objects, columns and variables, which are compared by EqualsIgnoringCase.
#pragma once

#include <algorithm>
#include <ranges>
#include <string>
#include <string_view>

#include "foundation/text.h"

namespace tavcc::sql {

// ASCII letters in lower case, other bytes as they are: the form in which names are looked up.
std::string FoldName(std::string_view name);

// The first of the elements whose `name` is this one; null when there is none.
template <class Range>
auto* FindByName(Range&& elements, std::string_view name) {
  const auto found = std::ranges::find_if(
      elements, [&](const auto& element) { return EqualsIgnoringCase(element.name, name); });
  return found == std::ranges::end(elements) ? nullptr : &*found;
}

// Its place, from 0; -1 when there is none.
template <class Range>
int IndexByName(const Range& elements, std::string_view name) {
  const auto* const found = FindByName(elements, name);
  return found == nullptr ? -1 : static_cast<int>(found - &*std::ranges::begin(elements));
}

// [name], with "]" doubled.
std::string BracketName(std::string_view name);

}  // namespace tavcc::sql
