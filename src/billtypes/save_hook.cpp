#include "billtypes/save_hook.h"

#include "foundation/text.h"
#include "foundation/trap.h"

namespace tavcc {

namespace {

ConnectionPtr ReadyConnection(DbContext& context, SaveOrder order) {
  if (order == SaveOrder::kReadyThenConnection) {
    context.ReadyFirst();
    return context.GetConnection();
  }
  ConnectionPtr cn = context.GetConnection();
  context.ReadyFirst();
  return cn;
}

}  // namespace

Value RunAfterSave(PlugIn& self, std::string_view sDsn, const SaveHook& hook,
                   const std::function<void(Connection& cn)>& work) {
  return Trap(
      [&] {
        self.InitObjects(sDsn);
        work(*ReadyConnection(self.db_context(), hook.order));
        self.db_context().ReadySecond();
        return Value();
      },
      [&](const AutomationError& error) -> Value {
        throw AutomationError(error.number(), std::string(hook.failure_source),
                              Cat(hook.failure_text, error.description()));
      });
}

}  // namespace tavcc
