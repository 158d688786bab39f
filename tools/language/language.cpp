#include "language/language.h"

#include <cstdlib>
#include <map>
#include <optional>
#include <vector>

#include "language/words.h"

namespace tavcc {
namespace {

using Words = std::map<std::string_view, std::string_view>;

Language language = Language::kEnglish;

// Looked through when the first of them is said.
const Words& Chinese() {
  static const Words words = [] {
    Words all;
    for (const Word& word : ChineseWords()) all.emplace(word.english, word.other);
    return all;
  }();
  return words;
}

// What stands in the text for each "{}" of the pattern; nothing when it is not made of it.
std::optional<std::vector<std::string>> ValuesIn(std::string_view text, std::string_view pattern) {
  std::vector<std::string> values;
  for (size_t place = pattern.find("{}"); place != std::string_view::npos;
       place = pattern.find("{}")) {
    if (!text.starts_with(pattern.substr(0, place))) return std::nullopt;
    text.remove_prefix(place);
    pattern.remove_prefix(place + 2);
    const std::string_view behind = pattern.substr(0, pattern.find("{}"));
    const size_t end = behind.empty() ? text.size() : text.find(behind);
    if (end == std::string_view::npos) return std::nullopt;
    values.emplace_back(text.substr(0, end));
    text.remove_prefix(end);
  }
  return text == pattern ? std::optional(values) : std::nullopt;
}

std::string WithValues(std::string text, const std::vector<std::string>& values) {
  size_t from = 0;
  for (const std::string& value : values) {
    const size_t place = text.find("{}", from);
    if (place == std::string::npos) break;
    text.replace(place, 2, value);
    from = place + value.size();
  }
  return text;
}

// "zh" of "zh_CN.UTF-8" and "zh-Hans-CN"; nothing for a language without words here.
std::optional<Language> LanguageNamed(std::string_view locale) {
  const std::string_view code = locale.substr(0, locale.find_first_of("_-.@"));
  if (code == "en") return Language::kEnglish;
  if (code == "zh") return Language::kChinese;
  return std::nullopt;
}

// Empty where it names none.
std::string_view NameInEnvironment() {
  for (const char* const variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const char* const value = std::getenv(variable);
    if (value != nullptr && *value != '\0') return value;
  }
  return "";
}

std::optional<Language> FirstKnown(std::span<const std::string> names) {
  for (const std::string& name : names) {
    if (const auto known = LanguageNamed(name)) return known;
  }
  return std::nullopt;
}

}  // namespace

void SetLanguage(Language chosen) {
  language = chosen;
}

Language CurrentLanguage() {
  return language;
}

void ChooseLanguage(std::span<const std::string> arguments,
                    std::span<const std::string> languages_of_user) {
  const std::string with_value = std::string(kLanguageOption) + "=";
  std::string_view name = NameInEnvironment();
  for (size_t i = 0; i < arguments.size(); ++i) {
    const std::string_view argument = arguments[i];
    if (argument.starts_with(with_value)) name = argument.substr(with_value.size());
    if (argument == kLanguageOption && i + 1 < arguments.size()) name = arguments[i + 1];
  }
  const auto chosen = name.empty() ? FirstKnown(languages_of_user) : LanguageNamed(name);
  SetLanguage(chosen.value_or(Language::kEnglish));
}

std::string Translated(std::string_view english) {
  if (language == Language::kEnglish) return std::string(english);
  const auto found = Chinese().find(english);
  return std::string(found == Chinese().end() ? english : found->second);
}

std::string TranslatedLike(std::string_view english, std::span<const char* const> patterns) {
  for (const char* const pattern : patterns) {
    if (const auto values = ValuesIn(english, pattern)) {
      return WithValues(Translated(pattern), *values);
    }
  }
  return std::string(english);
}

}  // namespace tavcc
