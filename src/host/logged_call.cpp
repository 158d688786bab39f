#include "host/logged_call.h"

#include <utility>

namespace tavcc {

LoggedCall::LoggedCall(StatementLog& log, StatementObserver observer) : log_(log) {
  log_.Clear();
  log_.SetObserver(std::move(observer));
}

void LoggedCall::End() {
  if (std::exchange(ended_, true)) return;
  log_.EndRows();
  log_.SetObserver({});
}

std::optional<Failure> LoggedCall::failure() const {
  if (log_.first_failure()) return log_.first_failure();
  if (traps_.first()) return Failure{"", *traps_.first()};
  return std::nullopt;
}

void LoggedCall::LadderBegins() {
  if (!ended_) log_.BeginLadder();
}

void LoggedCall::LadderEnds() {
  if (!ended_) log_.EndLadder();
}

void LoggedCall::GateAsked(std::string_view name, bool by_others) {
  if (!ended_) log_.AskGate(name, by_others);
}

void LoggedCall::GateAnswered(const Verdict& verdict) {
  if (!ended_) log_.AnswerGate(verdict);
}

void LoggedCall::HostAnswered(HostQuestion question, std::string_view category,
                              std::string_view key, const Value& answer) {
  if (!ended_) log_.AddHostAnswer(question, category, key, answer);
}

}  // namespace tavcc
