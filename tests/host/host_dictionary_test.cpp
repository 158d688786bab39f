#include "host/host_dictionary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tavcc {
namespace {

std::vector<std::string> KeysOf(const HostDictionary& dictionary) {
  std::vector<std::string> keys;
  for (const auto& [key, value] : dictionary.entries()) keys.push_back(key);
  return keys;
}

TEST(HostDictionary, AnAbsentKeyIsEmptyOrTheFallback) {
  HostDictionary dictionary;
  EXPECT_EQ(dictionary.Item("BillNo"), Value());
  EXPECT_EQ(dictionary.ItemOr("BillNo", "none"), Value("none"));
  EXPECT_FALSE(dictionary.Lookup("BillNo"));
}

TEST(HostDictionary, APresentKeyIsFoundWhateverItsValue) {
  HostDictionary dictionary;
  dictionary.SetItem("CustID", Empty{});
  dictionary.SetItem("SupplyID", Null{});
  EXPECT_TRUE(dictionary.Lookup("CustID"));
  EXPECT_EQ(dictionary.ItemOr("CustID", int32_t{7}), Value());
  EXPECT_EQ(dictionary.ItemOr("SupplyID", int32_t{7}), Value(Null{}));
}

TEST(HostDictionary, ComparesAsciiLettersWithoutRegardToCase) {
  HostDictionary dictionary;
  dictionary.SetItem("BillInterID", int32_t{1});
  dictionary.SetItem("billinterid", int32_t{2});
  dictionary.SetItem("编号", int32_t{3});
  EXPECT_EQ(dictionary.Item("BILLINTERID"), Value(int32_t{2}));
  EXPECT_EQ(dictionary.Item("编号"), Value(int32_t{3}));
  EXPECT_FALSE(dictionary.Lookup("编"));
}

TEST(HostDictionary, KeepsTheOrderAndTheSpellingInWhichKeysWereFirstSet) {
  HostDictionary dictionary;
  dictionary.SetItem("SuccessCount", int32_t{0});
  dictionary.SetItem("FailCount", int32_t{0});
  dictionary.SetItem("successcount", int32_t{5});
  EXPECT_THAT(KeysOf(dictionary), ::testing::ElementsAre("SuccessCount", "FailCount"));
  EXPECT_EQ(dictionary.entries()[0].second, Value(int32_t{5}));
}

}  // namespace
}  // namespace tavcc
