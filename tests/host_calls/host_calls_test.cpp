// What every public method asks of its host, in which order: the tables beside this file hold a row
// for each method and each way through it. A readying member that is left out, called twice or out
// of its place shows here, and so does a method without a row.
#include <gtest/gtest.h>

#include <set>

#include "foundation/host_services.h"
#include "foundation/plug_in.h"
#include "host/company.h"
#include "host/erp.h"
#include "host_calls/recording_host.h"
#include "scenario/runner.h"
#include "scenario/start_state.h"
#include "support/source_dir.h"

namespace tavcc::testing {
namespace {

const std::string kFolder = (SourceDir() / "tests/host_calls").string();

// One way through a method: a scenario of one call, and the calls expected of it.
struct Case {
  std::string file;
  Json row;
  Scenario scenario;

  std::string Name() const {
    return row["call"].get<std::string>() + ", " + row["case"].get<std::string>();
  }
};

Case CaseOf(const std::string& file, const Json& row) {
  Json scenario = Json::object();
  scenario["name"] = row["case"];
  Json step = Json::object();
  for (const auto& [key, value] : row.items()) {
    if (key == "case" || key == "calls" || key == "bound" || key == "bill_no") continue;
    const bool of_start = key == "sql" || key == "profile" || key == "user" || key == "published" ||
                          key == "denied_rights";
    (of_start ? scenario : step)[key] = value;
  }
  scenario["steps"].push_back(step);
  return {file, row, ParseScenario(file, Show(scenario))};
}

std::vector<Case> ReadCases() {
  std::vector<Case> cases;
  for (const std::string& file : ScenarioFiles({kFolder})) {
    for (const Json& row : ParseJson(ReadTextFile(file))) cases.push_back(CaseOf(file, row));
  }
  return cases;
}

// A session whose calls to the host are written down.
class RecordingSession final : public BackendSession {
 public:
  explicit RecordingSession(const Case& tested) : bound_(tested.row.value("bound", false)) {
    calls_.bill_no = tested.row.value("bill_no", std::string());
    ApplyStartState(tested.scenario.start, erp_.host(), *erp_.connection());
  }

  Host& host() override { return erp_.host(); }
  std::string dsn() override { return erp_.dsn(); }
  ConnectionPtr connection() override { return RecordCalls(erp_.connection(), calls_); }

  Value Call(const ClassDescription& cls, const Method& method,
             std::vector<Value>& arguments) override {
    PlugIn object(recording_);
    if (bound_) object.InitObjects(dsn());
    for (size_t i = 0; i < arguments.size(); ++i) {
      if (method.parameters[i].name != "dct" || arguments[i].object() == nullptr) continue;
      arguments[i] = RecordCalls(ToObject<Dictionary>(arguments[i]), calls_);
    }
    calls_.list.clear();
    return Invoke(cls, method, object, arguments);
  }

  void StartLog(const std::optional<InjectedFailure>& failure) override {
    erp_.log().Clear();
    if (failure) erp_.log().FailAt(failure->at, failure->fault);
  }
  std::vector<LoggedStatement> TakeLog() override { return erp_.log().statements(); }

  const std::vector<std::string>& calls() const { return calls_.list; }

 private:
  const bool bound_;
  HostCalls calls_;
  Erp erp_{CompanyOptions([] { return *DateTime::Parse("2026-03-15 10:00:00"); })};
  RecordingHost recording_{erp_.host(), calls_};
};

// As the tables write it: one "init" for a fresh context with its database and its user, one "sql"
// for any number of statements one after another, and likewise for runs.
std::string Written(const std::vector<std::string>& calls) {
  std::string written;
  const auto add = [&](const std::string& call) {
    if (!written.empty()) written += ", ";
    written += call;
  };
  for (size_t i = 0; i < calls.size(); ++i) {
    const bool init = i + 2 < calls.size() && calls[i] == "context" && calls[i + 1] == "bind" &&
                      calls[i + 2] == "user";
    if (init) {
      add("init");
      i += 2;
    } else if (i == 0 || calls[i] != calls[i - 1] || (calls[i] != "sql" && calls[i] != "run")) {
      add(calls[i]);
    }
  }
  return written;
}

TEST(HostCalls, AreThoseOfTheTable) {
  for (const Case& tested : ReadCases()) {
    SCOPED_TRACE(tested.file + ": " + tested.Name());
    const Step& step = tested.scenario.steps.front();
    RecordingSession session(tested);
    const CallOutcome outcome = CallStep(session, step, step.fail);
    std::vector<std::string> differences;
    CompareOutcome(*step.method, step.expect, step.error, outcome, differences);
    for (const std::string& difference : differences) ADD_FAILURE() << difference;
    EXPECT_EQ(Written(session.calls()), tested.row["calls"].get<std::string>());
  }
}

TEST(HostCalls, AreToldForEveryMethod) {
  std::set<std::string> told;
  for (const Case& tested : ReadCases()) told.insert(tested.row["call"].get<std::string>());
  for (const ClassDescription& cls : Classes()) {
    for (const Method& method : cls.methods) {
      const std::string name = std::string(cls.name) + "." + std::string(method.name);
      EXPECT_TRUE(told.contains(name)) << name << " has no row";
    }
  }
}

// Making an object asks for a context and its user, and binds neither.
TEST(HostCalls, OfAnObjectThatIsMade) {
  Erp erp{sql::OpenOptions{}};
  HostCalls calls;
  RecordingHost host(erp.host(), calls);
  const PlugIn object(host);
  EXPECT_EQ(calls.list, (std::vector<std::string>{"context", "user"}));
}

}  // namespace
}  // namespace tavcc::testing
