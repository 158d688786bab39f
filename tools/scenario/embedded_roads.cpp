#include "scenario/embedded_roads.h"

#include <utility>

#include "host/schema.h"
#include "scenario/start_state.h"

namespace tavcc {
namespace {

sql::OpenOptions InMemory(DateTime now) {
  sql::OpenOptions options;
  options.clock = [now] { return now; };
  return options;
}

class EmbeddedRoad final : public ErpRoad {
 public:
  EmbeddedRoad(const StartState& start, StatementObserver observer)
      : ErpRoad(std::make_unique<Erp>(InMemory(start.now)), std::move(observer)) {
    erp().RunScript(SchemaScript());
    erp().RunScript(BaseScript());
    ApplyStartState(start, erp().host(), *erp().connection());
  }
};

class EmbeddedRoads final : public Roads {
 public:
  explicit EmbeddedRoads(StatementObserver observer) : observer_(std::move(observer)) {}

  std::unique_ptr<Road> Open(const StartState& start) override {
    return std::make_unique<EmbeddedRoad>(start, observer_);
  }
  StatementObserver observer() const override { return observer_; }

 private:
  const StatementObserver observer_;
};

}  // namespace

std::unique_ptr<Roads> MakeEmbeddedRoads(StatementObserver observer) {
  return std::make_unique<EmbeddedRoads>(std::move(observer));
}

}  // namespace tavcc
