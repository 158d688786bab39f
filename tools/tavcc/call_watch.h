// What a call does while it runs, for a page: which gates were asked, which statements were sent,
// and when.
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "host/statement_log.h"
#include "tavcc/traced_ladder.h"

namespace tavcc {

// A part of a call: what came before its gates, or one walk over them with all that followed.
struct Stretch {
  TracedLadder ladder;
  std::vector<double> sent_at;  // when each of its statements was sent
  // Milliseconds, as those above since the watch was made.
  double begun = 0;
  double ended = 0;
};

// One with a name: of a bill, of a scenario.
struct NamedStretch {
  std::string name;
  std::string mark;  // what it came to: "passed", "refused", …; empty where it came to nothing
  Stretch stretch;
};

class CallWatch {
 public:
  static constexpr int kMostRows = 100;

  // `other` watches too. Of each statement, `rows` are kept.
  explicit CallWatch(StatementObserver other, int rows);
  CallWatch(const CallWatch&) = delete;
  CallWatch& operator=(const CallWatch&) = delete;

  // For the log of the calls. The watch outlives them.
  StatementObserver observer();

  // Around a call; what is sent outside of the two is not kept. A call has at least one stretch,
  // the first of which has no gates.
  void Begin();
  std::vector<Stretch> End();

 private:
  using Clock = std::chrono::steady_clock;

  double Now() const;
  void BeginStretch();
  void Add(const LoggedStatement& statement);
  void Add(const GateAnswer& answer);

  const StatementObserver other_;
  const int rows_;
  const Clock::time_point made_ = Clock::now();
  bool watching_ = false;
  std::vector<Stretch> stretches_;
};

}  // namespace tavcc
