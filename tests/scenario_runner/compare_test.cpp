// Which expectations hold for which values, and how a difference is told.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/host_dictionary.h"
#include "host/host_vector.h"
#include "scenario/values.h"
#include "scenario_runner/fake_backend.h"

namespace tavcc::testing {
namespace {

std::vector<std::string> Differences(const char* expected, const Value& actual) {
  std::vector<std::string> differences;
  Compare(ParseJson(expected), actual, "x", differences);
  return differences;
}

struct Row {
  const char* expected;
  Value actual;
};

TEST(Compare, Accepts) {
  const Row rows[] = {
      {"1", int32_t{1}},
      {"1", int16_t{1}},
      {"1", 1.0},
      {"1.0", int32_t{1}},
      {"0.1", 0.1},
      {"0.1", *Decimal::Parse("0.1000000000")},
      {"-5", *Decimal::Parse("-5.00")},
      {"4000000000", Decimal(4000000000)},
      {R"({"decimal": "0.333333333333333333"})", *Decimal::Parse("0.333333333333333333")},
      {R"({"integer": 3})", int16_t{3}},
      {"true", true},
      {"1", true},
      {"-1", true},
      {"0", false},
      {R"("甲")", "甲"},
      {R"("")", ""},
      {R"({"date": "2026-03-01"})", *DateTime::Parse("2026-03-01")},
      {R"("2026-03-01 08:30:00")", *DateTime::Parse("2026-03-01 08:30:00")},
      {"null", Null{}},
      {"null", Empty{}},
      {"null", ObjectPtr()},
  };
  for (const Row& row : rows) {
    EXPECT_THAT(Differences(row.expected, row.actual), ::testing::IsEmpty()) << row.expected;
  }
}

TEST(Compare, Refuses) {
  const Row rows[] = {
      {"1", int32_t{2}},
      {"1", "1"},
      {R"("1")", int32_t{1}},
      {"0.1", 0.10000000000001},
      {R"({"decimal": "0.333333333333333333"})", *Decimal::Parse("0.333333333333333334")},
      {"true", false},
      {"true", int32_t{1}},
      {"2", true},
      {"0", true},
      {"0", Null{}},
      {"0", Empty{}},
      {R"("a")", "A"},
      {R"("a")", "a "},
      {R"("")", Empty{}},
      {R"({"date": "2026-03-01"})", *DateTime::Parse("2026-03-02")},
      {R"({"date": "2026-03-01"})", "2026-03-01"},
      {"null", ""},
      {"null", int32_t{0}},
      {"null", false},
      {R"({"a": 1})", int32_t{1}},
      {"[]", int32_t{1}},
      {"[]", Null{}},
  };
  for (const Row& row : rows) {
    EXPECT_THAT(Differences(row.expected, row.actual), ::testing::SizeIs(1)) << row.expected;
  }
}

TEST(Compare, TellsBothSides) {
  EXPECT_THAT(Differences("1", "1"), ::testing::ElementsAre(R"(x: expected 1, got "1")"));
}

TEST(Compare, LooksAtTheNamedKeysOfADictionaryOnly) {
  const auto dictionary = std::make_shared<HostDictionary>();
  dictionary->SetItem("a", 1);
  dictionary->SetItem("b", "text");
  EXPECT_THAT(Differences(R"({"a": 1})", dictionary), ::testing::IsEmpty());
  EXPECT_THAT(Differences(R"({"a": 1, "c": null})", dictionary), ::testing::IsEmpty());
  EXPECT_THAT(Differences(R"({"a": 2, "b": "text"})", dictionary),
              ::testing::ElementsAre("x.a: expected 2, got 1"));
  EXPECT_THAT(Differences(R"({"c": 3})", dictionary),
              ::testing::ElementsAre("x.c: expected 3, but there is no such key"));
}

TEST(Compare, LooksAtAllElementsOfAVector) {
  const auto vector = std::make_shared<HostVector>();
  vector->Add(1);
  vector->Add(2);
  EXPECT_THAT(Differences("[1, 2]", vector), ::testing::IsEmpty());
  EXPECT_THAT(Differences("[1, 3]", vector), ::testing::ElementsAre("x(2): expected 3, got 2"));
  EXPECT_THAT(Differences("[1]", vector), ::testing::ElementsAre("x: expected 1 elements, got 2"));
}

TEST(Compare, LooksAtAllRowsAndTheNamedColumns) {
  const RecordsetPtr rows = WrittenRows({"FID", "FName"}, {{1, "a"}, {2, "b"}});
  EXPECT_THAT(Differences(R"([{"FID": 1}, {"FID": 2, "FName": "b"}])", rows), ::testing::IsEmpty());
  EXPECT_THAT(Differences(R"([[1, "a"], [2, "b"]])", rows), ::testing::IsEmpty());
  EXPECT_THAT(Differences(R"([{"FID": 1}, {"FName": "c"}])", rows),
              ::testing::ElementsAre(R"(x row 2 FName: expected "c", got "b")"));
  EXPECT_THAT(Differences(R"([{"FID": 1}, {"FNote": ""}])", rows),
              ::testing::ElementsAre("x row 2: there is no column FNote"));
  EXPECT_THAT(Differences(R"([[1, "a"], [2]])", rows),
              ::testing::ElementsAre("x row 2: expected 1 columns, got 2"));
  EXPECT_THAT(Differences(R"([{"FID": 1}])", rows),
              ::testing::Contains("x: expected 1 rows, got 2"));
  EXPECT_THAT(Differences("[]", rows), ::testing::Contains("x: expected 0 rows, got 2"));
}

TEST(ValueFromJson, MakesTheDocumentedKinds) {
  FakeBackendSession session(StartState{});
  const auto kind = [&](const char* json) {
    return ValueFromJson(session.host(), ParseJson(json)).kind();
  };
  EXPECT_EQ(kind("7"), Value::Kind::kLong);
  EXPECT_EQ(kind("4000000000"), Value::Kind::kDecimal);
  EXPECT_EQ(kind("1.5"), Value::Kind::kDouble);
  EXPECT_EQ(kind("true"), Value::Kind::kBoolean);
  EXPECT_EQ(kind("null"), Value::Kind::kNull);
  EXPECT_EQ(kind(R"("x")"), Value::Kind::kText);
  EXPECT_EQ(kind(R"({"date": "2026-03-01"})"), Value::Kind::kDate);
  EXPECT_EQ(kind(R"({"decimal": "1.50"})"), Value::Kind::kDecimal);
  EXPECT_EQ(kind(R"({"integer": 7})"), Value::Kind::kInteger);
  EXPECT_EQ(kind(R"({"empty": true})"), Value::Kind::kEmpty);
  EXPECT_EQ(ValueFromJson(session.host(), ParseJson(R"({"nothing": true})")), Value(ObjectPtr()));
  const Value vector = ValueFromJson(session.host(), ParseJson(R"([{"a": 1}])"));
  EXPECT_EQ(ToObject<Dictionary>(ToObject<Vector>(vector)->Item(1))->Item("a"), Value(1));
  for (const char* wrong :
       {R"({"date": "2026-02-30"})", R"({"decimal": 1.5})", R"({"integer": 40000})"}) {
    EXPECT_THROW(ValueFromJson(session.host(), ParseJson(wrong)), JsonError) << wrong;
  }
}

}  // namespace
}  // namespace tavcc::testing
