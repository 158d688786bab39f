#include "scenario/known_differences.h"

#include <algorithm>

#include "foundation/text.h"
#include "language/language.h"

namespace tavcc {
namespace {

constexpr std::string_view kAny = "*";
constexpr size_t kKnownFields = 4;

}  // namespace

std::vector<KnownDifference> ParseKnownDifferences(const std::string& file, std::string_view text) {
  std::vector<KnownDifference> known;
  int number = 0;
  for (size_t at = 0; at < text.size();) {
    const size_t end = std::min(text.find('\n', at), text.size());
    std::string_view line = Trim(text.substr(at, end - at));
    if (line.ends_with('\r')) line = Trim(line.substr(0, line.size() - 1));
    at = end + 1;
    ++number;
    if (line.empty() || line.front() == '#') continue;
    std::vector<std::string> fields;
    for (size_t i = 1; i < kKnownFields; ++i) {
      const size_t bar = std::min(line.find(" | "), line.size());
      fields.emplace_back(Trim(line.substr(0, bar)));
      line.remove_prefix(std::min(bar + 3, line.size()));
    }
    fields.emplace_back(Trim(line));
    if (std::ranges::any_of(fields, &std::string::empty)) {
      throw ScenarioError(
          Say("{}: line {}: must have the form FILE | STEP | TEXT | REASON", file, number));
    }
    known.push_back({number, fields[0], fields[1], fields[2], fields[3]});
  }
  return known;
}

std::string DescribeDifferences(const Scenario& scenario,
                                const std::vector<BackendDifference>& differences,
                                std::vector<KnownDifference>& known) {
  std::string text;
  for (const BackendDifference& difference : differences) {
    const auto fits = [&](const KnownDifference& one) {
      return (one.file == kAny || scenario.file.ends_with(one.file)) &&
             (one.step == kAny || one.step == std::to_string(difference.step)) &&
             (one.text == kAny || difference.text.find(one.text) != std::string::npos);
    };
    const auto found = std::ranges::find_if(known, fits);
    if (found != known.end()) {
      found->met = true;
      continue;
    }
    text += "  step " + std::to_string(difference.step) + ": " + difference.text + "\n";
  }
  return text.empty() ? "" : scenario.file + ": " + scenario.name + "\n" + text;
}

}  // namespace tavcc
