#include "odbc/text.h"

#include "foundation/utf8.h"

namespace tavcc::odbc {

std::vector<SQLWCHAR> ToWide(std::string_view text) {
  std::vector<SQLWCHAR> wide;
  wide.reserve(text.size());
  // Half of a pair is nothing that a server takes.
  const auto add = [&](uint32_t unit) { wide.push_back(static_cast<SQLWCHAR>(unit)); };
  ForEachUnit(
      RepairedUtf8(text), [](char) { return kReplacementCharacter; }, add);
  return wide;
}

std::string FromWide(std::span<const SQLWCHAR> wide) {
  return TextOfUnits(wide.size(), [&](size_t i) { return uint32_t{wide[i]}; });
}

}  // namespace tavcc::odbc
