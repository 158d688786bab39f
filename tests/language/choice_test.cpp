// Which language tavcc speaks, where nothing but the user's preferences on Windows says so.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "language/language.h"

namespace tavcc {
namespace {

constexpr const char* kVariables[] = {"LC_ALL", "LC_MESSAGES", "LANG"};

class LanguageChoice : public testing::Test {
 protected:
  LanguageChoice() {
    for (const char* const variable : kVariables) unsetenv(variable);
  }
  ~LanguageChoice() override {
    for (const char* const variable : kVariables) unsetenv(variable);
    SetLanguage(Language::kEnglish);
  }

  static Language Chosen(const std::vector<std::string>& of_user,
                         const std::vector<std::string>& arguments = {}) {
    ChooseLanguage(arguments, of_user);
    return CurrentLanguage();
  }
};

TEST_F(LanguageChoice, IsTheFirstOfTheUsersThatHasWords) {
  EXPECT_EQ(Chosen({}), Language::kEnglish);
  EXPECT_EQ(Chosen({"zh-CN"}), Language::kChinese);
  EXPECT_EQ(Chosen({"zh-Hans-CN"}), Language::kChinese);
  EXPECT_EQ(Chosen({"zh-TW", "en-US"}), Language::kChinese);
  EXPECT_EQ(Chosen({"en-GB", "zh-CN"}), Language::kEnglish);
  EXPECT_EQ(Chosen({"fr-FR", "zh-CN"}), Language::kChinese);
  EXPECT_EQ(Chosen({"fr-FR", "de-DE"}), Language::kEnglish);
  EXPECT_EQ(Chosen({"za-Hani", "zhuang"}), Language::kEnglish);
}

TEST_F(LanguageChoice, IsTheEnvironmentsBeforeTheUsers) {
  setenv("LANG", "C.UTF-8", 1);
  EXPECT_EQ(Chosen({"zh-CN"}), Language::kEnglish);
  setenv("LANG", "", 1);
  EXPECT_EQ(Chosen({"zh-CN"}), Language::kChinese);
  setenv("LC_MESSAGES", "zh_CN", 1);
  EXPECT_EQ(Chosen({"en-US"}), Language::kChinese);
}

TEST_F(LanguageChoice, IsTheCommandLinesBeforeAll) {
  setenv("LANG", "zh_CN.UTF-8", 1);
  EXPECT_EQ(Chosen({"zh-CN"}, {"check", "--lang", "en"}), Language::kEnglish);
  unsetenv("LANG");
  EXPECT_EQ(Chosen({"zh-CN"}, {"--lang=en", "check"}), Language::kEnglish);
  EXPECT_EQ(Chosen({"en-US"}, {"check", "--lang=zh"}), Language::kChinese);
}

}  // namespace
}  // namespace tavcc
