#include "scenario/compare_roads.h"

#include <algorithm>
#include <optional>

#include "foundation/text.h"
#include "scenario/runner.h"
#include "scenario/values.h"

namespace tavcc {
namespace {

constexpr std::string_view kAny = "*";
constexpr size_t kKnownFields = 4;

std::string ErrorText(const std::optional<AutomationError>& error) {
  if (!error) return "none";
  return std::to_string(error->number()) + " \"" + error->description() + "\"";
}

class Comparison {
 public:
  explicit Comparison(std::vector<RoadDifference>& differences) : differences_(differences) {}

  void Step(const tavcc::Step& step, Road& first, Road& second) {
    step_ = step.number;
    if (step.IsCall()) {
      Calls(*step.method, CallStep(first, step, step.fail), CallStep(second, step, step.fail));
    } else {
      Texts("rows", Rows(first, step.query), Rows(second, step.query));
    }
  }

 private:
  void Texts(const std::string& what, const std::string& first, const std::string& second) {
    if (first != second) differences_.push_back({step_, what + ": " + first + " / " + second});
  }

  void Calls(const Method& method, const CallOutcome& first, const CallOutcome& second) {
    Texts("error", ErrorText(first.error), ErrorText(second.error));
    Values("result", first.result, second.result);
    for (size_t i = 0; i < method.parameters.size(); ++i) {
      if (!method.parameters[i].in_out) continue;
      Values(std::string(method.parameters[i].name), first.arguments[i], second.arguments[i]);
    }
    for (size_t i = 0; i < std::max(first.sent.size(), second.sent.size()); ++i) {
      Texts("statement " + std::to_string(i + 1), Statement(first.sent, i),
            Statement(second.sent, i));
    }
  }

  // 7 and 7.0 are the same here, as they are for a caller.
  void Values(const std::string& what, const Value& first, const Value& second) {
    const Json a = JsonFromValue(first);
    const Json b = JsonFromValue(second);
    if (a != b) Texts(what, Show(a), Show(b));
  }

  // The statement with its error; how many rows it had shows in what came of them.
  static std::string Statement(const std::vector<LoggedStatement>& sent, size_t i) {
    if (i >= sent.size()) return "none";
    const std::string text = Show(ShowStatement(sent[i]));
    return sent[i].error ? text + " -> error " + ErrorText(sent[i].error) : text;
  }

  static std::string Rows(Road& road, const std::string& query) {
    try {
      const RecordsetPtr rows = road.connection()->Execute(query);
      return rows->IsOpen() ? Show(JsonFromRows(*rows, RowForm::kObjects)) : "none";
    } catch (const AutomationError& error) {
      return "error " + ErrorText(error);
    }
  }

  std::vector<RoadDifference>& differences_;
  int step_ = 0;
};

std::unique_ptr<Road> OpenRoad(const Scenario& scenario, Roads& roads, std::string& error) {
  try {
    return roads.Open(scenario.start);
  } catch (const AutomationError& raised) {
    error = ErrorText(raised);
    return nullptr;
  }
}

}  // namespace

std::vector<RoadDifference> CompareRoads(const Scenario& scenario, Roads& first, Roads& second,
                                         std::vector<std::string>* skipped) {
  std::vector<RoadDifference> differences;
  const auto skip = [&](const std::string& line) {
    if (skipped != nullptr) skipped->push_back(line);
  };
  const bool clock = first.FixesClock() && second.FixesClock();
  if (scenario.needs_clock && !clock) return skip(NeedsClockText(scenario, 0)), differences;
  std::string first_error, second_error;
  const auto road = OpenRoad(scenario, first, first_error);
  const auto other = OpenRoad(scenario, second, second_error);
  if (first_error != second_error) {
    differences.push_back({0, "start: " + first_error + " / " + second_error});
  }
  if (road == nullptr || other == nullptr) return differences;
  Comparison comparison(differences);
  for (const Step& step : scenario.steps) {
    if (step.needs_clock && !clock) {
      skip(NeedsClockText(scenario, step.number));
      continue;
    }
    const size_t before = differences.size();
    comparison.Step(step, *road, *other);
    const std::string obstacle = road->Obstacle() + other->Obstacle();
    if (obstacle.empty()) continue;
    differences.resize(before);
    skip(scenario.file + ": from step " + std::to_string(step.number) + " on: " + obstacle);
    break;
  }
  return differences;
}

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
      throw ScenarioError(file + ": line " + std::to_string(number) +
                          ": must have the form FILE | STEP | TEXT | REASON");
    }
    known.push_back({number, fields[0], fields[1], fields[2], fields[3]});
  }
  return known;
}

std::string DescribeDifferences(const Scenario& scenario,
                                const std::vector<RoadDifference>& differences,
                                std::vector<KnownDifference>& known) {
  std::string text;
  for (const RoadDifference& difference : differences) {
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
