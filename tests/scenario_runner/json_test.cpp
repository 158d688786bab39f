// JSON values: what a text reads as, how it is printed, and what is refused.
#include "scenario/json.h"

#include <gtest/gtest.h>

namespace tavcc {
namespace {

std::string Refused(const auto& act) {
  try {
    act();
    return "nothing";
  } catch (const JsonError& error) {
    return error.what();
  }
}

TEST(Json, IsPrintedAsItWasRead) {
  for (const char* text :
       {"null", "true", "-7", "9223372036854775807", "18446744073709551615", "1.5", "1e+100",
        R"("车\"\n")", "[]", "{}", R"([1,[2,{"a":null}],"x"])", R"({"b":1,"a":{"d":[],"c":""}})"}) {
    EXPECT_EQ(Show(ParseJson(text)), text);
  }
  EXPECT_EQ(Show(ParseJson(R"({"a":[1]})"), 2), "{\n  \"a\": [\n    1\n  ]\n}");
  EXPECT_EQ(Show(Json("\xff")), "\"\xef\xbf\xbd\"");  // no UTF-8
}

TEST(Json, IsWrittenInBraces) {
  const std::string name = "x";
  EXPECT_EQ(Show({{"database", name}, {"sample", true}}), R"({"database":"x","sample":true})");
  EXPECT_EQ(Show(Json{{"date", name}}), R"({"date":"x"})");
  EXPECT_EQ(Show({1, "a", nullptr}), R"([1,"a",null])");
  EXPECT_EQ(Show(Json{{1, 2}, {3, 4}}), "[[1,2],[3,4]]");
  EXPECT_EQ(Show(std::vector<std::string>{"a", "b"}), R"(["a","b"])");
}

TEST(Json, GrowsInPlace) {
  Json json;
  json["list"].push_back(1);
  json["list"].push_back({{"deep", true}})["deep"] = false;
  json["x"] = 2;
  json["x"] = 3;
  EXPECT_EQ(Show(json), R"({"list":[1,{"deep":false}],"x":3})");
  EXPECT_EQ(Refused([&] { json.push_back(1); }), "no list: " + Show(json));
  EXPECT_EQ(Refused([&] { json["x"]["y"] = 1; }), "no object: 3");
}

TEST(Json, GivesOnlyWhatItHolds) {
  const Json json = ParseJson(R"({"n": 32768, "r": 1.5, "big": 9223372036854775808, "t": "x"})");
  EXPECT_EQ(json["n"].get<int32_t>(), 32768);
  EXPECT_EQ(json["n"].get<double>(), 32768.0);
  EXPECT_EQ(json["big"].get<uint64_t>(), 9223372036854775808U);
  EXPECT_EQ(json.value("t", std::string("y")), "x");
  EXPECT_EQ(json.value("u", std::string("y")), "y");
  EXPECT_EQ(Refused([&] { json["n"].get<int16_t>(); }), "no 16-bit integer: 32768");
  EXPECT_EQ(Refused([&] { json["r"].get<int32_t>(); }), "no 32-bit integer: 1.5");
  EXPECT_EQ(Refused([&] { json["big"].get<int64_t>(); }), "no 64-bit integer: 9223372036854775808");
  EXPECT_EQ(Refused([&] { json["n"].get<std::string>(); }), "no text: 32768");
  EXPECT_EQ(Refused([&] { json["t"].get<double>(); }), "no number: \"x\"");
  EXPECT_EQ(Refused([&] { json["t"]["u"]; }), "no key \"u\": \"x\"");
  EXPECT_EQ(Refused([&] { ParseJson("[5]")[1]; }), "no element 2: [5]");
  EXPECT_TRUE(IsWholeNumber(json["n"], 0, 32768));
  EXPECT_FALSE(IsWholeNumber(json["n"], 0, 32767));
  EXPECT_FALSE(IsWholeNumber(json["r"], 0, 9));
  EXPECT_FALSE(IsWholeNumber(json["big"], 0, INT64_MAX));
}

TEST(Json, IsEqualByValue) {
  const auto equal = [](const char* a, const char* b) { return ParseJson(a) == ParseJson(b); };
  EXPECT_TRUE(equal("7", "7.0"));
  EXPECT_TRUE(equal(R"({"a":[1,null]})", R"({"a":[1.0,null]})"));
  EXPECT_FALSE(equal("9007199254740993", "9007199254740992"));
  EXPECT_FALSE(equal("1", "true"));
  EXPECT_FALSE(equal("[]", "{}"));
  EXPECT_FALSE(equal(R"({"a":1})", R"({"a":2})"));
  EXPECT_FALSE(equal(R"({"a":1})", R"({"b":1})"));
}

TEST(Json, IsRefusedWhereItIsNone) {
  const auto refused = [](const std::string& text) { return Refused([&] { ParseJson(text); }); };
  EXPECT_EQ(refused("[1,\n  x]"), "no JSON at line 2, column 3");
  EXPECT_EQ(refused("[1e999]"), "no JSON at line 1, column 6: the number is out of range");
  EXPECT_EQ(refused(R"({"a": {"b": 1, "b": 2}})"), "the key \"b\" stands twice in one object");
  EXPECT_EQ(refused(R"([{"a": 1}, {"a": 2}])"), "nothing");
  EXPECT_EQ(refused(std::string(200, '[') + std::string(200, ']')), "nothing");
  EXPECT_EQ(refused(std::string(1'000'000, '[')),
            "nested more than 200 levels deep at line 1, column 201");
}

}  // namespace
}  // namespace tavcc
