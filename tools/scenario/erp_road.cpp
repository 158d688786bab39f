#include "scenario/erp_road.h"

#include <utility>

namespace tavcc {

ErpRoad::ErpRoad(std::unique_ptr<Erp> erp, StatementObserver observer)
    : erp_(std::move(erp)), observer_(std::move(observer)) {}

Value ErpRoad::Call(const ClassDescription& cls, const Method& method,
                    std::vector<Value>& arguments) {
  auto& object = objects_[&cls];
  if (object == nullptr) object = std::make_unique<PlugIn>(erp_->host());
  return Invoke(cls, method, *object, arguments);
}

void ErpRoad::StartLog(const std::optional<InjectedFailure>& failure) {
  erp_->log().Clear();
  erp_->log().SetObserver(observer_);
  if (failure) erp_->log().FailAt(failure->at, failure->fault);
}

std::vector<LoggedStatement> ErpRoad::TakeLog() {
  auto statements = erp_->log().statements();
  erp_->log().Clear();
  erp_->log().SetObserver({});
  return statements;
}

}  // namespace tavcc
