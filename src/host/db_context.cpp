// The reference host's data-access context.
#include "host/db_context.h"

#include "foundation/error.h"

namespace tavcc {

std::shared_ptr<UserContext> HostDbContext::GetUserContext() {
  return std::make_shared<HostUserContext>(state_);
}

void HostDbContext::Bind(std::string_view sDsn) {
  sDsn_ = sDsn;
  state_->current_dsn = sDsn;
}

ConnectionPtr HostDbContext::GetConnection() {
  if (!sDsn_) throw AutomationError(RuntimeError::kObjectNotSet);
  return state_->GetConnection(*sDsn_);
}

void HostDbContext::ReadyFirst() {
  state_->CountReadyCall(ReadyCall::Member::kFirst, number_);
  GetConnection();
}

void HostDbContext::ReadySecond() {
  state_->CountReadyCall(ReadyCall::Member::kSecond, number_);
  GetConnection();
}

}  // namespace tavcc
