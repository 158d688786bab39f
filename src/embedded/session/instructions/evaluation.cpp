// Values and conditions outside queries: SET, IF, WHILE, PRINT, arguments.
#include "embedded/rewrite/rewrite.h"
#include "embedded/session/engine.h"
#include "embedded/session/instructions/instructions.h"

namespace tavcc::sql {

Plan& Evaluation::Find(Engine& engine, const Frame& frame) {
  return FindPlan(engine, frame, plans_, [&](Plan& plan) {
    Binder binder(engine.catalog(), visible_.span(), frame.literals, plan.binding);
    BoundValues values;
    auto shape = std::make_shared<ResultShape>();
    if (condition_ != nullptr) {
      values.condition = binder.BindTest(*condition_);
    } else {
      values.values.push_back(binder.BindValue(*expression_, type_));
      shape->types.push_back(values.values[0]->type);
    }
    plan.shape = std::move(shape);
    Rewrite(values, plan.binding);
    plan.emitted = EmitValues(values);
  });
}

bool Evaluation::Test(Engine& engine, Frame& frame) {
  PlanRun run(engine, Find(engine, frame), frame);
  run.Step();
  const StoredValue value = run.Column(0);
  return !value.IsNull() && value.integer() != 0;
}

TypedValue Evaluation::Value(Engine& engine, Frame& frame) {
  Plan& plan = Find(engine, frame);
  PlanRun run(engine, plan, frame);
  run.Step();
  return TypedValue{plan.shape->types[0], run.Column(0)};
}

}  // namespace tavcc::sql
