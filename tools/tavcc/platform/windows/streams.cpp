// A console is written to in UTF-16, so that its code page does not matter; anything else takes the
// bytes as they are.
#include "tavcc/platform/streams.h"

#include <windows.h>

#include <algorithm>

#include "tavcc/platform/windows/wide_text.h"

#ifndef ENABLE_VIRTUAL_TERMINAL_PROCESSING
#define ENABLE_VIRTUAL_TERMINAL_PROCESSING 0x0004
#endif

namespace tavcc {
namespace {

// Written at once: older consoles take no more.
constexpr size_t kMostWritten = 8000;
constexpr size_t kMostBytes = size_t{1} << 20;

HANDLE HandleOf(Stream stream) {
  switch (stream) {
    case Stream::kInput:
      return GetStdHandle(STD_INPUT_HANDLE);
    case Stream::kOutput:
      return GetStdHandle(STD_OUTPUT_HANDLE);
    case Stream::kErrors:
      break;
  }
  return GetStdHandle(STD_ERROR_HANDLE);
}

std::error_code LastError() {
  return {static_cast<int>(GetLastError()), std::system_category()};
}

// No further than a whole character.
size_t PieceOf(std::wstring_view text) {
  const size_t size = std::min(text.size(), kMostWritten);
  const bool split = size < text.size() && IS_HIGH_SURROGATE(text[size - 1]);
  return split ? size - 1 : size;
}

std::error_code WriteToConsole(HANDLE console, std::wstring_view text) {
  while (!text.empty()) {
    DWORD written = 0;
    const auto piece = static_cast<DWORD>(PieceOf(text));
    if (WriteConsoleW(console, text.data(), piece, &written, nullptr) == 0) return LastError();
    text.remove_prefix(written);
  }
  return {};
}

}  // namespace

bool IsTerminal(Stream stream) {
  DWORD mode = 0;
  return GetConsoleMode(HandleOf(stream), &mode) != 0;
}

bool ShowsEscapes(Stream stream) {
  DWORD mode = 0;
  const HANDLE console = HandleOf(stream);
  if (GetConsoleMode(console, &mode) == 0) return false;
  // Consoles before Windows 10 know no escapes and refuse the mode.
  return (mode & ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0 ||
         SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

std::error_code WriteAll(Stream stream, std::string_view text) {
  const HANDLE file = HandleOf(stream);
  if (IsTerminal(stream)) return WriteToConsole(file, ToWide(text));
  while (!text.empty()) {
    DWORD written = 0;
    const auto piece = static_cast<DWORD>(std::min(text.size(), kMostBytes));
    if (WriteFile(file, text.data(), piece, &written, nullptr) == 0) return LastError();
    if (written == 0) return std::make_error_code(std::errc::no_space_on_device);
    text.remove_prefix(written);
  }
  return {};
}

}  // namespace tavcc
