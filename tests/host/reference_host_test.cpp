#include "host/reference_host.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "foundation/error.h"
#include "foundation/host_services.h"
#include "foundation/plug_in.h"
#include "host/fake_session.h"
#include "host/host_dictionary.h"

namespace tavcc {
namespace {

using ::testing::ElementsAre;
using testing::FakeSession;
using ::testing::IsEmpty;
using testing::OneColumn;
using ::testing::SizeIs;
using Member = ReadyCall::Member;

// The number of the error that `body` raises, 0 for none.
template <class Body>
int32_t ErrorOf(Body&& body) {
  try {
    body();
  } catch (const AutomationError& error) {
    return error.number();
  }
  return 0;
}

class ReferenceHostTest : public ::testing::Test {
 protected:
  ~ReferenceHostTest() override { ReleaseHostObjects(); }

  ConnectionPtr Open(std::string_view sDsn) {
    if (sDsn == "nowhere") throw AutomationError(17, "db", "no such server");
    opened_.emplace_back(sDsn);
    sessions_.push_back(std::make_shared<FakeSession>());
    sessions_.back()->answer = answer_;
    return sessions_.back();
  }
  // Makes every query answer one row, or none.
  void Answer(std::vector<Value> rows) {
    answer_ = [rows](std::string_view) { return std::make_shared<OneColumn>(rows); };
  }

  StatementLog log_;
  std::function<RecordsetPtr(std::string_view)> answer_;
  std::vector<std::string> opened_;
  std::vector<std::shared_ptr<FakeSession>> sessions_;
  ReferenceHost host_{[this](std::string_view sDsn) { return Open(sDsn); }, nullptr, &log_};
};

TEST_F(ReferenceHostTest, OneConnectionStringIsOneOpenConnection) {
  const auto context = host_.NewDbContext();
  context->Bind("a");
  const ConnectionPtr connection = context->GetConnection();
  EXPECT_EQ(context->GetConnection(), connection);
  EXPECT_EQ(host_.GetConnection("a"), connection);
  ExecuteSQL(host_, "a", "Select 1");
  GetFirstValue(host_, "a", "Select 2");
  EXPECT_THAT(opened_, ElementsAre("a"));
  EXPECT_NE(host_.GetConnection("b"), connection);
  EXPECT_THAT(opened_, ElementsAre("a", "b"));
}

TEST_F(ReferenceHostTest, AClosedConnectionIsReplacedWhenNextAskedFor) {
  const auto context = host_.NewDbContext();
  context->Bind("a");
  context->GetConnection()->Close();
  EXPECT_EQ(context->GetConnection()->State(), Connection::kStateOpen);
  EXPECT_THAT(opened_, ElementsAre("a", "a"));
}

TEST_F(ReferenceHostTest, AClosedConnectionIsOpenedAgainWhereThatCanBeDone) {
  int reopened = 0;
  ReferenceHost host([this](std::string_view sDsn) { return Open(sDsn); },
                     [&](Connection& session) {
                       static_cast<FakeSession&>(session).state = Connection::kStateOpen;
                       ++reopened;
                     },
                     &log_);
  const ConnectionPtr connection = host.GetConnection("a");
  connection->Close();
  EXPECT_EQ(host.GetConnection("a"), connection);
  EXPECT_EQ(connection->State(), Connection::kStateOpen);
  EXPECT_EQ(reopened, 1);
  EXPECT_THAT(opened_, ElementsAre("a"));
}

TEST_F(ReferenceHostTest, AnUnboundContextHasNoConnection) {
  const auto context = host_.NewDbContext();
  EXPECT_EQ(ErrorOf([&] { context->GetConnection(); }), 91);
}

TEST_F(ReferenceHostTest, WhatTheOpenerRaisesReachesTheCaller) {
  const auto context = host_.NewDbContext();
  context->Bind("nowhere");
  EXPECT_EQ(ErrorOf([&] { context->ReadyFirst(); }), 17);
  EXPECT_EQ(ErrorOf([&] { context->GetConnection(); }), 17);
}

TEST_F(ReferenceHostTest, ReadyingCallsAreKeptInOrderWithTheirContextAndPlace) {
  const auto first = host_.NewDbContext();
  const auto second = host_.NewDbContext();
  first->Bind("a");
  second->Bind("a");
  second->ReadyFirst();
  second->GetConnection()->Execute("Update x");
  second->ReadySecond();
  first->ReadySecond();
  EXPECT_THAT(host_.ready_calls(),
              ElementsAre(ReadyCall{Member::kFirst, 2, 0}, ReadyCall{Member::kSecond, 2, 1},
                          ReadyCall{Member::kSecond, 1, 1}));
  host_.ClearReadyCalls();
  EXPECT_THAT(host_.ready_calls(), IsEmpty());
}

TEST_F(ReferenceHostTest, ReadyingOpensTheConnection) {
  const auto context = host_.NewDbContext();
  context->Bind("a");
  context->ReadyFirst();
  EXPECT_THAT(opened_, ElementsAre("a"));
  sessions_[0]->Close();
  context->ReadySecond();
  EXPECT_THAT(opened_, ElementsAre("a", "a"));
}

TEST_F(ReferenceHostTest, TheUserIsTheSettingsUser) {
  PlugIn plug_in(host_);
  EXPECT_EQ(plug_in.user_id(), 16394);
  host_.settings().user_id = 7;
  EXPECT_EQ(plug_in.user_id(), 7);
}

TEST_F(ReferenceHostTest, EverythingSentThroughTheHostIsLoggedSettingsAreNot) {
  Answer({"1"});
  host_.GetConnection("a")->Execute("Select 1");
  GetProfile(host_, "a", "UnderStock", "IC");
  ExecuteSQL(host_, "a", "Select 2");
  GetFirstValue(host_, "a", "Select 3");
  GetSysProfile(host_);
  ASSERT_THAT(log_.statements(), SizeIs(3));
  EXPECT_EQ(log_.statements()[0].text, "Select 1");
  EXPECT_EQ(log_.statements()[1].text, "Select 2");
  EXPECT_EQ(log_.statements()[2].text, "Select 3");
}

TEST_F(ReferenceHostTest, ASettingIsReadByCategoryAndKey) {
  Answer({"2026"});
  EXPECT_EQ(GetProfile(host_, "a", "Current'Year", "IC"), Value("2026"));
  EXPECT_THAT(sessions_[0]->sent, ElementsAre("select FValue from t_SystemProfile where "
                                              "FCategory=N'IC' and FKey=N'Current''Year'"));
}

TEST_F(ReferenceHostTest, AnAbsentSettingIsEmptyOrTheFallbackANullOneIsNull) {
  Answer({});
  EXPECT_EQ(GetProfile(host_, "a", "UnderStock", "IC"), Value());
  PlugIn plug_in(host_);
  plug_in.InitObjects("b");
  EXPECT_EQ(GetICProfile(host_, "CalculateType", int32_t{0}), Value(int32_t{0}));
  EXPECT_THAT(opened_, ElementsAre("a", "b"));  // the database that was bound last
  Answer({Null{}});
  plug_in.InitObjects("c");
  EXPECT_EQ(GetICProfile(host_, "CalculateType", int32_t{0}), Value(Null{}));
}

TEST_F(ReferenceHostTest, RightsAreDeniedByClassType) {
  host_.settings().denied_class_types = {1040005};
  EXPECT_FALSE(CheckBillRight(host_, 1040005, int32_t{1}));
  EXPECT_TRUE(CheckBillRight(host_, 1040006, int32_t{1}));
}

TEST_F(ReferenceHostTest, AnErrorWithoutANumberIsAMereMessage) {
  const auto checker = host_.NewErrorChecker();
  EXPECT_FALSE(checker->IsError({0, "db", "Changed database context.", "01000"}));
  EXPECT_TRUE(checker->IsError({208, "db", "Invalid object name 'x'.", "42S02"}));
  EXPECT_TRUE(checker->IsError({-5, "db", "", ""}));
}

TEST_F(ReferenceHostTest, AMissingComponentCannotBeCreated) {
  const std::vector<std::pair<std::string, std::function<void(Host&)>>> components = {
      {"DbContext", [](Host& host) { host.NewDbContext(); }},
      {"TavMAPPConnection.APPConnection", [](Host& host) { host.NewApplicationConnection(); }},
      {"TavMClass.ClassInfo", [](Host& host) { host.NewClassInfo(); }},
      {"TavEBSBase.SystemProfile", [](Host& host) { host.NewSystemProfile(); }},
      {"TavErrorHandle.CheckADOError", [](Host& host) { host.NewErrorChecker(); }},
      {"TavClassTpl.DataSrv", [](Host& host) { host.NewDataService(); }},
      {"TavEBCGLView.GLData", [](Host& host) { host.NewGLData(); }},
      {"M8RESLOADER.Loader", [](Host& host) { host.NewResourceLoader(); }},
      {"Bzo.Dictionary", [](Host& host) { host.NewDictionary(); }},
      {"Bzo.Vector", [](Host& host) { host.NewVector(); }},
  };
  for (const auto& [name, create] : components) {
    EXPECT_EQ(ErrorOf([this, &create = create] { create(host_); }), 0) << name;
    host_.settings().missing_components = {name};
    for (const auto& [other, create_other] : components) {
      EXPECT_EQ(ErrorOf([this, &create_other = create_other] { create_other(host_); }),
                other == name ? 429 : 0)
          << other;
    }
    host_.settings().missing_components.clear();
  }
}

TEST_F(ReferenceHostTest, TextsAreTranslatedByLanguageOnceAFileIsNamed) {
  host_.settings().resources["CHT"]["该单据不存在！"] = "該單據不存在！";
  const auto loader = host_.NewResourceLoader();
  EXPECT_EQ(loader->LanguageID(), "");
  loader->SetLanguageID("cht");
  EXPECT_EQ(loader->LanguageID(), "cht");
  EXPECT_EQ(loader->LoadString("该单据不存在！"), "该单据不存在！");
  loader->SetResFileBaseName("M8INDUSTRY");
  EXPECT_EQ(loader->LoadString("该单据不存在！"), "該單據不存在！");
  EXPECT_EQ(loader->LoadString("没有的文本"), "没有的文本");
  loader->SetLanguageID("ENU");
  EXPECT_EQ(loader->LoadString("该单据不存在！"), "该单据不存在！");
}

TEST_F(ReferenceHostTest, PublishesADictionaryOrNothing) {
  EXPECT_EQ(GetIndustryType(host_), 0);
  host_.settings().published = std::make_shared<HostDictionary>();
  EXPECT_EQ(GetIndustryType(host_), 0);
  host_.settings().published->SetItem("IndustryType", int32_t{1});
  EXPECT_EQ(GetIndustryType(host_), 1);
}

TEST_F(ReferenceHostTest, TheTextOfNullIsEmpty) {
  EXPECT_EQ(host_.FieldText(Null{}), "");
  EXPECT_EQ(host_.FieldText(Empty{}), "");
  EXPECT_EQ(host_.FieldText("文本"), "文本");
  EXPECT_EQ(host_.FieldText(int32_t{-7}), "-7");
  EXPECT_EQ(host_.FieldText(*Decimal::Parse("1.50")), "1.5");
}

TEST_F(ReferenceHostTest, PlaceholdersTakeValuesByPosition) {
  const std::vector<Value> two = {"A01", int32_t{9}};
  const std::pair<const char*, const char*> cases[] = {
      {"单据[%1]审核成功!", "单据[A01]审核成功!"},
      {"%2 before %1", "9 before A01"},
      {"%1%1", "A01A01"},
      {"%3 stays", "%3 stays"},
      {"100%%", "100%"},
      {"%%1", "%1"},
      {"%0 and %x", "%0 and %x"},
      {"ends in %", "ends in %"},
      {"", ""},
  };
  for (const auto& [text, expected] : cases) {
    EXPECT_EQ(host_.FormatPlaceholders(text, two), expected) << text;
  }
  EXPECT_EQ(host_.FormatPlaceholders("[%1]", {}), "[%1]");
}

}  // namespace
}  // namespace tavcc
