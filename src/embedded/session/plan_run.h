// Running a plan on the session's connection.
#pragma once

#include <span>

#include "embedded/plan/plan.h"
#include "embedded/session/engine.h"
#include "embedded/session/frame.h"

namespace tavcc::sql {

// The plan for the frame's literals, made by compile(Plan&) when none of the plans is good.
template <class Compile>
Plan& FindPlan(Engine& engine, const Frame& frame, PlanCache& plans, const Compile& compile) {
  return plans.Find(engine.catalog(), frame.literals, [&](Plan& plan) {
    compile(plan);
    engine.CountCompiled();
  });
}

// Runs a plan: binds its parameters, steps it, resets it whatever happens.
class PlanRun {
 public:
  // `row`: the values of the row parameters. Errors: those of conversions.
  PlanRun(Engine& engine, Plan& plan, const Frame& frame, std::span<const StoredValue> row = {});
  PlanRun(const PlanRun&) = delete;
  PlanRun& operator=(const PlanRun&) = delete;
  ~PlanRun();

  bool Step();
  int ColumnCount() const;
  StoredValue Column(int index) const;
  void Read(int index, StoredValue& out) const;  // the same, in the memory of `out`
  // The same of a query's column, which holds what its type says. Errors: that the file is damaged.
  void ReadTyped(size_t column, StoredValue& out) const;

 private:
  Engine& engine_;
  Plan& plan_;
};

}  // namespace tavcc::sql
