// Tapes: what a rule is answered from one, and what is said when it asks anything else.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "scenario/accept.h"
#include "scenario/compare_backends.h"
#include "scenario/embedded_backend.h"
#include "scenario/erp_session.h"
#include "scenario/recording.h"
#include "scenario/runner.h"
#include "scenario/tape_session.h"
#include "scenario/values.h"
#include "support/source_dir.h"

namespace tavcc {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

constexpr const char* kHead = "Select FStatus,FVoucherID From T_CC_ZZCX where FID=1";
constexpr const char* kUpdate =
    "Update T_CC_ZZCX set FCheckerID=2,FCheckDate=GetDate(),FStatus=1  where FID=1";

Json Audit(const Json& tape) {
  return {{"call", "cls_CX.AuditBill"},
          {"args", {{"lngFID", 1}, {"lngUserID", 2}}},
          {"expect", {{"result", true}, {"strReturnMsg", ""}}},
          {"tape", tape}};
}

Json Head() {
  return {{"sql", kHead},
          {"columns", Json(std::vector<std::string>{"FStatus", "FVoucherID"})},
          {"rows", ParseJson("[[0, 0]]")}};
}

Json TapeOf(Json step) {
  Json scenario = {{"name", "an audit"}};
  scenario["steps"].push_back(std::move(step));
  return scenario;
}

Json ListOf(std::initializer_list<Json> statements) {
  Json list = Json::array();
  for (const Json& statement : statements) list.push_back(statement);
  return list;
}

std::vector<std::string> DifferencesOf(const Json& scenario) {
  const auto backend = MakeEmbeddedBackend();
  std::vector<std::string> differences;
  for (const StepFailure& failure :
       RunScenario(ParseScenario("tape.json", Show(scenario)), *backend)) {
    differences.insert(differences.end(), failure.differences.begin(), failure.differences.end());
  }
  return differences;
}

TEST(Tape, AnswersEachStatement) {
  EXPECT_THAT(DifferencesOf(TapeOf(Audit(ListOf({Head(), {{"sql", kUpdate}}})))), ElementsAre());
}

TEST(Tape, RefusesAStatementThatIsNotTheNextOne) {
  Json other = Head();
  other["sql"] = "Select FStatus From T_CC_ZZCX where FID=1";
  const auto differences = DifferencesOf(TapeOf(Audit(ListOf({other, {{"sql", kUpdate}}}))));
  ASSERT_FALSE(differences.empty());
  EXPECT_EQ(differences[0],
            "statement 1 is not on the tape\n"
            "Select FStatus{+,FVoucherID+} From T_CC_ZZCX where FID=1");
}

TEST(Tape, TellsWhereElseAStatementStands) {
  const auto differences = DifferencesOf(TapeOf(Audit(ListOf({{{"sql", kUpdate}}, Head()}))));
  ASSERT_FALSE(differences.empty());
  EXPECT_THAT(differences[0],
              HasSubstr("statement 1 is not the next on the tape, where it is statement 2\n"));
}

TEST(Tape, EndsWhereItEnds) {
  const auto differences = DifferencesOf(TapeOf(Audit(ListOf({Head()}))));
  ASSERT_FALSE(differences.empty());
  EXPECT_EQ(
      differences[0],
      std::string("statement 2 is not on the tape, which ends before it: \"") + kUpdate + "\"");
}

TEST(Tape, TellsWhatIsLeftOnIt) {
  EXPECT_THAT(
      DifferencesOf(TapeOf(Audit(ListOf({Head(), {{"sql", kUpdate}}, {{"sql", "select 1"}}})))),
      ElementsAre("statement 3 of the tape was not sent: \"select 1\""));
}

TEST(Tape, RaisesItsErrors) {
  Json failing = {{"sql", kUpdate},
                  {"error", {{"number", 1205}, {"source", "server"}, {"description", "deadlock"}}}};
  Json step = Audit(ListOf({Head(), failing}));
  step["expect"] = {{"result", false}, {"strReturnMsg", "deadlock"}};
  EXPECT_THAT(DifferencesOf(TapeOf(step)), ElementsAre());
}

TEST(Tape, GoesOnBehindAStatementThatIsMadeToFail) {
  Json step = Audit(ListOf({Head(), {{"sql", kUpdate}}}));
  step["sweep"] = {{"expect", {{"result", false}, {"strReturnMsg", "disk full"}}}};
  EXPECT_THAT(DifferencesOf(TapeOf(step)), ElementsAre());
}

TEST(Tape, IsNotAccepted) {
  Json other = Head();
  other["sql"] = "Select FStatus From T_CC_ZZCX where FID=1";
  const std::string text = Show(TapeOf(Audit(ListOf({other}))), 2);
  const auto backend = MakeEmbeddedBackend();
  const Acceptance acceptance = AcceptScenario("tape.json", text, *backend);
  EXPECT_EQ(acceptance.text, text);
  EXPECT_THAT(
      acceptance.notes,
      ElementsAre("tape.json: step 1: the tape does not fit any more; record the case again"));
}

TEST(Tape, IsNotCompared) {
  const auto first = MakeEmbeddedBackend();
  const auto second = MakeEmbeddedBackend();
  Skipped skipped;
  const Scenario scenario = ParseScenario("tape.json", Show(TapeOf(Audit(ListOf({Head()})))));
  EXPECT_TRUE(CompareBackends(scenario, *first, *second, &skipped).empty());
  EXPECT_THAT(skipped.cut_short,
              ElementsAre("tape.json: a tape has the answers of one database: there is nothing to "
                          "compare"));
}

struct MalformedTape {
  const char* step;     // in place of the first one's keys
  const char* message;  // behind the file's name
};

TEST(Tape, ThatIsMalformedIsRefused) {
  constexpr MalformedTape kRows[] = {
      {R"({"tape": 1})", ": step 1, key \"tape\": must be a list of statements"},
      {R"({"tape": [{"sq": "x"}]})",
       ": step 1, key \"tape\": statement 1: unknown key \"sq\"; did you mean sql?"},
      {R"({"tape": [{}]})", ": step 1, key \"tape\": statement 1: the key \"sql\" is missing"},
      {R"({"tape": [{"sql": "x", "columns": ["A"], "rows": [[1, 2]]}]})",
       ": step 1, key \"tape\": statement 1: key \"rows\": a row has not one field for each column: "
       "[1,2]"},
      {R"({"tape": [{"sql": "x", "columns": ["A"], "rows": [[{"date": "soon"}]]}]})",
       ": step 1, key \"tape\": statement 1: no date: \"soon\""},
      {R"({"tape": [{"sql": "x", "error": {"number": 1}}]})",
       ": step 1, key \"tape\": statement 1: the key \"source\" is missing"},
      {R"({"tape": [], "statements": []})", ": step 1, key \"statements\": the tape lists them"},
      {R"({"tape": [], "needs_clock": true})",
       ": step 1, key \"needs_clock\": a tape has no database"},
  };
  for (const auto& [keys, message] : kRows) {
    Json step = {{"call", "cls_CX.AuditBill"}};
    const Json given = ParseJson(keys);
    for (const auto& [key, value] : given.items()) step[key] = value;
    try {
      ParseScenario("tape.json", Show(TapeOf(step)));
      ADD_FAILURE() << keys;
    } catch (const ScenarioError& error) {
      EXPECT_EQ(error.what(), std::string("tape.json") + message);
    }
  }
}

TEST(Tape, HasNoDatabaseToAskOrChange) {
  Json asking = TapeOf(Audit(Json::array()));
  asking["steps"].push_back({{"query", "select 1"}});
  EXPECT_THROW(ParseScenario("tape.json", Show(asking)), ScenarioError);
  Json changing = TapeOf(Audit(Json::array()));
  changing["sql"].push_back("delete from T_CC_ZZCX");
  EXPECT_THROW(ParseScenario("tape.json", Show(changing)), ScenarioError);
  Json half = TapeOf(Audit(Json::array()));
  half["steps"].push_back({{"call", "cls_CX.AuditBill"}});
  EXPECT_THROW(ParseScenario("tape.json", Show(half)), ScenarioError);
}

// ---- Every call of every scenario, recorded and replayed --------------------------------------

// What a call came to, exactly.
struct Exactly {
  std::string answer;
  std::vector<std::string> sent;

  friend bool operator==(const Exactly&, const Exactly&) = default;
};

std::string ExactText(const Value& value) {
  if (value.IsMissing()) return "missing";
  if (!value.IsObject() || value.object() == nullptr) return Show(ExactJson(value));
  auto* const rows = dynamic_cast<Recordset*>(value.object().get());
  if (rows == nullptr) {
    const bool connection = dynamic_cast<Connection*>(value.object().get()) != nullptr;
    return connection ? "a connection" : Show(ExactJson(value));
  }
  if (!rows->IsOpen()) return "a closed recordset";
  if (!rows->AtStart()) rows->MoveFirst();
  LoggedStatement statement{.text = ""};
  statement.answer = std::make_shared<AnswerRows>(ReadWhole(*rows));
  return Show(TapeJson({statement}));
}

Exactly Exact(const Method& method, const CallOutcome& outcome) {
  Exactly exactly;
  if (outcome.error) {
    exactly.answer = std::to_string(outcome.error->number()) + outcome.error->source() +
                     outcome.error->description();
  } else {
    exactly.answer = ExactText(outcome.result);
  }
  for (size_t i = 0; i < method.parameters.size(); ++i) {
    if (method.parameters[i].in_out) exactly.answer += "\n" + ExactText(outcome.arguments[i]);
  }
  for (const LoggedStatement& sent : outcome.sent) exactly.sent.push_back(ShowStatement(sent));
  return exactly;
}

// The embedded database with a log that keeps answers.
class RecordedSession final : public ErpSession {
 public:
  explicit RecordedSession(const StartState& start) : ErpSession(MakeEmbeddedErp(start), {}) {
    erp().log().KeepAnswers();
  }

  Value Call(const ClassDescription& cls, const Method& method,
             std::vector<Value>& arguments) override {
    const std::vector<Value> untold =
        MakeArguments({host(), dsn(), nullptr}, method, Json::object());
    RecordedCall call(cls, method, arguments, untold);
    const auto keep = [&] {
      recording.steps.push_back(call.step());
      const auto& answers = erp().log().host_answers();
      recording.answers.insert(recording.answers.end(), answers.begin(), answers.end());
    };
    try {
      Value result = ErpSession::Call(cls, method, arguments);
      call.Answered(result, arguments);
      keep();
      return result;
    } catch (const AutomationError& error) {
      call.Raised(error, arguments);
      keep();
      throw;
    }
  }

  std::string Text() {
    recording.name = "recorded";
    recording.host = erp().host().settings();
    return ScenarioText(TapeScenario(recording));
  }

  Recording recording;
};

// The text of the tape of a scenario's calls, which are added to `recorded`; empty where there is
// none.
std::string Recorded(const Scenario& scenario, std::vector<Exactly>& recorded) {
  RecordedSession session(scenario.start);
  for (const Step& step : scenario.steps) {
    if (!step.IsCall()) {
      QueryStep(session, step);
      continue;
    }
    if (step.fail) continue;
    const CallOutcome outcome = CallStep(session, step, std::nullopt);
    recorded.push_back(Exact(*step.method, outcome));
    session.recording.tapes.push_back(outcome.sent);
  }
  return recorded.empty() ? "" : session.Text();
}

// Returns how many calls there were.
int RecordAndReplay(const Scenario& scenario) {
  std::vector<Exactly> recorded;
  const std::string text = Recorded(scenario, recorded);
  if (recorded.empty()) return 0;
  const Scenario tape = ParseScenario("tape.json", text);
  EXPECT_TRUE(tape.IsTape());
  const auto replay = MakeTapeSession(tape.start, {});
  for (size_t i = 0; i < tape.steps.size(); ++i) {
    const CallOutcome outcome = CallStep(*replay, tape.steps[i], std::nullopt);
    const Exactly replayed = Exact(*tape.steps[i].method, outcome);
    EXPECT_EQ(replayed.answer, recorded[i].answer) << "call " << i + 1;
    EXPECT_EQ(replayed.sent, recorded[i].sent) << "call " << i + 1;
    EXPECT_THAT(outcome.off_tape, ElementsAre()) << "call " << i + 1;
  }
  return static_cast<int>(recorded.size());
}

TEST(Tape, OfEveryCallOfEveryScenarioReplaysIt) {
  int calls = 0, changed = 0;
  for (const std::string& file : ScenarioFiles({(SourceDir() / "tests/scenarios").string()})) {
    SCOPED_TRACE(file);
    const Scenario scenario = LoadScenario(file);
    if (scenario.IsTape()) continue;
    try {
      calls += RecordAndReplay(scenario);
    } catch (const JsonError& error) {
      // Between two calls of a scenario a step changes a setting; nothing that is recorded does.
      EXPECT_THAT(error.what(), HasSubstr(" changed while it was recorded: "));
      ++changed;
    }
  }
  EXPECT_GT(calls, 500);
  EXPECT_LT(changed, 10);
}

// A rule that looks at another setting than the one that was recorded is not told nothing.
TEST(Tape, RefusesASettingThatWasNotRead) {
  const std::string folder = (SourceDir() / "tests/scenarios/credit").string();
  int refused = 0;
  for (const std::string& file : ScenarioFiles({folder})) {
    std::vector<Exactly> recorded;
    Json tape = ParseJson(Recorded(LoadScenario(file), recorded));
    if (tape["profile"].empty()) continue;
    const std::string setting = tape["profile"].items().front().key;
    tape["profile"] = Json::object();
    EXPECT_THAT(DifferencesOf(tape),
                Contains("the setting " + setting + " is not on the tape (key \"profile\")"))
        << file;
    ++refused;
  }
  EXPECT_GT(refused, 0);
}

}  // namespace
}  // namespace tavcc
