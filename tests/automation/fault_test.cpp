// Every call that the library makes of the host goes wrong once in each way: no object, Empty, a
// number, a strange object, an HRESULT with and without error information. The caller gets an
// answer or an error with a source, a second call answers as if nothing had been, and nothing is
// left.
//
// For each method up to kCallsOfAMethod calls of the scenarios are taken, spread evenly over all
// that call it; of these, every host call. The programs of the two widths share the calls out.

#include <algorithm>
#include <map>

#include "automation/fixture.h"
#include "faults/contracts.h"
#include "host/automation/dispatch_object.h"
#include "scenario/embedded_backend.h"
#include "scenario/runner.h"
#include "scenario/scenario.h"
#include "support/seed.h"

namespace tavcc {
namespace {

using host_automation::Fault;

constexpr size_t kCallsOfAMethod = 3;

struct Place {
  const Scenario* scenario;
  const Step* step;
};

std::vector<Scenario> AllScenarios() {
  std::vector<Scenario> scenarios;
  for (const std::string& file : ScenarioFiles({TAVCC_SCENARIOS})) {
    scenarios.push_back(LoadScenario(file));
  }
  return scenarios;
}

// The calls that are tried.
std::vector<Place> ChosenCalls(const std::vector<Scenario>& scenarios) {
  std::map<std::string, std::vector<Place>> by_method;
  for (const Scenario& scenario : scenarios) {
    if (scenario.IsTape()) continue;  // it needs no host but its own
    for (const Step& step : scenario.steps) {
      if (!step.IsCall() || step.fail) continue;
      by_method[std::string(step.cls->name) + "." + std::string(step.method->name)].push_back(
          {&scenario, &step});
    }
  }
  std::vector<Place> chosen;
  size_t number = 0;
  for (const auto& [method, places] : by_method) {
    const size_t count = std::min(kCallsOfAMethod, places.size());
    for (size_t i = 0; i < count; ++i) {
      if (testing::IsInShare(number++)) chosen.push_back(places[i * places.size() / count]);
    }
  }
  return chosen;
}

class HostFaults {
 public:
  HostFaults(const Place& place, Backend& backend)
      : place_(place),
        session_(SessionBefore(*place.scenario, place.step->number, backend, true)) {}

  // Returns how many faults there were.
  int Run() {
    Call();  // fills the caches, which hold another number of calls back
    const std::string clean = Call();
    const int calls = HostCallsOf([&] { EXPECT_EQ(Call(), clean); });
    for (int k = 1; k <= calls; ++k) {
      for (const Fault fault : host_automation::kFaults) {
        host_automation::OrderFault(k, fault);
        Call();
        host_automation::CancelFault();
      }
      EXPECT_EQ(Call(), clean) << "after faults in host call " << k << " of " << Where();
    }
    return calls * static_cast<int>(std::size(host_automation::kFaults));
  }

 private:
  std::string Where() const {
    return place_.scenario->file + ", step " + std::to_string(place_.step->number);
  }

  // Calls in a transaction, which is rolled back; what the call came to.
  std::string Call() {
    session_->connection()->Execute("BEGIN TRANSACTION");
    const CallOutcome outcome = CallStep(*session_, *place_.step, std::nullopt);
    session_->connection()->Execute(kRollback);
    EXPECT_FALSE(outcome.error && outcome.error->source().empty()) << Where();
    return faults::ShowOutcome(*place_.step->method, outcome);
  }

  const Place& place_;
  std::unique_ptr<BackendSession> session_;
};

TEST_F(AutomationTest, EveryHostCallMayGoWrongInEveryWay) {
  const std::vector<Scenario> scenarios = AllScenarios();
  const auto backend = MakeComBackend();
  int faults = 0;
  const std::vector<Place> calls = ChosenCalls(scenarios);
  for (const Place& place : calls) {
    faults += HostFaults(place, *backend).Run();
    EXPECT_TRUE(ServerIsIdle()) << place.scenario->file;
    EXPECT_EQ(HostObjectsAlive(), 0) << place.scenario->file;
  }
  std::cout << faults << " faults in the host calls of " << calls.size() << " calls\n";
  EXPECT_GT(faults, 5000);
}

}  // namespace
}  // namespace tavcc
