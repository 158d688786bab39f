#include "tavcc/scenario_outcome.h"

#include <fmt/core.h>

#include <algorithm>

#include "tavcc/answer.h"
#include "tavcc/output.h"

namespace tavcc {
namespace {

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
  outcome_.steps.push_back(
      {.number = step.number,
       .call = fmt::format("{}.{}", step.cls->name, step.method->name),
       .note = step.note,
       .verdict = VerdictOf(*step.method, call),
       .message = call.error ? ErrorText(*call.error) : MessageOf(*step.method, call.arguments),
       .sent = calls_.End()});
}

}  // namespace tavcc
