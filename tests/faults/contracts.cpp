#include "faults/contracts.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>

#include "scenario/values.h"

namespace tavcc::faults {
namespace {

void Replace(std::string& text, std::string_view from, const std::string& to) {
  for (size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
    text.replace(at, from.size(), to);
  }
}

Json Filled(const Json& form, const AutomationError& failure) {
  if (form.is_string()) {
    auto text = form.get<std::string>();
    if (text == "%number%") return failure.number();
    Replace(text, "%error%", failure.description());
    Replace(text, "%number%", std::to_string(failure.number()));
    return text;
  }
  if (!form.is_structured()) return form;
  Json filled = form.is_array() ? Json::array() : Json::object();
  for (const Json& element : form) filled.push_back(Filled(element, failure));
  for (const auto& [key, value] : form.items()) filled[key] = Filled(value, failure);
  return filled;
}

std::optional<ExpectedError> ErrorIn(const Json& promise) {
  if (!promise.contains("error")) return std::nullopt;
  ExpectedError expected;
  for (const auto& [key, value] : promise["error"].items()) {
    if (key == "number") expected.number = value.get<int32_t>();
    if (key == "source") expected.source = value.get<std::string>();
    if (key == "description") expected.description = value.get<std::string>();
  }
  return expected;
}

// The keys of an object are those that somebody reads.
void AllowOnly(const std::string& place, const Json& object, const std::set<std::string>& known) {
  for (const auto& [key, value] : object.items()) {
    if (!known.contains(key)) throw JsonError(place + ": unknown key \"" + key + "\"");
  }
}

std::set<std::string> AnswersOf(const std::string& name) {
  std::set<std::string> answers = {"result"};
  const MethodName found = FindMethodByName(name);
  for (const Parameter& parameter : found.method->parameters) answers.emplace(parameter.name);
  return answers;
}

using Kind = StatementFault::Kind;

const std::string kEveryMethod = "*";

const std::map<std::string, Kind> kFaults = {{"raised", Kind::kRaised},
                                             {"left", Kind::kLeft},
                                             {"closed", Kind::kClosed},
                                             {"nulls", Kind::kNulls}};

bool IsFor(const Json& promise, Kind kind) {
  if (!promise.contains("fault")) return kind == Kind::kRaised || kind == Kind::kClosed;
  return kFaults.at(promise["fault"].get<std::string>()) == kind;
}

// Whether `given` has everything that `wanted` names; a list is one of these.
bool Holds(const Json& given, const Json& wanted) {
  if (wanted.is_array()) {
    return std::ranges::any_of(wanted, [&](const Json& one) { return Holds(given, one); });
  }
  if (!wanted.is_object()) return given == wanted;
  return std::ranges::all_of(wanted.items(), [&](const Json::Member& member) {
    return given.contains(member.key) && Holds(given[member.key], member.value);
  });
}

}  // namespace

std::string FaultName(StatementFault::Kind kind) {
  for (const auto& [name, known] : kFaults) {
    if (known == kind) return name;
  }
  return "";
}

Json ReadContracts(const std::string& file) {
  Json contracts = ParseJson(ReadTextFile(file));
  for (const auto& [method, promises] : contracts.items()) {
    const std::set<std::string> answers =
        method == kEveryMethod ? std::set<std::string>() : AnswersOf(method);
    for (const Json& promise : promises) {
      AllowOnly(method, promise,
                {"fault", "statement", "when", "expect", "error", "goes_on", "as_usual",
                 "as_raised", "one_of"});
      AllowOnly(method, promise.value("expect", Json::object()), answers);
      AllowOnly(method, promise.value("error", Json::object()),
                {"number", "source", "description"});
      if (promise.contains("expect") + promise.contains("error") + promise.contains("goes_on") +
              promise.contains("as_usual") + promise.contains("as_raised") +
              promise.contains("one_of") !=
          1) {
        throw JsonError(
            method + ": a promise is one of expect, error, goes_on, as_usual, as_raised, one_of");
      }
      if (promise.contains("fault") && !kFaults.contains(promise["fault"].get<std::string>())) {
        throw JsonError(method + ": unknown fault " + Show(promise["fault"]));
      }
    }
  }
  return contracts;
}

namespace {

const Json* FindPromise(const Json& contracts, const std::string& owner, Kind kind,
                        const std::string& statement, const Json& arguments) {
  const Json* const promises = contracts.find(owner);
  if (promises == nullptr) return nullptr;
  for (const Json& promise : *promises) {
    if (!IsFor(promise, kind)) continue;
    if (statement.find(promise.value("statement", std::string())) == std::string::npos) continue;
    if (!promise.contains("when") || Holds(arguments, promise["when"])) return &promise;
  }
  return nullptr;
}

}  // namespace

const Json* PromiseFor(const Json& contracts, StatementFault::Kind kind, const std::string& method,
                       const std::string& statement, const Json& arguments) {
  static const Json as_usual = {{"as_usual", true}};
  const Json* promise = FindPromise(contracts, method, kind, statement, arguments);
  if (promise == nullptr)
    promise = FindPromise(contracts, kEveryMethod, kind, statement, arguments);
  if (promise == nullptr) return kind == Kind::kLeft ? &as_usual : nullptr;
  if (!promise->contains("as_raised")) return promise;
  return PromiseFor(contracts, Kind::kRaised, method, statement, arguments);
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

void CompareWithPromise(const Json& promise, const Method& method, const AutomationError& failure,
                        const CallOutcome& usual, const CallOutcome& outcome,
                        std::vector<std::string>& differences) {
  if (const Json* const choices = promise.find("one_of")) {
    std::vector<std::string> all;
    for (const Json& choice : *choices) {
      std::vector<std::string> these;
      CompareWithPromise(choice, method, failure, usual, outcome, these);
      if (these.empty()) return;
      all.insert(all.end(), these.begin(), these.end());
    }
    differences.insert(differences.end(), all.begin(), all.end());
    return;
  }
  if (promise.contains("as_usual")) {
    const std::string wanted = ShowOutcome(method, usual);
    const std::string got = ShowOutcome(method, outcome);
    if (got != wanted) differences.push_back("wanted " + wanted + "\n  got " + got);
    return;
  }
  if (promise.contains("goes_on")) {
    const auto speaks = [&](const CallOutcome& of) {
      return ShowOutcome(method, of).find(failure.description()) != std::string::npos;
    };
    if (speaks(outcome) && !speaks(usual)) differences.emplace_back("speaks of the failure");
    if (outcome.error && !usual.error) differences.emplace_back("raises an error");
    if (!differences.empty()) differences.push_back("got " + ShowOutcome(method, outcome));
    return;
  }
  const size_t before = differences.size();
  const Json filled = Filled(promise, failure);
  CompareOutcome(method, filled.value("expect", Json::object()), ErrorIn(filled), outcome,
                 differences);
  if (differences.size() > before) differences.push_back("got " + ShowOutcome(method, outcome));
}

}  // namespace tavcc::faults
