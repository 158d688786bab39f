#include "scenario/embedded_roads.h"

#include <map>
#include <utility>

#include "foundation/plug_in.h"
#include "host/erp.h"
#include "host/schema.h"
#include "scenario/start_state.h"

namespace tavcc {
namespace {

sql::OpenOptions InMemory(DateTime now) {
  sql::OpenOptions options;
  options.clock = [now] { return now; };
  return options;
}

class EmbeddedRoad final : public Road {
 public:
  EmbeddedRoad(const StartState& start, StatementObserver observer)
      : erp_(InMemory(start.now)), observer_(std::move(observer)) {
    erp_.RunScript(SchemaScript());
    erp_.RunScript(BaseScript());
    ApplyStartState(start, erp_.host(), *erp_.connection());
  }

  Host& host() override { return erp_.host(); }
  std::string dsn() override { return erp_.dsn(); }
  ConnectionPtr connection() override { return erp_.connection(); }

  Value Call(const ClassDescription& cls, const Method& method,
             std::vector<Value>& arguments) override {
    auto& object = objects_[&cls];
    if (object == nullptr) object = std::make_unique<PlugIn>(erp_.host());
    return Invoke(cls, method, *object, arguments);
  }

  void StartLog(const std::optional<InjectedFailure>& failure) override {
    erp_.log().Clear();
    erp_.log().SetObserver(observer_);
    if (failure) erp_.log().FailAt(failure->at, failure->error);
  }

  std::vector<LoggedStatement> TakeLog() override {
    auto statements = erp_.log().statements();
    erp_.log().Clear();
    erp_.log().SetObserver(nullptr);
    return statements;
  }

 private:
  Erp erp_;
  StatementObserver observer_;
  std::map<const ClassDescription*, std::unique_ptr<PlugIn>> objects_;
};

class EmbeddedRoads final : public Roads {
 public:
  explicit EmbeddedRoads(StatementObserver observer) : observer_(std::move(observer)) {}

  std::unique_ptr<Road> Open(const StartState& start) override {
    return std::make_unique<EmbeddedRoad>(start, observer_);
  }

 private:
  StatementObserver observer_;
};

}  // namespace

std::unique_ptr<Roads> MakeEmbeddedRoads(StatementObserver observer) {
  return std::make_unique<EmbeddedRoads>(std::move(observer));
}

}  // namespace tavcc
