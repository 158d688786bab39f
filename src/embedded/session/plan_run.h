// Running a plan on the session's connection.
#pragma once

#include <span>

#include "embedded/plan/statement_plans.h"
#include "embedded/session/frame.h"
#include "embedded/session/session_context.h"

namespace tavcc::sql {

// The plan for the frame's literals, made by compile(StatementPlan&) when none of the plans is
// good.
template <class StatementPlan, class Compile>
StatementPlan& FindPlan(SessionContext& session, const Frame& frame,
                        PlanCache<StatementPlan>& plans, const Compile& compile) {
  return plans.Find(session.catalog, frame.literals, [&](StatementPlan& plan) {
    compile(plan);
    ++session.compiled;
  });
}

// Runs a plan: binds its parameters, steps it, resets it whatever happens.
class PlanRun {
 public:
  // `row`: the values of the row parameters. Errors: those of conversions.
  PlanRun(SessionContext& session, Plan& plan, const Frame& frame,
          std::span<const StoredValue> row = {});
  PlanRun(const PlanRun&) = delete;
  PlanRun& operator=(const PlanRun&) = delete;
  ~PlanRun();

  bool Step();
  int ColumnCount() const;
  StoredValue Column(int index) const;
  void Read(int index, StoredValue& out) const;  // the same, in the memory of `out`
  // The same of a query's column, which holds what its type says. Errors: that the file is damaged.
  void ReadTyped(size_t column, const ResultShape& shape, StoredValue& out) const;

 private:
  SessionContext& session_;
  Plan& plan_;
};

}  // namespace tavcc::sql
