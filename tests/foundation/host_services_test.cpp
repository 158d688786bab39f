#include "foundation/host_services.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "foundation/plug_in.h"
#include "support/scripted_host.h"

namespace tavcc {
namespace {

using ::testing::ElementsAre;
using testing::ErrorsOnlyConnection;
using ::testing::IsEmpty;
using testing::MapDictionary;
using testing::OneColumn;
using testing::ScriptedHost;

RecordsetPtr Rows(std::vector<Value> rows) {
  return std::make_shared<OneColumn>(std::move(rows));
}

class HostServices : public ::testing::Test {
 protected:
  ~HostServices() override { ReleaseHostObjects(); }
  ScriptedHost host_;
};

TEST_F(HostServices, ExecuteSQLPassesTheConnectionStringFirstAndReleasesTheComponent) {
  host_.execute = [&](std::string_view sDsn, std::string_view sql) {
    EXPECT_EQ(sDsn, "dsn");
    EXPECT_EQ(sql, "Select 1");
    EXPECT_THAT(host_.calls, IsEmpty());
    return Rows({int32_t{1}});
  };
  EXPECT_FALSE(ExecuteSQL(host_, "dsn", "Select 1")->AtEnd());
  EXPECT_THAT(host_.calls, ElementsAre("application connection released"));
}

TEST_F(HostServices, ExecuteSQLAndGetProfileLetErrorsThrough) {
  EXPECT_THROW(ExecuteSQL(host_, "dsn", "Select 1"), AutomationError);
  EXPECT_THROW(GetProfile(host_, "dsn", "UnCheckOnlySelf", "IC"), AutomationError);
  EXPECT_THROW(GetSysProfile(host_), AutomationError);
}

TEST_F(HostServices, GetFirstValueIsEmptyWithoutARowAndAfterAnyError) {
  EXPECT_EQ(GetFirstValue(host_, "dsn", "x"), "");  // the component cannot be created
  host_.get_data = [](auto, auto) { return Rows({}); };
  EXPECT_EQ(GetFirstValue(host_, "dsn", "x"), "");
  host_.get_data = [](auto, auto) -> RecordsetPtr { throw AutomationError(208, "", "no table"); };
  EXPECT_EQ(GetFirstValue(host_, "dsn", "x"), "");
  host_.get_data = [](auto, auto) { return Rows({Null{}}); };
  EXPECT_EQ(GetFirstValue(host_, "dsn", "x"), "");
  host_.get_data = [](auto, auto) { return Rows({"first", "second"}); };
  EXPECT_EQ(GetFirstValue(host_, "dsn", "x"), "first");
}

TEST_F(HostServices, GetProfileTakesTheKeyBeforeTheCategoryAndAsksTheOtherWayRound) {
  host_.get_profile = [](std::string_view category, std::string_view key) -> Value {
    return std::string(category) + "/" + std::string(key);
  };
  EXPECT_EQ(GetProfile(host_, "dsn", "UnCheckOnlySelf", "IC"), Value("IC/UnCheckOnlySelf"));
}

const std::vector<ConnectionError> kThreeErrors = {
    {1, "", "first", ""}, {2, "", "second", ""}, {3, "", "third", ""}};

TEST_F(HostServices, CheckADOErrorRaisesTheFirstRealErrorWithAllTexts) {
  host_.is_error = [](const ConnectionError& error) { return error.number >= 2; };
  const ErrorsOnlyConnection cn(kThreeErrors);
  EXPECT_TRUE(CheckADOError(host_, cn, false));
  // Once one is found no further one is asked about.
  EXPECT_THAT(host_.calls, ElementsAre("IsError 1", "IsError 2"));
  try {
    CheckADOError(host_, cn, true);
    FAIL() << "nothing was raised";
  } catch (const AutomationError& error) {
    EXPECT_EQ(error.number(), 2);
    EXPECT_EQ(error.description(), "first\r\nsecond\r\nthird\r\n");
  }
}

TEST_F(HostServices, CheckADOErrorWithoutErrorsAsksNobody) {
  EXPECT_FALSE(CheckADOError(host_, ErrorsOnlyConnection({}), true));
}

TEST_F(HostServices, CheckADOErrorRaisesNothingWhenNoneIsReal) {
  host_.is_error = [](const ConnectionError&) { return false; };
  EXPECT_FALSE(CheckADOError(host_, ErrorsOnlyConnection(kThreeErrors), true));
}

TEST_F(HostServices, CheckADOErrorWithoutACheckerTakesTheCreationsError) {
  try {
    CheckADOError(host_, ErrorsOnlyConnection({{7, "", "only", ""}}), true);
    FAIL() << "nothing was raised";
  } catch (const AutomationError& error) {
    EXPECT_EQ(error.number(), 429);
    EXPECT_EQ(error.description(),
              "Number:429\r\nDescription:ActiveX component can't create object\r\nonly\r\n");
  }
  EXPECT_TRUE(CheckADOError(host_, ErrorsOnlyConnection({{7, "", "only", ""}}), false));
}

TEST_F(HostServices, IsInArrayLooksFromTheLowerBoundOn) {
  const std::vector<Value> elements = {"1", int32_t{1020002}, Null{}};
  EXPECT_TRUE(IsInArray(1020002.0, {elements, 0}));
  EXPECT_TRUE(IsInArray(1020002.0, {elements, 5}));
  EXPECT_TRUE(IsInArray("1", {elements, -3}));
  EXPECT_FALSE(IsInArray(int32_t{1}, {elements, 0}));
  EXPECT_FALSE(IsInArray(Null{}, {elements, 0}));
  EXPECT_FALSE(IsInArray("1", {{}, 1}));
}

TEST_F(HostServices, CheckBillRightIsNoOnAnyError) {
  EXPECT_FALSE(CheckBillRight(host_, 1040005, int32_t{7}));
  host_.check_right = [](int32_t class_type_id, const Value& argument) -> Value {
    return class_type_id == 1040005 && argument == Value(int32_t{7});
  };
  EXPECT_TRUE(CheckBillRight(host_, 1040005, int32_t{7}));
  EXPECT_FALSE(CheckBillRight(host_, 1040006, int32_t{7}));
  host_.check_right = [](int32_t, const Value&) -> Value { return "perhaps"; };
  EXPECT_FALSE(CheckBillRight(host_, 1040005, int32_t{7}));
}

TEST_F(HostServices, TheProfileReaderIsFetchedOncePerThreadUntilReleased) {
  host_.read_profile = [](auto, std::string_view key, const Value& fallback) -> Value {
    return key == "CalculateType" ? Value(int32_t{1}) : fallback;
  };
  EXPECT_EQ(GetICProfile(host_, "CalculateType", int32_t{0}), Value(int32_t{1}));
  EXPECT_EQ(GetICProfile(host_, "Other", int32_t{5}), Value(int32_t{5}));
  EXPECT_EQ(GetGLData(host_), GetGLData(host_));
  EXPECT_THAT(host_.calls, ElementsAre("ledger", "profile reader"));
  ReleaseHostObjects();
  EXPECT_THAT(host_.calls, ElementsAre("ledger", "profile reader", "ledger released"));
  GetSysProfile(host_);
  EXPECT_THAT(host_.calls, ElementsAre("ledger", "profile reader", "ledger released", "ledger",
                                       "profile reader"));
}

TEST_F(HostServices, GetHostValueFallsBackWhenNothingIsPublished) {
  EXPECT_EQ(GetHostValue(host_, "IndustryType", int32_t{4}), Value(int32_t{4}));
  EXPECT_EQ(GetIndustryType(host_), 0);
}

TEST_F(HostServices, GetHostValueWithoutTheKeyGivesTheDefaultOrEmpty) {
  MapDictionary published;
  host_.published = &published;
  EXPECT_EQ(GetHostValue(host_, "LanguageID", "CHS"), Value("CHS"));
  EXPECT_TRUE(GetHostValue(host_, "LanguageID").IsEmpty());
  EXPECT_EQ(GetIndustryType(host_), 0);
  published.SetItem("IndustryType", "1");
  EXPECT_EQ(GetIndustryType(host_), 1);
}

TEST_F(HostServices, GetHostValueIsEmptyAfterAnError) {
  class Broken : public MapDictionary {
    bool Lookup(std::string_view) const override {
      throw AutomationError(RuntimeError::kInternalError);
    }
  } published;
  host_.published = &published;
  EXPECT_TRUE(GetHostValue(host_, "LanguageID", "CHS").IsEmpty());
}

// An object obtains a context and its user when it is made, both anew when it is bound, and lets go
// of the context before the user.
TEST_F(HostServices, APlugInKeepsAContextAndItsUser) {
  host_.user_id = 16394;
  {
    PlugIn object(host_);
    EXPECT_THAT(host_.calls, ElementsAre("new context", "user"));
    EXPECT_EQ(object.user_id(), 16394);
    host_.calls.clear();
    EXPECT_EQ(object.InitObjects("dsn"), 0);
    EXPECT_THAT(host_.calls, ElementsAre("new context", "context released", "bind dsn", "user",
                                         "user released"));
    host_.calls.clear();
  }
  EXPECT_THAT(host_.calls, ElementsAre("context released", "user released"));
}

}  // namespace
}  // namespace tavcc
