#include "tavcc/traced_ladder.h"

namespace tavcc {
namespace {

Rung::Answer AnswerOf(const std::string& word) {
  using enum Rung::Answer;
  for (const Rung::Answer answer : {kRefused, kFailed, kNotAsked}) {
    if (word == AnswerText(answer)) return answer;
  }
  return kPassed;
}

// The last of a gate's statements that answered with rows, or failed. A gate that stops the bill
// and sent none judged by what a gate before it had read.
void AddStatement(Rung& rung, const TracedLadder& ladder) {
  for (const LoggedStatement& sent : ladder.statements) {
    const bool tells = sent.seen != nullptr || sent.error;
    if (tells && sent.gate == rung.gate) rung.statement = sent;
  }
  if (!rung.statement && IsStopped(rung)) {
    for (const LoggedStatement& sent : ladder.statements) {
      if (sent.seen != nullptr && !sent.gate.empty()) rung.statement = sent;
    }
  }
  if (rung.statement && rung.statement->seen != nullptr) {
    rung.rows = Shown(*rung.statement->seen);
  }
}

}  // namespace

std::vector<Rung> RungsOf(const TracedLadder& ladder, const std::string& method) {
  std::vector<Rung> rungs;
  for (const TracedLadder::Gate& gate : ladder.gates) {
    Rung& rung = rungs.emplace_back();
    rung.gate = gate.name;
    rung.method = method;
    rung.answer = AnswerOf(gate.answer);
    rung.message = gate.message;
    rung.refusal = FindRefusal(gate.message);
    rung.place = gate.place;
    rung.settings = SettingsOf(ladder.host_answers, gate.name);
    AddStatement(rung, ladder);
    if (rung.statement && rung.statement->error && rung.message.empty()) {
      rung.message = rung.statement->error->description();
    }
  }
  return rungs;
}

}  // namespace tavcc
