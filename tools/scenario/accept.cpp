#include "scenario/accept.h"

#include <algorithm>
#include <map>
#include <optional>
#include <utility>

#include "scenario/alignment.h"
#include "scenario/json_edit.h"
#include "scenario/runner.h"
#include "scenario/values.h"

namespace tavcc {
namespace {

// How far from its place a statement that is to fail is looked for.
constexpr int kFarthest = 20;

bool Holds(const Json& expected, const Value& actual) {
  std::vector<std::string> differences;
  Compare(expected, actual, "", differences);
  return differences.empty();
}

// A text that writes a date goes on doing so.
Json Plain(const Json& expected, const Value& actual) {
  Json json = JsonFromValue(actual);
  const bool as_text = expected.is_string() && IsForm(json, "date");
  return as_text ? json["date"] : json;
}

Json AcceptedRow(const Json& form, const Recordset& row) {
  Json accepted = form.is_object() ? Json::object() : Json::array();
  for (int i = 0; i < row.FieldCount(); ++i) {
    const std::string name = row.FieldName(i);
    if (form.is_object()) {
      const Json* const known = form.find(name);
      if (known != nullptr) {
        accepted[name] = Accepted(*known, row.Field(i));
      } else if (form.empty()) {
        accepted[name] = JsonFromValue(row.Field(i));
      }
      continue;
    }
    const auto index = static_cast<size_t>(i);
    accepted.push_back(index < form.size() ? Accepted(form[index], row.Field(i))
                                           : JsonFromValue(row.Field(i)));
  }
  return accepted;
}

bool HoldsForRow(const Json& expected, const Recordset& row) {
  return AcceptedRow(expected, row) == expected;
}

Json AcceptedRows(const Json& expected, Recordset& rows) {
  Json accepted = Json::array();
  if (!rows.IsOpen() || (rows.AtStart() && rows.AtEnd())) return accepted;
  const Json first = expected.empty() ? Json::array() : *expected.begin();
  size_t next = 0;
  for (rows.MoveFirst(); !rows.AtEnd(); rows.MoveNext()) {
    // The expected row that is this one, if any is left; else the next one's form.
    size_t same = next;
    while (same < expected.size() && !HoldsForRow(expected[same], rows)) ++same;
    if (same < expected.size()) {
      accepted.push_back(expected[same]);
      next = same + 1;
    } else {
      accepted.push_back(AcceptedRow(next < expected.size() ? expected[next] : first, rows));
    }
  }
  rows.MoveFirst();
  return accepted;
}

Json WithoutKey(const Json& object, std::string_view key) {
  Json rest = Json::object();
  for (const auto& [name, value] : object.items()) {
    if (name != key) rest[name] = value;
  }
  return rest;
}

// The object with `value` under the key, or without the key where there is nothing to expect.
Json With(const Json& object, std::string_view key, const std::optional<Json>& value) {
  if (!value) return WithoutKey(object, key);
  Json changed = object;
  changed[key] = *value;
  return changed;
}

std::optional<Json> AcceptedError(const Json* expected,
                                  const std::optional<AutomationError>& error) {
  if (!error) return std::nullopt;
  const Json all = ErrorJson(*error);
  if (expected == nullptr) return all;
  Json accepted = Json::object();
  for (const auto& [key, value] : expected->items()) accepted[key] = all[key];
  return accepted;
}

// `step` is an object with "expect" and "error": a step or a sweep.
Json AcceptedCall(Json step, const Method& method, const CallOutcome& outcome) {
  step = With(step, "error", AcceptedError(step.find("error"), outcome.error));
  const Json* const expect = step.find("expect");
  if (expect == nullptr) return step;
  Json accepted = Json::object();
  for (const auto& [name, expected] : expect->items()) {
    if (name == "result") {
      if (!outcome.error) accepted[name] = Accepted(expected, outcome.result);
      continue;
    }
    for (size_t i = 0; i < method.parameters.size(); ++i) {
      if (method.parameters[i].name == name) {
        accepted[name] = Accepted(expected, outcome.arguments[i]);
      }
    }
  }
  const bool nothing = accepted.empty() && !expect->empty();
  return With(step, "expect", nothing ? std::nullopt : std::optional(accepted));
}

Json AcceptedQuery(Json step, const QueryOutcome& outcome) {
  step = With(step, "error", AcceptedError(step.find("error"), outcome.error));
  const Json* const rows = step.find("rows");
  if (rows == nullptr) return step;
  if (outcome.error) return WithoutKey(step, "rows");
  return With(step, "rows", Accepted(*rows, Value(outcome.rows)));
}

class Accepting {
 public:
  Accepting(std::string file, std::string_view text, Backend& backend)
      : file_(std::move(file)), text_(text), backend_(backend), json_(ParseScenarioText()) {}

  Acceptance All() {
    for (int number = 1; number <= static_cast<int>(Current().steps.size()); ++number) {
      TakeStep(number);
    }
    return {Rewritten(text_, json_), std::move(notes_)};
  }

 private:
  // Through the reader of scenarios, whose errors name what is wrong with the file.
  Json ParseScenarioText() const {
    ParseScenario(file_, text_);
    return ParseJson(text_);
  }

  // The scenario as it stands by now: what was accepted for a step is what the next ones start
  // from.
  Scenario Current() const { return ParseScenario(file_, Show(json_)); }

  void Note(int step, const std::string& text) {
    notes_.push_back(file_ + ": step " + std::to_string(step) + ": " + text);
  }

  void Put(int number, const Json& step) {
    Json steps = Json::array();
    for (const Json& known : json_["steps"]) {
      steps.push_back(static_cast<int>(steps.size()) + 1 == number ? step : known);
    }
    json_["steps"] = steps;
  }

  void TakeStep(int number);
  Json TakeCall(const Scenario& scenario, const Step& step, Json json);
  Json TakeSweeps(const Scenario& scenario, const Step& step, const Json& before, Json json,
                  int statements);
  CallOutcome Try(const Scenario& scenario, const Step& step,
                  const std::optional<InjectedFailure>& failure) {
    return CallStep(*SessionBefore(scenario, step.number, backend_, true), step, failure);
  }
  std::optional<int> FailingPlace(const Scenario& scenario, const Step& step,
                                  const Json& statements);

  const std::string file_;
  const std::string_view text_;
  Backend& backend_;
  Json json_;
  std::vector<std::string> notes_;
};

void Accepting::TakeStep(int number) {
  const Scenario scenario = Current();
  const Step& step = scenario.steps[static_cast<size_t>(number) - 1];
  const Json before = json_["steps"][static_cast<size_t>(number) - 1];
  try {
    if (step.IsCall()) {
      Put(number, TakeCall(scenario, step, before));
    } else {
      const auto session = SessionBefore(scenario, number, backend_, true);
      Put(number, AcceptedQuery(before, QueryStep(*session, step)));
    }
  } catch (const AutomationError& error) {
    Note(number, "the start state cannot be made: " + error.description());
  } catch (const JsonError& error) {
    Note(number, std::string("key \"args\": ") + error.what());
  }
}

Json Accepting::TakeCall(const Scenario& scenario, const Step& step, Json json) {
  std::optional<InjectedFailure> failure = step.fail;
  if (failure && step.statements) {
    if (const auto at = FailingPlace(scenario, step, *step.statements)) {
      failure->at = *at;
      json["fail"] = With(json["fail"], "at", *at);
    } else {
      Note(step.number, "the statement that is to fail is no longer sent");
    }
  }
  const Json before = json;
  const CallOutcome outcome = Try(scenario, step, failure);
  if (!outcome.off_tape.empty()) {
    Note(step.number, "the tape does not fit any more; record the case again");
    return before;
  }
  json = AcceptedCall(std::move(json), *step.method, outcome);
  if (step.statements) json["statements"] = ListedStatements(outcome.sent);
  if (step.sweeps.empty()) return json;
  return TakeSweeps(scenario, step, before, std::move(json), static_cast<int>(outcome.sent.size()));
}

// Where the statement that the step lets fail stands now; nothing when it is not sent near its
// place.
std::optional<int> Accepting::FailingPlace(const Scenario& scenario, const Step& step,
                                           const Json& statements) {
  const auto index = static_cast<size_t>(step.fail->at) - 1;
  if (index >= statements.size()) return step.fail->at;
  const Json& wanted = statements[index];
  for (int distance = 0; distance <= kFarthest; ++distance) {
    for (const int at : {step.fail->at + distance, step.fail->at - distance}) {
      if (at < 1) continue;
      const CallOutcome outcome = Try(scenario, step, InjectedFailure{at, step.fail->fault});
      const auto sent = static_cast<size_t>(at) - 1;
      if (sent < outcome.sent.size() && ListedStatement(outcome.sent[sent]) == wanted) return at;
    }
  }
  return std::nullopt;
}

// Where each statement went: positions from 1, nothing for one that is gone.
std::map<int, int> Moved(const Json& before, const Json& after) {
  std::map<int, int> moved;
  const auto same = [&](size_t i, size_t j) { return before[i] == after[j]; };
  for (const Aligned& pair : Align(before.size(), after.size(), same)) {
    if (!pair.first || !pair.second) continue;
    moved[static_cast<int>(*pair.first) + 1] = static_cast<int>(*pair.second) + 1;
  }
  return moved;
}

Json PositionsJson(const std::vector<int>& positions) {
  Json json = Json::array();
  for (const int position : positions) json.push_back(position);
  return json;
}

bool SamePositions(const Json& sweep, const std::vector<int>& positions) {
  std::vector<int> listed;
  for (const Json& at : sweep.value("at", Json::array())) listed.push_back(at.get<int>());
  std::ranges::sort(listed);
  return listed == positions;
}

Json Accepting::TakeSweeps(const Scenario& scenario, const Step& step, const Json& before,
                           Json json, int statements) {
  const bool one = !before["sweep"].is_array();
  std::vector<Json> sweeps;
  if (one) {
    sweeps.push_back(before["sweep"]);
  } else {
    sweeps.assign(before["sweep"].begin(), before["sweep"].end());
  }
  std::map<int, int> moved;
  if (step.statements) moved = Moved(*step.statements, json["statements"]);

  // The statements that each sweep stands for now.
  Step now = step;
  for (Sweep& sweep : now.sweeps) {
    if (!step.statements || sweep.at.empty()) continue;
    std::vector<int> at;
    for (const int position : sweep.at) {
      if (const auto found = moved.find(position); found != moved.end())
        at.push_back(found->second);
    }
    // One without positions would stand for all.
    sweep.at = at.empty() ? std::vector<int>{INT32_MAX} : at;
  }

  // By sweep, what it would say for each statement; equal ones together, in order of statements.
  std::vector<std::vector<std::pair<Json, std::vector<int>>>> answers(sweeps.size());
  for (int at = 1; at <= statements; ++at) {
    const Sweep* const chosen = SweepFor(now, at);
    if (chosen == nullptr) continue;
    const auto index = static_cast<size_t>(chosen - now.sweeps.data());
    const auto session = SessionBefore(scenario, step.number, backend_, true);
    const CallOutcome outcome = CallStep(*session, step, InjectedFailure{at, chosen->failure});
    Json answer = AcceptedCall(sweeps[index], *step.method, outcome);
    if (const Json* const then = sweeps[index].find("then")) {
      Json accepted = Json::array();
      for (size_t i = 0; i < then->size(); ++i) {
        accepted.push_back(AcceptedQuery((*then)[i], QueryStep(*session, chosen->then[i])));
      }
      answer["then"] = accepted;
    }
    auto& known = answers[index];
    const auto same = std::ranges::find(known, answer, &std::pair<Json, std::vector<int>>::first);
    if (same != known.end()) {
      same->second.push_back(at);
    } else {
      known.push_back({std::move(answer), {at}});
    }
  }

  Json accepted = Json::array();
  for (size_t i = 0; i < sweeps.size(); ++i) {
    auto& known = answers[i];
    const bool for_others = now.sweeps[i].at.empty();
    // The first keeps the sweep's place: what it says already, else what most statements answer.
    std::ranges::stable_sort(known, [&](const auto& a, const auto& b) {
      const bool a_stays = a.first == sweeps[i], b_stays = b.first == sweeps[i];
      return a_stays != b_stays ? a_stays : a.second.size() > b.second.size();
    });
    for (size_t k = 0; k < known.size(); ++k) {
      const bool keeps_open = for_others && k == 0;
      if (keeps_open) {
        accepted.push_back(known[k].first);
      } else {
        Json sweep = known[k].first;
        if (known.size() > 1 || !SamePositions(sweep, known[k].second)) {
          sweep["at"] = PositionsJson(known[k].second);
        }
        accepted.push_back(std::move(sweep));
      }
    }
    if (known.empty() && for_others) accepted.push_back(sweeps[i]);
  }
  if (accepted.empty()) {
    Note(step.number, "the call sends no statement that could fail: its sweep is gone");
    return WithoutKey(json, "sweep");
  }
  json["sweep"] = one && accepted.size() == 1 ? *accepted.begin() : accepted;
  return json;
}

}  // namespace

Json Accepted(const Json& expected, const Value& actual) {
  if (Holds(expected, actual)) return expected;
  if (expected.is_array()) {
    if (auto* rows = ObjectOf<Recordset>(actual)) return AcceptedRows(expected, *rows);
    if (const auto* vector = ObjectOf<Vector>(actual)) {
      Json elements = Json::array();
      for (int i = vector->LBound(); i <= vector->UBound(); ++i) {
        const auto index = static_cast<size_t>(i - vector->LBound());
        elements.push_back(index < expected.size() ? Accepted(expected[index], vector->Item(i))
                                                   : JsonFromValue(vector->Item(i)));
      }
      return elements;
    }
  }
  const auto* const dictionary = ObjectOf<Dictionary>(actual);
  if (expected.is_object() && dictionary != nullptr) {
    Json keys = Json::object();
    for (const auto& [key, value] : expected.items()) {
      keys[key] = dictionary->Lookup(key) ? Accepted(value, dictionary->Item(key)) : Json(nullptr);
    }
    return keys;
  }
  return Plain(expected, actual);
}

Acceptance AcceptScenario(const std::string& file, std::string_view text, Backend& backend) {
  return Accepting(file, text, backend).All();
}

}  // namespace tavcc
