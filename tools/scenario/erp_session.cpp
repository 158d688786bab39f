#include "scenario/erp_session.h"

#include <utility>

namespace tavcc {

ErpSession::ErpSession(std::unique_ptr<Erp> erp, StatementObserver observer)
    : erp_(std::move(erp)), observer_(std::move(observer)) {}

Value ErpSession::Call(const ClassDescription& cls, const Method& method,
                       std::vector<Value>& arguments) {
  auto& object = objects_[&cls];
  if (object == nullptr) object = std::make_unique<PlugIn>(erp_->host());
  return Invoke(cls, method, *object, arguments);
}

void ErpSession::StartLog(const std::optional<InjectedFailure>& failure) {
  erp_->log().Clear();
  erp_->log().SetObserver(observer_);
  if (failure) erp_->log().FailAt(failure->at, failure->fault);
}

std::vector<LoggedStatement> ErpSession::TakeLog() {
  auto statements = erp_->log().statements();
  erp_->log().Clear();
  erp_->log().SetObserver({});
  return statements;
}

}  // namespace tavcc
