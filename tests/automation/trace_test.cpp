// The traces of calls in production: asked for by the environment or the registry, a file a call.

#include <string>
#include <thread>
#include <vector>

#include "TavM_CC_PlugIns.h"
#include "automation/interface_ids.h"
#include "automation/trace_fixture.h"
#include "host/automation/dispatch_object.h"
#include "scenario/runner.h"
#include "scenario/scenario.h"
#include "support/seed.h"

namespace tavcc {
namespace {

constexpr const wchar_t* kKey = L"Software\\TavM_CC_PlugIns";
constexpr const char* kHead = "Select FStatus,FVoucherID From T_CC_ZZCX where FID=1";
constexpr const char* kGenericHead =
    "Select FStatus,FVoucherID From T_CC_ZZCX  where FID=1";  // two blanks: as stored

TEST_F(TraceTest, ACallIsAFileOfItsGatesStatementsAndRows) {
  HostedErp erp;
  EXPECT_TRUE(AuditOpenBill(erp));
  const std::vector<Json> lines = Lines();
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(lines[0]["call"], Json("cls_CX.AuditBill"));
  EXPECT_EQ(lines[0]["arguments"]["lngFID"], Json(1));
  EXPECT_EQ(lines.back()["result"], Json(true));
  EXPECT_EQ(lines.back()["arguments"]["strReturnMsg"], Json(""));
  const std::vector<Json> sent = Lines("statement");
  ASSERT_EQ(sent.size(), 2u);
  EXPECT_EQ(sent[0]["sql"], Json(kHead));
  EXPECT_EQ(sent[0]["gate"], Json("head: exists"));
  EXPECT_EQ(sent[0]["from"].get<std::string>().find("src/billtypes/bill_gates.cpp:"), 0u);
  EXPECT_EQ(sent[1]["sql"].get<std::string>().find("Update T_CC_ZZCX set "), 0u);
  EXPECT_FALSE(sent[1].contains("gate"));
  const std::vector<Json> rows = Lines("rows_of");
  ASSERT_EQ(rows.size(), 1u);
  EXPECT_EQ(Show(rows[0]),
            R"({"rows_of":1,"columns":["FStatus","FVoucherID"],"rows":[[0,0]],"count":1,)"
            R"("to_the_end":false})");
  std::string gates;
  for (const Json& gate : Lines("gate")) gates += Show(gate) + "\n";
  EXPECT_EQ(gates,
            "{\"gate\":\"head: exists\",\"answer\":\"passed\"}\n"
            "{\"gate\":\"head: state\",\"answer\":\"passed\"}\n"
            "{\"gate\":\"head: voucher\",\"answer\":\"passed\"}\n");
}

TEST_F(TraceTest, AnEarlyBoundCallIsTracedToo) {
  HostedErp erp;
  automation::ComPtr<_cls_CX> object;
  ASSERT_EQ(CoCreateInstance(CLSID_cls_CX, nullptr, CLSCTX_INPROC_SERVER, IID__cls_CX,
                             reinterpret_cast<void**>(object.GetAddressOf())),
            S_OK);
  BSTR message = nullptr;
  VARIANT_BOOL done = VARIANT_FALSE;
  EXPECT_EQ(object->AuditBill(1, 7, erp.dsn(), &message, &done), S_OK);
  SysFreeString(message);
  EXPECT_EQ(done, VARIANT_TRUE);
  EXPECT_EQ(Lines("statement").size(), 2u);
}

TEST_F(TraceTest, AnotherCallIsAnotherFile) {
  HostedErp erp;
  EXPECT_TRUE(AuditOpenBill(erp));
  EXPECT_FALSE(AuditOpenBill(erp));
  const auto files = folder_.Files();
  ASSERT_EQ(files.size(), 2u);
  EXPECT_EQ(folder_.Lines(files[1]).back()["arguments"]["strReturnMsg"],
            Json("该单据已被审核，不能再审核！"));
}

TEST_F(TraceTest, WhatFailedBelowTheRulesIsTold) {
  HostedErp erp;
  erp.erp().connection()->Execute("drop table T_CC_ZZCX");
  EXPECT_FALSE(AuditOpenBill(erp));
  const Json end = Lines().back();
  EXPECT_EQ(end["result"], Json(false));
  EXPECT_EQ(end["failure"]["number"], Json(208));
  EXPECT_EQ(Lines("statement")[0]["error"]["number"], Json(208));
  EXPECT_EQ(Lines("gate").back()["answer"], Json("failed"));
}

// The host names its database by what it likes.
TEST_F(TraceTest, APasswordIsNotWritten) {
  HostedErp erp;
  erp.erp().host().UseOnlyDatabase(erp.erp().dsn());
  const BSTR dsn = SysAllocString(L"Provider=SQLOLEDB;Password=open sesame;Data Source=erp");
  EXPECT_TRUE(AuditOpenBill(erp, dsn));
  SysFreeString(dsn);
  const std::vector<Json> lines = Lines();
  EXPECT_EQ(lines[0]["arguments"]["sDsn"], Json("Provider=SQLOLEDB;Password=***;Data Source=erp"));
  for (const Json& line : lines) EXPECT_EQ(Show(line).find("sesame"), std::string::npos);
}

DictionaryPtr StockBill(Erp& erp) {
  const DictionaryPtr bill = erp.host().NewDictionary();
  bill->SetItem("ClassTypeID", int32_t{1030002});
  bill->SetItem("BillType", int32_t{3001});
  bill->SetItem("BillInterID", int32_t{7});
  bill->SetItem("HeadTableName", "T_CC_StockBill");
  bill->SetItem("BillNo", "XS7");
  bill->SetItem("CustOrSupplyID", int32_t{5001});
  bill->SetItem("AllAmount", int32_t{1});
  bill->SetItem("Remark", "of nobody's concern");
  return bill;
}

TEST_F(TraceTest, TheKeysOfADictionaryAreThoseThatTheMethodReads) {
  HostedErp erp;
  const auto object = CreateByProgID(L"TavM_CC_PlugIns.PublicSysInfo");
  std::vector<Value> arguments{int16_t{1}, StockBill(erp.erp())};
  const MethodName name = FindMethodByName("PublicSysInfo.WhetherCheckStockNum");
  EXPECT_EQ(CallLateBound(*object.Get(), *name.method, arguments), Value(int16_t{1}));
  EXPECT_EQ(Show(Lines()[0]["arguments"]["oDict"]), "{\"ClassTypeID\":1030002,\"BillType\":3001}");
}

// Whether the open bill may be deleted, asked on a connection that the host hands over.
void AskOnTheHostsConnection(HostedErp& erp, IDispatch& object) {
  std::vector<Value> arguments{int32_t{1}, erp.erp().connection(), "", "T_CC_ZZCX"};
  const MethodName name = FindMethodByName("PublicSysInfo.VerifyDataBeforeDelete");
  EXPECT_EQ(CallLateBound(object, *name.method, arguments), Value(true));
}

TEST_F(TraceTest, AConnectionThatIsHandedInIsWatched) {
  HostedErp erp;
  const auto object = CreateByProgID(L"TavM_CC_PlugIns.PublicSysInfo");
  AskOnTheHostsConnection(erp, *object.Get());
  EXPECT_EQ(Lines()[0]["arguments"]["cn"], Json("a connection"));
  const std::vector<Json> sent = Lines("statement");
  ASSERT_EQ(sent.size(), 1u);
  EXPECT_EQ(sent[0]["sql"], Json(kGenericHead));
  EXPECT_EQ(sent[0]["from"].get<std::string>().find("src/balances/bill_deletion.cpp:"), 0u);
  const std::vector<Json> rows = Lines("rows_of");
  ASSERT_EQ(rows.size(), 1u);
  EXPECT_EQ(Show(rows[0]["rows"]), "[[0,0]]");
}

// While it answers a call, a host may call the same object.
TEST_F(TraceTest, ACallWithinACallIsAPartOfIt) {
  HostedErp erp;
  const auto object = CreateByProgID(L"TavM_CC_PlugIns.PublicSysInfo");
  const auto answer = [&](const host_automation::Arguments& key) -> Value {
    AskOnTheHostsConnection(erp, *object.Get());
    return key[0] == Value("BillType") ? int32_t{3001} : int32_t{1030002};
  };
  automation::ComPtr<IDispatch> bill;
  bill.Attach(host_automation::NewDispatchObject(
      {{"Lookup", [](const host_automation::Arguments&) -> Value { return true; }},
       {"Item", answer, nullptr, true}},
      nullptr));
  LateCall call{{Long(1), Dispatch(bill.Get())}, {}};
  ASSERT_EQ(call.On(*object.Get(), L"WhetherCheckStockNum"), S_OK);
  EXPECT_EQ(call.result.get()->iVal, 1);
  ASSERT_EQ(Lines("call").size(), 1u);
  EXPECT_EQ(Lines("call")[0]["call"], Json("PublicSysInfo.WhetherCheckStockNum"));
  ASSERT_EQ(Lines("result").size(), 1u);
  EXPECT_EQ(Show(Lines("result")[0]["result"]), R"({"integer":1})");
  // The rule asks for the bill's class and its type.
  const std::vector<Json> sent = Lines("statement");
  ASSERT_EQ(sent.size(), 2u);
  for (const Json& statement : sent) EXPECT_EQ(statement["sql"], Json(kGenericHead));

  AskOnTheHostsConnection(erp, *object.Get());
  EXPECT_EQ(folder_.Files().size(), 2u) << "the next call is one of its own again";
}

// A batch of so many bills, none of which is in the database.
void AuditMany(HostedErp& erp, int count) {
  const auto object = CreateByProgID(L"TavM_CC_PlugIns.PublicSysInfo");
  const VectorPtr bills = erp.erp().host().NewVector();
  for (int i = 0; i < count; ++i) bills->Add(StockBill(erp.erp()));
  std::vector<Value> arguments{bills, int16_t{1}, erp.erp().dsn(), true,
                               erp.erp().host().NewDictionary()};
  const MethodName name = FindMethodByName("PublicSysInfo.AuditBill");
  EXPECT_EQ(CallLateBound(*object.Get(), *name.method, arguments), Value(int16_t{0}));
}

// What the host answers stands there, too, whether its components are made anew or kept for the
// thread.
TEST_F(TraceTest, WhatTheHostAnsweredIsWritten) {
  HostedErp erp;
  AskFor(nullptr);
  AuditMany(erp, 1);  // the kept ones are made without a trace
  AskFor(folder_.path().c_str());
  WaitForALook();
  AuditMany(erp, 2);
  std::string told;
  for (const Json& line : Lines("host")) told += Show(line) + "\n";
  for (const char* const line :
       {R"({"host":"setting","category":"IC","key":"CalculateType","value":"0"})",
        R"({"host":"right","key":"1030002","value":true,"gate":"right"})"}) {
    EXPECT_NE(told.find(line), std::string::npos) << told;
  }
  EXPECT_EQ(Lines("ladder").size(), 2u);
  EXPECT_EQ(Lines().back()["arguments"]["dct"]["FailCount"], Json(2));
}

TEST_F(TraceTest, AFileHasItsBound) {
  HostedErp erp;
  AuditMany(erp, 10000);
  const std::vector<std::string> lines = folder_.Texts(File());
  ASSERT_GT(lines.size(), 2u);
  const Json bills = ParseJson(lines[0])["arguments"]["billVect"];
  EXPECT_EQ(bills.size(), 1001u);
  EXPECT_EQ(bills[1000], Json("and 9000 more"));
  EXPECT_GT(ParseJson(lines[lines.size() - 2])["left_out"].get<int32_t>(), 0);
  EXPECT_EQ(ParseJson(lines.back())["arguments"]["dct"]["FailCount"], Json(10000));
  size_t bytes = 0;
  for (size_t i = 0; i + 2 < lines.size(); ++i) bytes += lines[i].size();
  EXPECT_LT(bytes, size_t{4} << 20);
  EXPECT_GT(bytes, size_t{3} << 20);
}

// What a call answers, the recordsets that it leaves included, is the same with a trace. The
// programs of the two widths share the scenarios out.
TEST_F(TraceTest, ScenariosComeOutTheSame) {
  const auto backend = MakeComBackend();
  int count = 0;
  size_t number = 0;
  for (const char* area : {"stock_quantity", "limit_price", "batch_audit", "stock_check_bills"}) {
    for (const std::string& file : ScenarioFiles({std::string(TAVCC_SCENARIOS) + "/" + area})) {
      if (!testing::IsInShare(number++)) continue;
      const Scenario scenario = LoadScenario(file);
      const auto failures = RunScenario(scenario, *backend);
      EXPECT_TRUE(failures.empty()) << DescribeFailures(scenario, failures);
      EXPECT_TRUE(ServerIsIdle()) << file;
      EXPECT_EQ(HostObjectsAlive(), 0) << file;
      ++count;
    }
  }
  EXPECT_GT(count, 50);
  EXPECT_EQ(folder_.Files().size(), 200u);
}

TEST_F(TraceTest, ThreadsWriteFilesOfTheirOwnAtOnce) {
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([] {
      const Apartment apartment;
      const HostClassHome home;
      HostedErp own;
      for (int k = 0; k < 20; ++k) AuditOpenBill(own);
    });
  }
  for (std::thread& thread : threads) thread.join();
  const auto files = folder_.Files();
  EXPECT_EQ(files.size(), 80u);
  for (const std::wstring& file : files) {
    const std::vector<Json> lines = folder_.Lines(file);
    EXPECT_TRUE(lines.front().contains("call"));
    EXPECT_TRUE(lines.back().contains("result"));
  }
}

TEST_F(TraceTest, TheOldestFilesAreDeleted) {
  HostedErp erp;
  folder_.Make(L"other.jsonl");
  for (int i = 0; i < 200; ++i) {
    folder_.Make((L"trace-2000-" + std::to_wstring(1000 + i) + L".jsonl").c_str());
  }
  EXPECT_TRUE(AuditOpenBill(erp));
  const auto files = folder_.Files();
  EXPECT_EQ(files.size(), 201u);
  EXPECT_EQ(files[0], L"other.jsonl");
  EXPECT_EQ(files[1], L"trace-2000-1001.jsonl");
}

TEST_F(TraceTest, AFolderThatIsNotThereDisturbsNobody) {
  HostedErp erp;
  AskFor(L"Z:\\no\\such\\folder");
  EXPECT_TRUE(AuditOpenBill(erp));
}

TEST_F(TraceTest, NobodyAsksNobodyWrites) {
  HostedErp erp;
  AskFor(nullptr);
  EXPECT_TRUE(AuditOpenBill(erp));
  EXPECT_TRUE(folder_.Files().empty());
}

TEST_F(TraceTest, TheRegistryAsksToo) {
  HostedErp erp;
  AskFor(nullptr);
  const std::wstring& path = folder_.path();
  ASSERT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, kKey, L"TraceFolder", REG_SZ, path.c_str(),
                            static_cast<DWORD>((path.size() + 1) * sizeof(wchar_t))),
            ERROR_SUCCESS);
  EXPECT_TRUE(AuditOpenBill(erp));
  RegDeleteKeyW(HKEY_CURRENT_USER, kKey);
  EXPECT_EQ(folder_.Files().size(), 1u);
}

}  // namespace
}  // namespace tavcc
