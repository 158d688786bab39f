#include "embedded/script.h"

#include <algorithm>

#include "foundation/text.h"

namespace tavcc::sql {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

bool IsBlank(std::string_view text) {
  return text.find_first_not_of(kBlanks) == std::string_view::npos;
}

bool IsGo(std::string_view line) {
  if (IsBlank(line)) return false;
  const size_t first = line.find_first_not_of(kBlanks);
  return EqualsIgnoringCase(line.substr(first, line.find_last_not_of(kBlanks) + 1 - first), "go");
}

}  // namespace

std::vector<ScriptBatch> SplitScript(std::string_view script) {
  std::vector<ScriptBatch> batches;
  size_t batch = 0;
  int line = 1, batch_line = 1;
  const auto add = [&](size_t end) {
    const std::string_view text = script.substr(batch, end - batch);
    if (!IsBlank(text)) batches.push_back({text, batch_line});
  };
  for (size_t at = 0; at < script.size(); ++line) {
    const size_t end = std::min(script.find('\n', at), script.size());
    if (IsGo(script.substr(at, end - at))) {
      add(at);
      batch = std::min(end + 1, script.size());
      batch_line = line + 1;
    }
    at = end + 1;
  }
  add(script.size());
  return batches;
}

}  // namespace tavcc::sql
