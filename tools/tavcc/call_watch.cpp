#include "tavcc/call_watch.h"

#include <algorithm>
#include <utility>

namespace tavcc {

CallWatch::CallWatch(StatementObserver other, int rows)
    : other_(std::move(other)), rows_(std::max(rows, other_.rows)) {}

StatementObserver CallWatch::observer() {
  StatementObserver observer = other_;
  observer.rows = rows_;
  if (other_.rows == 0) observer.rows_seen = nullptr;
  observer.sent = [this](const LoggedStatement& statement) {
    if (watching_) Add(statement);
    if (other_.sent) other_.sent(statement);
  };
  observer.host_answered = [this](const HostAnswer& answer) {
    if (watching_) stretches_.back().ladder.host_answers.push_back(answer);
    if (other_.host_answered) other_.host_answered(answer);
  };
  observer.ladder_begun = [this] {
    if (watching_) BeginStretch();
    if (other_.ladder_begun) other_.ladder_begun();
  };
  observer.gate_answered = [this](const GateAnswer& answer) {
    if (watching_) Add(answer);
    if (other_.gate_answered) other_.gate_answered(answer);
  };
  return observer;
}

void CallWatch::Begin() {
  stretches_.clear();
  BeginStretch();
  watching_ = true;
}

std::vector<Stretch> CallWatch::End() {
  watching_ = false;
  stretches_.back().ended = Now();
  return std::move(stretches_);
}

double CallWatch::Now() const {
  return std::chrono::duration<double, std::milli>(Clock::now() - made_).count();
}

void CallWatch::BeginStretch() {
  const double now = Now();
  if (!stretches_.empty()) stretches_.back().ended = now;
  stretches_.push_back({{}, {}, now, now});
}

void CallWatch::Add(const LoggedStatement& statement) {
  Stretch& stretch = stretches_.back();
  stretch.sent_at.push_back(std::max(stretch.begun, Now() - statement.milliseconds));
  stretch.ladder.statements.push_back(statement);
}

void CallWatch::Add(const GateAnswer& answer) {
  TracedLadder::Gate& gate = stretches_.back().ladder.gates.emplace_back();
  gate.name = answer.gate;
  if (!answer.verdict) {
    gate.answer = AnswerText(Rung::Answer::kFailed);
  } else if (!answer.verdict->passed) {
    gate.answer = AnswerText(Rung::Answer::kRefused);
    gate.message = answer.verdict->message;
    gate.place = PlaceText(answer.verdict->where);
  } else {
    gate.answer =
        AnswerText(answer.verdict->asked ? Rung::Answer::kPassed : Rung::Answer::kNotAsked);
  }
}

}  // namespace tavcc
