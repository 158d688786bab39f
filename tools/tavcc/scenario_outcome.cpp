#include "tavcc/scenario_outcome.h"

#include <fmt/core.h>

#include <algorithm>

#include "foundation/conversions.h"
#include "host/host_dictionary.h"
#include "tavcc/answer.h"
#include "tavcc/output.h"

namespace tavcc {
namespace {

// What a batch says of its bills, or why it ended.
std::string MessageIn(const HostDictionary& results) {
  for (const char* const key : {"ErrorMsg", "BillInfo"}) {
    const Value text = results.ItemOr(key, "");
    if (text.IsText() && !text.text().empty()) return text.text();
  }
  return "";
}

// What the call said: its error, or the first text that it gave back.
std::string MessageOf(const Method& method, const CallOutcome& call) {
  if (call.error) return ErrorText(*call.error);
  for (size_t i = 0; i < method.parameters.size(); ++i) {
    const Value& argument = call.arguments[i];
    if (!method.parameters[i].in_out) continue;
    if (argument.IsText() && !argument.text().empty()) return argument.text();
    if (!argument.IsObject()) continue;
    const auto* const results = dynamic_cast<const HostDictionary*>(argument.object().get());
    if (results == nullptr) continue;
    if (std::string message = MessageIn(*results); !message.empty()) return message;
  }
  return "";
}

Exit VerdictOf(const Method& method, const CallOutcome& call) {
  if (std::ranges::any_of(call.sent, [](const auto& sent) { return sent.error.has_value(); })) {
    return Exit::kFailed;
  }
  if (call.error) return VerdictOf(method, *call.error);
  return VerdictOf(method, call.result, call.arguments);
}

}  // namespace

ScenarioWatch::ScenarioWatch(const Scenario& scenario, CallWatch& calls, ScenarioOutcome& outcome)
    : has_database_(!scenario.IsTape()), calls_(calls), outcome_(outcome) {
  outcome_.steps.clear();
  outcome_.stock = {};
}

// A database that cannot be asked for its stock changes nothing of the scenario.
RunObserver ScenarioWatch::observer() {
  return {.opened =
              [this](BackendSession& session) {
                if (!has_database_) return;
                try {
                  stock_.emplace(*session.connection(), StockRows(""));
                } catch (const AutomationError&) {
                }
              },
          .calling = [this](const Step&) { calls_.Begin(); },
          .called = [this](const Step& step, const CallOutcome& call) { Called(step, call); },
          .ended =
              [this](BackendSession& session) {
                if (!stock_) return;
                try {
                  outcome_.stock = stock_->Changes(*session.connection());
                } catch (const AutomationError&) {
                }
              }};
}

void ScenarioWatch::Called(const Step& step, const CallOutcome& call) {
  outcome_.steps.push_back({.number = step.number,
                            .call = fmt::format("{}.{}", step.cls->name, step.method->name),
                            .note = step.note,
                            .verdict = VerdictOf(*step.method, call),
                            .message = MessageOf(*step.method, call),
                            .sent = calls_.End()});
}

}  // namespace tavcc
