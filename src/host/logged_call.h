// The length of one call in a log: from a clean log to the last row that its rule read.
#pragma once

#include <optional>

#include "foundation/rule_watch.h"
#include "foundation/trap.h"
#include "host/statement_log.h"

namespace tavcc {

class LoggedCall final : RuleWatch {
 public:
  // Clears the log and lets `observer` watch it. `log` must outlive the call.
  explicit LoggedCall(StatementLog& log, StatementObserver observer = {});
  ~LoggedCall() override { End(); }

  // The call has ended: nobody watches any longer, and what is read of the recordsets that it
  // leaves is no rule's. What the log holds stays.
  void End();

  // What failed below the rules, or was trapped in them, so far.
  std::optional<Failure> failure() const;

 private:
  void LadderBegins() override;
  void LadderEnds() override;
  void GateAsked(std::string_view name, bool by_others) override;
  void GateAnswered(const Verdict& verdict) override;
  void HostAnswered(HostQuestion question, std::string_view category, std::string_view key,
                    const Value& answer) override;

  StatementLog& log_;
  TrapWatch traps_;
  bool ended_ = false;
};

}  // namespace tavcc
