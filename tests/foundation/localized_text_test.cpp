// Localized message texts, over a loader that tells what it was asked.
#include "foundation/localized_text.h"

#include <gtest/gtest.h>

#include <array>

#include "foundation/host_services.h"
#include "foundation/trap.h"
#include "support/scripted_host.h"

namespace tavcc {
namespace {

using testing::ScriptedHost;

// A loader that puts its language before each text; the text "broken" makes it fail.
class Loader : public ResourceLoader {
 public:
  explicit Loader(std::vector<std::string>& calls) : calls_(calls) { calls_.push_back("created"); }
  ~Loader() override { calls_.push_back("released"); }
  std::string LanguageID() override { return language_; }
  void SetLanguageID(std::string_view language) override {
    language_ = language;
    calls_.push_back("language " + language_);
  }
  void SetResFileBaseName(std::string_view name) override {
    calls_.push_back("file " + std::string(name));
  }
  void Unload() override { calls_.push_back("unloaded"); }
  std::string LoadString(std::string_view key) override {
    calls_.push_back("load " + std::string(key));
    if (key == "broken") throw AutomationError(1001, "loader", "no such text");
    return language_ + "<" + std::string(key) + ">";
  }

 private:
  std::vector<std::string>& calls_;
  std::string language_;
};

class LoaderHost : public ScriptedHost {
 public:
  std::shared_ptr<ResourceLoader> NewResourceLoader() override {
    if (missing) throw AutomationError(RuntimeError::kCannotCreateObject);
    return std::make_shared<Loader>(calls);
  }
  std::string FormatPlaceholders(std::string_view text, std::span<const Value> values) override {
    return std::string(text) + " with " + values[0].text();
  }
  bool missing = false;
};

class LocalizedText : public ::testing::Test {
 protected:
  // The thread's loader refers to the host.
  ~LocalizedText() override { ReleaseHostObjects(); }

  LoaderHost host_;
};

using Calls = std::vector<std::string>;

TEST_F(LocalizedText, TheFirstLoaderGivesWayToOneWithLanguageAndFile) {
  EXPECT_EQ(LoadResText(host_, "单据不存在", "CHS"), "CHS<单据不存在>");
  EXPECT_EQ(host_.calls, (Calls{"created", "unloaded", "released", "created", "language CHS",
                                "file M8INDUSTRY", "load 单据不存在"}));
}

TEST_F(LocalizedText, LanguagesThatDifferInLetterCaseShareTheLoader) {
  LoadResText(host_, "a", "chs");
  host_.calls.clear();
  EXPECT_EQ(LoadResText(host_, "b", "CHS"), "chs<b>");
  EXPECT_EQ(host_.calls, (Calls{"load b"}));
}

TEST_F(LocalizedText, AnotherLanguageReplacesTheLoader) {
  LoadResText(host_, "a", "CHS");
  host_.calls.clear();
  EXPECT_EQ(LoadResText(host_, "a", "ENU"), "ENU<a>");
  EXPECT_EQ(host_.calls, (Calls{"unloaded", "released", "created", "language ENU",
                                "file M8INDUSTRY", "load a"}));
}

TEST_F(LocalizedText, TheLoaderIsReleasedWithTheOtherHostObjects) {
  LoadResText(host_, "a", "CHS");
  host_.calls.clear();
  ReleaseHostObjects();
  EXPECT_EQ(host_.calls, (Calls{"released"}));
  EXPECT_EQ(LoadResText(host_, "a", "CHS"), "CHS<a>");
  EXPECT_EQ(host_.calls[1], "created");
}

TEST_F(LocalizedText, TextsAndTheirTranslations) {
  const struct {
    const char* text;
    const char* expected;
  } rows[] = {
      {"key", "L<key>"},
      {"  key with blanks  ", "L<key with blanks>"},
      {"\tkey\t", "L<\tkey\t>"},  // only blanks are trimmed
      {"", "L<>"},
      {"A^|^~$~B^|^C", "AL<B>C"},  // literal, key, literal
      {"~$~A^|^~$~B", "L<A>L<B>"},
      {"~$~ A ^|^ b ", "L<A> b"},  // the whole and each key are trimmed, literals are not
      {"A^|^", "A"},
      {"^|^", ""},
      {"A^|^~$~", "AL<>"},
      {"A^|^x~$~B", "Ax~$~B"},  // the mark counts at the beginning of a piece only
      {"~$~A", "L<~$~A>"},      // no compound text, hence no mark
      {"A^|B", "L<A^|B>"},
      {"broken", "broken"},
      {" broken ", "broken"},
      {"A^|^~$~broken^|^~$~B", "AbrokenL<B>"},  // one key fails, the others do not
  };
  for (const auto& row : rows) {
    EXPECT_EQ(LoadResText(host_, row.text, "L"), row.expected) << row.text;
  }
}

TEST_F(LocalizedText, PartsKeepTheBlanksOfTheirEnds) {
  EXPECT_EQ(LoadResTextParts(host_, " A^|^~$~B^|^C ", "L"), " AL<B>C ");
  EXPECT_EQ(LoadResTextParts(host_, "plain", "L"), "plain");
}

TEST_F(LocalizedText, WithoutALoaderTheTrimmedTextIsTheAnswer) {
  host_.missing = true;
  EXPECT_EQ(LoadResText(host_, " 单据[%1]审核成功! ", "CHS"), "单据[%1]审核成功!");
  host_.missing = false;
  EXPECT_EQ(LoadResText(host_, "a", "CHS"), "CHS<a>");
}

TEST_F(LocalizedText, ALanguageThatCannotBeHadDropsTheOldLoader) {
  LoadResText(host_, "a", "CHS");
  host_.missing = true;
  EXPECT_EQ(LoadResText(host_, "a", "ENU"), "a");
  host_.missing = false;
  host_.calls.clear();
  EXPECT_EQ(LoadResText(host_, "a", "CHS"), "CHS<a>");
  EXPECT_EQ(host_.calls[0], "created");
}

TEST_F(LocalizedText, FormatsTheTranslation) {
  EXPECT_EQ(LoadResTextFmt(host_, " [%1] ", "CHS", std::array{Value("B-7")}), "CHS<[%1]> with B-7");
}

// A trap's failure part translates its message; the error that it reports must survive that, also
// when the loader fails meanwhile.
TEST_F(LocalizedText, LeavesThePendingErrorAsItWas) {
  for (const char* text : {"a", "broken", "A^|^~$~broken"}) {
    const bool told = Trap([]() -> bool { throw AutomationError(3265, "rows", "no such field"); },
                           [&](const AutomationError&) {
                             LoadResText(host_, text, "CHS");
                             EXPECT_NE(PendingError(), nullptr) << text;
                             EXPECT_EQ(PendingError()->number(), 3265) << text;
                             EXPECT_EQ(PendingError()->source(), "rows") << text;
                             EXPECT_EQ(PendingError()->description(), "no such field") << text;
                             return true;
                           });
    EXPECT_TRUE(told);
    EXPECT_EQ(PendingError(), nullptr);
  }
}

TEST_F(LocalizedText, AFailureInsideLeavesNoPendingErrorWhereThereWasNone) {
  LoadResText(host_, "broken", "CHS");
  EXPECT_EQ(PendingError(), nullptr);
}

}  // namespace
}  // namespace tavcc
