// The language of tavcc's own words. English texts stand where they are said, and are the keys of
// the other languages' words (zh.json). What rules and databases say is left as they say it.
#pragma once

#include <fmt/core.h>

#include <span>
#include <string>
#include <string_view>

namespace tavcc {

enum class Language { kEnglish, kChinese };

// Of this process, from now on; English until then. Not while other threads say something.
void SetLanguage(Language language);
Language CurrentLanguage();

// Sets what the last "--lang zh" or "--lang=zh" of a command line names; or else the first of
// LC_ALL, LC_MESSAGES and LANG that is set; or else the first of the user's languages ("zh-CN", the
// best one first) that there are words for. Any other name ("fr_FR"), or none, leaves English.
inline constexpr std::string_view kLanguageOption = "--lang";
void ChooseLanguage(std::span<const std::string> arguments,
                    std::span<const std::string> languages_of_user);

// The text in the language of the process; as it is where that has no words for it.
std::string Translated(std::string_view english);

// A text of a library, which is made of one of the patterns ("{}: {} is required") or of none: the
// first that fits is translated.
std::string TranslatedLike(std::string_view english, std::span<const char* const> patterns);

// For texts in tables, which are translated where they are used.
constexpr const char* Translatable(const char* english) {
  return english;
}

// A sentence with its values, in the language of the process.
template <class... T>
std::string Say(fmt::format_string<T...> english, T&&... values) {
  const fmt::string_view text = english;
  return fmt::vformat(Translated({text.data(), text.size()}), fmt::make_format_args(values...));
}

}  // namespace tavcc
