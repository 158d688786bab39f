#include "scenario/embedded_backend.h"

#include <utility>

#include "host/company.h"
#include "scenario/start_state.h"

namespace tavcc {
namespace {

class EmbeddedBackend final : public Backend {
 public:
  explicit EmbeddedBackend(StatementObserver observer) : observer_(std::move(observer)) {}

  std::unique_ptr<BackendSession> Open(const StartState& start) override {
    return std::make_unique<ErpSession>(MakeEmbeddedErp(start), observer_);
  }
  StatementObserver observer() const override { return observer_; }

 private:
  const StatementObserver observer_;
};

}  // namespace

std::unique_ptr<Erp> MakeEmbeddedErp(const StartState& start) {
  auto erp = std::make_unique<Erp>(CompanyOptions([now = start.now] { return now; }));
  ApplyStartState(start, erp->host(), *erp->connection());
  return erp;
}

std::unique_ptr<Backend> MakeEmbeddedBackend(StatementObserver observer) {
  return std::make_unique<EmbeddedBackend>(std::move(observer));
}

}  // namespace tavcc
