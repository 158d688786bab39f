// Values inside dictionaries inside dictionaries, as the save hooks get them.
#include "foundation/dictionary.h"

#include <gtest/gtest.h>

#include "foundation/nothing.h"
#include "foundation/vector.h"
#include "support/scripted_host.h"

namespace tavcc::testing {
namespace {

std::shared_ptr<MapDictionary> With(std::string_view key, Value value) {
  auto dictionary = std::make_shared<MapDictionary>();
  dictionary->SetItem(key, std::move(value));
  return dictionary;
}

int32_t ErrorOf(const auto& read) {
  try {
    read();
  } catch (const AutomationError& error) {
    return error.number();
  }
  return 0;
}

TEST(NestedItem, ReadsTheHeadFieldOfASavedBill) {
  const auto data = With("Page1", With("12", With("FFLD", "4711")));
  EXPECT_EQ(NestedItem(*data, "Page1", "12", "FFLD"), Value("4711"));
}

TEST(NestedItem, TheInnermostKeyMayBeAbsent) {
  const auto data = With("Page1", With("12", With("FFLD", "4711")));
  EXPECT_EQ(NestedItem(*data, "Page1", "12", "FNAME"), Value(Empty{}));
  EXPECT_EQ(NestedItem(*data, "Page2"), Value(Empty{}));
}

struct Inner {
  const char* what;
  Value value;
  int32_t error;
};

TEST(NestedItem, AnythingButADictionaryOnTheWayIsAnError) {
  const Inner table[] = {
      {"no such key", Empty{}, 13},
      {"omitted", Missing{}, 13},
      {"null", Null{}, 94},
      {"a text", "Page1", 13},
      {"a number", 7, 13},
      {"a null reference", ObjectPtr(), 91},
      {"another object", std::make_shared<OneColumn>(std::vector<Value>{}), 13},
  };
  for (const Inner& inner : table) {
    const auto data = With("Page1", inner.value);
    EXPECT_EQ(ErrorOf([&] { NestedItem(*data, "Page1", "FFLD"); }), inner.error) << inner.what;
  }
}

TEST(NoObject, EveryUseOfANullReferenceIsError91) {
  EXPECT_EQ(ErrorOf([] { NoDictionary().Item("a"); }), 91);
  EXPECT_EQ(ErrorOf([] { NoDictionary().SetItem("a", 1); }), 91);
  EXPECT_EQ(ErrorOf([] { NoDictionary().ItemOr("a", 1); }), 91);
  EXPECT_EQ(ErrorOf([] { NoDictionary().Lookup("a"); }), 91);
  EXPECT_EQ(ErrorOf([] { NoVector().Size(); }), 91);
  EXPECT_EQ(ErrorOf([] { NoVector().Item(1); }), 91);
  EXPECT_EQ(ErrorOf([] { NoConnection().Execute("select 1"); }), 91);
  EXPECT_EQ(ErrorOf([] { NoConnection().State(); }), 91);
}

}  // namespace
}  // namespace tavcc::testing
