// How a call by name treats its arguments, on methods of the test's own.

#include <gtest/gtest.h>

#include "foundation/conversions.h"
#include "registry/bind.h"
#include "registry/class_registry.h"
#include "support/scripted_host.h"

namespace tavcc {
namespace {

constexpr Parameter kParameters[] = {
    {"id", ArgumentType::kLong},
    {"direction", ArgumentType::kInteger},
    {"message", ArgumentType::kText, true},
    {"bill", ArgumentType::kDictionary, false, true},
    {"daily", ArgumentType::kBoolean, false, true, int16_t{-1}},
    {"result", ArgumentType::kDictionary, true, true},
};

std::string Rule(PlugIn& self, int32_t id, int16_t direction, std::string& message,
                 Dictionary& bill, bool daily, DictionaryPtr& result) {
  message += "!";
  result = self.host().NewDictionary();
  result->SetItem("key", bill.Item("key"));
  return std::to_string(id) + " " + std::to_string(direction) + (daily ? " daily" : "");
}

constexpr Method kMethod = {"Rule", 0, 1, kParameters, ArgumentType::kText, false, Bind<&Rule>};
constexpr ClassDescription kClass = {"Test", 2, {&kMethod, 1}};

class Invocation : public ::testing::Test {
 protected:
  Value Call(std::vector<Value>& arguments) { return Invoke(kClass, kMethod, object_, arguments); }
  int32_t ErrorOf(std::vector<Value> arguments) {
    try {
      Call(arguments);
      return 0;
    } catch (const AutomationError& error) {
      return error.number();
    }
  }
  Value Bill() {
    const auto bill = host_.NewDictionary();
    bill->SetItem("key", int32_t{5});
    return bill;
  }
  testing::ScriptedHost host_;
  PlugIn object_{host_};
};

TEST_F(Invocation, ConvertsArgumentsAndWritesInOutOnesBack) {
  std::vector<Value> arguments = {"7", 1.0, "m", Bill()};
  EXPECT_EQ(Call(arguments), Value("7 1 daily"));
  ASSERT_EQ(arguments.size(), 6u);
  EXPECT_EQ(arguments[2], Value("m!"));
  EXPECT_EQ(ToObject<Dictionary>(arguments[5])->Item("key"), Value(int32_t{5}));
}

TEST_F(Invocation, GivesOmittedArgumentsTheirDefaults) {
  std::vector<Value> arguments = {int32_t{7}, int32_t{-1}, "", Bill(), Missing{}};
  EXPECT_EQ(Call(arguments), Value("7 -1 daily"));
  arguments = {int32_t{7}, int32_t{-1}, "", Bill(), false};
  EXPECT_EQ(Call(arguments), Value("7 -1"));
}

TEST_F(Invocation, RefusesWrongArgumentsByNumber) {
  EXPECT_EQ(ErrorOf({int32_t{1}, int32_t{1}}), 449);
  EXPECT_EQ(ErrorOf({int32_t{1}, Missing{}, ""}), 449);
  EXPECT_EQ(ErrorOf({int32_t{1}, int32_t{1}, "", Bill(), true, Bill(), int32_t{1}}), 450);
  EXPECT_EQ(ErrorOf({int32_t{1}, int32_t{70000}, "", Bill()}), 6);
  EXPECT_EQ(ErrorOf({"x", int32_t{1}, "", Bill()}), 13);
  EXPECT_EQ(ErrorOf({int32_t{1}, int32_t{1}, "", "no bill"}), 13);
  EXPECT_EQ(ErrorOf({int32_t{1}, int32_t{1}, Null{}, Bill()}), 94);
}

TEST_F(Invocation, NamesTheArgumentThatDoesNotConvert) {
  std::vector<Value> arguments = {int32_t{1}, "one", ""};
  try {
    Call(arguments);
    FAIL() << "nothing was raised";
  } catch (const ArgumentError& error) {
    EXPECT_EQ(error.index(), 1);
    EXPECT_EQ(error.description(), "Type mismatch: argument direction");
  }
}

// The call itself goes through; the rule's first use of the object is the error, and what the rule
// had written by then reaches the caller.
TEST_F(Invocation, ANullReferenceIsErrorNinetyOneWhereItIsUsed) {
  std::vector<Value> arguments = {int32_t{1}, int32_t{1}, "m", ObjectPtr()};
  try {
    Call(arguments);
    FAIL() << "nothing was raised";
  } catch (const AutomationError& error) {
    EXPECT_EQ(error.number(), 91);
  }
  EXPECT_EQ(arguments[2], Value("m!"));
}

TEST_F(Invocation, AMethodWithoutABodySaysSo) {
  constexpr Method kBodiless = {"Later", 0, 1, {}, ArgumentType::kText};
  std::vector<Value> none;
  try {
    Invoke(kClass, kBodiless, object_, none);
    FAIL() << "nothing was raised";
  } catch (const AutomationError& error) {
    EXPECT_EQ(error.number(), 438);
    EXPECT_EQ(error.description(), "Test.Later is not built yet");
  }
}

TEST_F(Invocation, TransModeIsThePropertyOfEveryClass) {
  for (const ClassDescription& cls : Classes()) {
    const Method* property = FindMethod(cls, "transmode");
    ASSERT_NE(property, nullptr) << cls.name;
    std::vector<Value> none;
    EXPECT_EQ(Invoke(cls, *property, object_, none), Value(cls.trans_mode)) << cls.name;
  }
}

TEST(Lookup, IgnoresLetterCaseAndKnowsNothingElse) {
  ASSERT_NE(FindClass("CLS_cx"), nullptr);
  EXPECT_EQ(FindClass("CLS_cx")->name, "cls_CX");
  EXPECT_EQ(FindClass("cls_C"), nullptr);
  EXPECT_EQ(FindMethod(*FindClass("cls_CX"), "auditbill")->name, "AuditBill");
  EXPECT_EQ(FindMethod(*FindClass("cls_CX"), "AfterSave"), nullptr);
}

}  // namespace
}  // namespace tavcc
