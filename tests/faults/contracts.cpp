#include "faults/contracts.h"

#include <algorithm>
#include <set>

#include "scenario/values.h"

namespace tavcc::faults {
namespace {

void Replace(std::string& text, std::string_view from, const std::string& to) {
  for (size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
    text.replace(at, from.size(), to);
  }
}

Json Filled(Json form, const AutomationError& failure) {
  if (form.is_string()) {
    auto text = form.get<std::string>();
    if (text == "%number%") return failure.number();
    Replace(text, "%error%", failure.description());
    Replace(text, "%number%", std::to_string(failure.number()));
    return text;
  }
  if (!form.is_structured()) return form;
  for (auto& member : form) member = Filled(member, failure);
  return form;
}

std::string ShowOutcome(const Method& method, const CallOutcome& outcome) {
  if (outcome.error) {
    return "raises " + std::to_string(outcome.error->number()) + " \"" +
           outcome.error->description() + "\" from \"" + outcome.error->source() + "\"";
  }
  std::string shown = "result " + Show(JsonFromValue(outcome.result));
  for (size_t i = 0; i < method.parameters.size(); ++i) {
    if (!method.parameters[i].in_out) continue;
    shown += ", " + std::string(method.parameters[i].name) + " " +
             Show(JsonFromValue(outcome.arguments[i]));
  }
  return shown;
}

void CompareError(const Json& expected, const CallOutcome& outcome,
                  std::vector<std::string>& differences) {
  if (!outcome.error) {
    differences.emplace_back("raises no error");
    return;
  }
  const Json actual = {{"number", outcome.error->number()},
                       {"source", outcome.error->source()},
                       {"description", outcome.error->description()}};
  for (const auto& [key, value] : expected.items()) {
    if (actual.at(key) != value) differences.push_back(key + ": expected " + Show(value));
  }
}

void CompareAnswer(const Json& expected, const Method& method, const CallOutcome& outcome,
                   std::vector<std::string>& differences) {
  if (outcome.error) {
    differences.emplace_back("raises an error");
    return;
  }
  for (const auto& [name, value] : expected.items()) {
    if (name == "result") {
      Compare(value, outcome.result, name, differences);
      continue;
    }
    const auto parameter =
        std::ranges::find(method.parameters, std::string_view(name), &Parameter::name);
    if (parameter == method.parameters.end()) throw JsonError("no argument \"" + name + "\"");
    const auto at = static_cast<size_t>(parameter - method.parameters.begin());
    Compare(value, outcome.arguments[at], name, differences);
  }
}

// Whether `given` has everything that `wanted` names; a list is one of these.
bool Holds(const Json& given, const Json& wanted) {
  if (wanted.is_array()) {
    return std::ranges::any_of(wanted, [&](const Json& one) { return Holds(given, one); });
  }
  if (!wanted.is_object()) return given == wanted;
  return std::ranges::all_of(wanted.items(), [&](const auto& member) {
    return given.contains(member.key()) && Holds(given[member.key()], member.value());
  });
}

}  // namespace

Json ReadContracts(const std::string& file) {
  Json contracts = ParseJson(ReadTextFile(file));
  for (const auto& [method, promises] : contracts.items()) {
    for (const Json& promise : promises) {
      for (const auto& [key, value] : promise.items()) {
        static const std::set<std::string> kKnown = {"statement", "when", "expect", "error",
                                                     "goes_on"};
        if (!kKnown.contains(key)) throw JsonError(method + ": unknown key \"" + key + "\"");
      }
      if (promise.contains("expect") + promise.contains("error") + promise.contains("goes_on") !=
          1) {
        throw JsonError(method + ": a promise is one of expect, error, goes_on");
      }
    }
  }
  return contracts;
}

const Json* PromiseFor(const Json& contracts, const std::string& method,
                       const std::string& statement, const Json& arguments) {
  const auto promises = contracts.find(method);
  if (promises == contracts.end()) return nullptr;
  for (const Json& promise : *promises) {
    if (statement.find(promise.value("statement", "")) == std::string::npos) continue;
    if (!promise.contains("when") || Holds(arguments, promise["when"])) return &promise;
  }
  return nullptr;
}

void CompareWithPromise(const Json& promise, const Method& method, const AutomationError& failure,
                        const CallOutcome& outcome, std::vector<std::string>& differences) {
  const size_t before = differences.size();
  if (promise.contains("error")) {
    CompareError(Filled(promise["error"], failure), outcome, differences);
  } else if (promise.contains("expect")) {
    CompareAnswer(Filled(promise["expect"], failure), method, outcome, differences);
  } else if (outcome.error) {
    differences.emplace_back("raises an error");
  } else if (ShowOutcome(method, outcome).find(failure.description()) != std::string::npos) {
    differences.emplace_back("speaks of the failure");
  }
  if (differences.size() > before) differences.push_back("got " + ShowOutcome(method, outcome));
}

}  // namespace tavcc::faults
