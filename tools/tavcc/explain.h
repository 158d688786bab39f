// Why a bill may or may not be audited: every gate asked by itself, and what an audit would change.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/erp.h"
#include "tavcc/bills.h"
#include "tavcc/call_watch.h"
#include "tavcc/changes.h"
#include "tavcc/command.h"
#include "tavcc/ladder_report.h"

namespace tavcc {

// The audit itself, tried in a transaction that was rolled back.
struct Trial {
  Exit verdict = Exit::kFailed;
  std::string line;   // the bill's result line
  std::string error;  // why it failed; otherwise empty
  std::vector<ChangeTable> changes;
  std::vector<Stretch> sent;  // the statements, and when
  // What refused a bill behind all gates, while it was posted.
  std::optional<Rung> posting;
};

class Recorder;

struct Explanation {
  Bill bill;
  int16_t direction = 1;
  std::vector<Rung> batch;  // the gates of the batch audit
  std::vector<Rung> host;   // what a host asks beside it
  std::vector<Rung> own;    // the gate of the bill's own class
  Trial trial;

  // Failed where anything failed, refused where anything refused.
  Exit Verdict() const;
};

// Asks every gate of the bill, each in a transaction that is rolled back, and tries the audit in
// another, which the recorder, where there is one, records. Nothing is kept. Errors: those of the
// database outside of gates and trial.
Explanation Explain(Erp& erp, const Bill& bill, int16_t direction, Recorder* recorder = nullptr);

// What the reasons of a refusal are, from the rows that decided and from what the database says of
// the bill. Errors: the database's.
std::vector<Reason> ReasonsOf(Erp& erp, const Bill& bill, const Rung& rung);

// What the audit of a bill changes: looks at its rows when it is made, and again when it is asked.
// Errors: the database's.
class ChangeWatch {
 public:
  ChangeWatch(Erp& erp, const Bill& bill);
  // Tables without a difference are left out.
  std::vector<ChangeTable> Changes();

 private:
  Erp& erp_;
  std::vector<RowComparison> watched_;
};

// "audit" or "un-audit".
const char* DirectionText(const Explanation& explanation);
// "The audit refuses it."
std::string VerdictLine(const Explanation& explanation);
std::string ExplanationText(const Explanation& explanation, bool everything);
Json ExplanationJson(const Explanation& explanation);

}  // namespace tavcc
