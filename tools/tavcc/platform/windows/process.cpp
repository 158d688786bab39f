#include "tavcc/platform/process.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>
// Behind windows.h, whose words it is written in.
#include <shellapi.h>

#include <cstdio>
#include <cstdlib>
#include <memory>

#include "tavcc/platform/streams.h"
#include "tavcc/platform/windows/wide_text.h"

namespace tavcc {

void PrepareProcess() {
  // What is typed ends its lines as the C library does it; a file or a pipe is read as it is.
  if (IsTerminal(Stream::kInput)) {
    SetConsoleCP(CP_UTF8);
  } else {
    _setmode(_fileno(stdin), _O_BINARY);
  }
}

// The words of `main` have lost what the system's code page does not know.
std::vector<std::string> CommandLineWords(int, const char* const*) {
  int count = 0;
  const std::unique_ptr<wchar_t*, decltype(&LocalFree)> words(
      CommandLineToArgvW(GetCommandLineW(), &count), LocalFree);
  std::vector<std::string> utf8;
  for (int i = 1; i < count; ++i) utf8.push_back(FromWide(words.get()[i]));
  return utf8;
}

std::optional<std::string> EnvironmentVariable(const std::string& name) {
  const wchar_t* const value = _wgetenv(ToWide(name).c_str());
  return value == nullptr ? std::nullopt : std::optional<std::string>(FromWide(value));
}

std::vector<std::string> UserLanguages() {
  ULONG count = 0, length = 0;
  if (!GetUserPreferredUILanguages(MUI_LANGUAGE_NAME, &count, nullptr, &length)) return {};
  std::wstring names(length,
                     L'\0');  // one behind the other, each with a zero, and a zero behind all
  if (!GetUserPreferredUILanguages(MUI_LANGUAGE_NAME, &count, names.data(), &length)) return {};
  std::vector<std::string> languages;
  for (size_t at = 0; at < names.size() && names[at] != L'\0'; at = names.find(L'\0', at) + 1) {
    languages.push_back(FromWide(names.c_str() + at));
  }
  return languages;
}

}  // namespace tavcc
