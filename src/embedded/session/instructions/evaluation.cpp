// Values and conditions outside queries: SET, IF, WHILE, PRINT, arguments.
#include "embedded/rewrite/rewrite.h"
#include "embedded/session/instructions/instructions.h"
#include "embedded/session/session_context.h"

namespace tavcc::sql {

ValuePlan& Evaluation::Find(SessionContext& session, const Frame& frame) {
  return FindPlan(session, frame, plans_, [&](ValuePlan& plan) {
    Binder binder(session.catalog, visible_.span(), frame.literals, plan.binding);
    BoundValues values;
    if (condition_ != nullptr) {
      values.condition = binder.BindCondition(*condition_);
    } else {
      values.values.push_back(binder.BindValue(*expression_, type_));
      plan.type = values.values[0]->type;
    }
    Rewrite(values, plan.binding);
    plan.emitted = EmitValues(values);
  });
}

bool Evaluation::IsTrue(SessionContext& session, Frame& frame) {
  PlanRun run(session, Find(session, frame), frame);
  run.Step();
  const StoredValue value = run.Column(0);
  return !value.IsNull() && value.integer() != 0;
}

TypedValue Evaluation::Value(SessionContext& session, Frame& frame) {
  ValuePlan& plan = Find(session, frame);
  PlanRun run(session, plan, frame);
  run.Step();
  return TypedValue{plan.type, run.Column(0)};
}

}  // namespace tavcc::sql
