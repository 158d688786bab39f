// The start state on the embedded database: what is there, and what a scenario changes of it.
#include "scenario/embedded_backend.h"

#include <gtest/gtest.h>

#include "foundation/conversions.h"
#include "scenario/runner.h"
#include "scenario/values.h"

namespace tavcc {
namespace {

// What the scenario's first failing step tells; empty when it passes.
std::string Told(const std::string& text) {
  const auto backend = MakeEmbeddedBackend();
  const Scenario scenario = ParseScenario("f.json", text);
  const auto failures = RunScenario(scenario, *backend);
  return DescribeFailures(scenario, failures);
}

TEST(EmbeddedBackend, StartFromTheSchemaAndTheBaseRows) {
  EXPECT_EQ(Told(R"json({"name": "n", "steps": [
    {"query": "select FCategory,FKey,FValue from t_SystemProfile order by FCategory,FKey",
     "rows": [["General", "SingleMan", "1"], ["IC", "CalculateType", "0"],
              ["IC", "CurrentPeriod", "3"], ["IC", "CurrentYear", "2026"],
              ["IC", "UnderStock", "0"]]},
    {"query": "select count(*),min(FStartDate),max(FEndDate) from t_PeriodDate",
     "rows": [[12, "2026-01-01", "2026-12-31"]]},
    {"query": "select FID from T_CC_ZZCX", "rows": []},
    {"query": "select getdate()", "rows": [[{"date": "2026-03-15 10:00:00"}]]}]})json"),
            "");
}

TEST(EmbeddedBackend, ApplyWhatTheScenarioChanges) {
  EXPECT_EQ(Told(R"json({"name": "n", "now": "2025-01-02 03:04:05",
    "profile": {"IC.UnderStock": "1", "IC.CalculateType": null, "IC.A.B": "it's"},
    "sql": ["insert into T_CC_ZZCX(FID) values(1)", "update T_CC_ZZCX set FNote=N'单'"],
    "steps": [
      {"query": "select FKey,FValue from t_SystemProfile where FKey<>'CurrentYear' order by FKey",
       "rows": [["A.B", "it's"], ["CurrentPeriod", "3"], ["SingleMan", "1"], ["UnderStock", "1"]]},
      {"query": "select FID,FStatus,FNote,FDate from T_CC_ZZCX", "rows": [[1, 0, "单", null]]},
      {"query": "select getdate()", "rows": [["2025-01-02 03:04:05"]]}]})json"),
            "");
}

TEST(EmbeddedBackend, SetTheHost) {
  StartState start;
  start.user = 7;
  start.denied_rights = {1040005};
  start.published["IndustryType"] = 1;
  start.resources["CHS"]["a"] = "b";
  const auto backend = MakeEmbeddedBackend();
  const auto session = backend->Open(start);
  Host& host = session->host();
  EXPECT_EQ(host.NewDbContext()->GetUserContext()->UserID(), 7);
  EXPECT_EQ(host.PublishedValues()->Item("IndustryType"), Value(1));
  const auto service = host.NewDataService();
  service->SetClassTypeID(1040005);
  EXPECT_FALSE(ToBoolean(service->CheckBillHaveRight(Empty{})));
  service->SetClassTypeID(1040006);
  EXPECT_TRUE(ToBoolean(service->CheckBillHaveRight(Empty{})));
  const auto loader = host.NewResourceLoader();
  loader->SetLanguageID("CHS");
  loader->SetResFileBaseName("texts");
  EXPECT_EQ(loader->LoadString("a"), "b");
  EXPECT_EQ(backend->Open(StartState{})->host().PublishedValues(), nullptr);
}

TEST(EmbeddedBackend, AreEachADatabaseOfTheirOwn) {
  const auto backend = MakeEmbeddedBackend();
  const auto first = backend->Open(StartState{});
  first->connection()->Execute("insert into T_CC_ZZCX(FID) values(1)");
  const auto second = backend->Open(StartState{});
  EXPECT_EQ(JsonFromRows(*second->connection()->Execute("select count(*) from T_CC_ZZCX"),
                         RowForm::kArrays),
            ParseJson("[[0]]"));
}

TEST(EmbeddedBackend, ShowEachStatementOfACallToTheObserver) {
  std::vector<std::string> seen;
  const auto backend = MakeEmbeddedBackend(
      {.sent = [&](const LoggedStatement& sent) { seen.push_back(sent.text); }});
  const Scenario scenario = ParseScenario("f.json", R"json({"name": "n", "steps": [
    {"query": "select 1"},
    {"call": "cls_CX.UnAuditBill", "args": {"lngFID": 5},
     "expect": {"result": false, "strReturnMsg": "该单据不存在！"}}]})json");
  EXPECT_TRUE(RunScenario(scenario, *backend).empty());
  EXPECT_EQ(seen, std::vector<std::string>{"Select FStatus,FVoucherID From T_CC_ZZCX where FID=5"});
}

}  // namespace
}  // namespace tavcc
