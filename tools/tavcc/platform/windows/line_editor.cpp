// A console edits its lines itself, remembers those of its window and calls them back with the
// arrow keys and F7; Tab is asked of it.
#include "tavcc/platform/line_editor.h"

#include <windows.h>

#include <utility>

#include "tavcc/output.h"
#include "tavcc/platform/windows/wide_text.h"

namespace tavcc {
namespace {

constexpr DWORD kMostTyped = 8000;   // of a line
constexpr wchar_t kControlZ = 0x1A;  // at its beginning: there are no more

// Ctrl-C ends the line, not the program, while this lives.
class LineInterrupt {
 public:
  LineInterrupt() { SetConsoleCtrlHandler(Ignore, TRUE); }
  LineInterrupt(const LineInterrupt&) = delete;
  LineInterrupt& operator=(const LineInterrupt&) = delete;
  ~LineInterrupt() { SetConsoleCtrlHandler(Ignore, FALSE); }

 private:
  static BOOL WINAPI Ignore(DWORD event) { return event == CTRL_C_EVENT; }
};

struct Typed {
  enum class End { kLine, kTab, kEnd, kInterrupted };
  End end;
  std::string text;  // as far as the cursor for Tab
};

// Goes on with a line of which `begin` stands on the console already.
Typed ReadFromConsole(const std::string& begin) {
  const std::wstring wide = ToWide(begin);
  std::wstring buffer = wide;
  buffer.resize(kMostTyped);
  CONSOLE_READCONSOLE_CONTROL control = {};
  control.nLength = sizeof control;
  control.nInitialChars = static_cast<ULONG>(wide.size());
  control.dwCtrlWakeupMask = 1U << L'\t';
  DWORD units = 0;
  SetLastError(0);
  const BOOL read =
      ReadConsoleW(GetStdHandle(STD_INPUT_HANDLE), buffer.data(), kMostTyped, &units, &control);
  if (GetLastError() == ERROR_OPERATION_ABORTED) return {Typed::End::kInterrupted, {}};
  buffer.resize(units);
  if (read == 0 || buffer.empty() || buffer.front() == kControlZ) return {Typed::End::kEnd, {}};
  if (buffer.ends_with(L'\n')) {
    buffer.resize(buffer.find_last_not_of(L"\r\n") + 1);
    return {Typed::End::kLine, FromWide(buffer)};
  }
  // What stands behind the cursor is lost, as in the command prompt.
  return {Typed::End::kTab, FromWide(buffer.substr(0, buffer.find(L'\t')))};
}

}  // namespace

struct LineEditor::State {
  Complete complete;

  std::string CompleteLine(const std::string& prompt, const std::string& typed) const;
};

// The line with its last word completed, and the console made to show it.
std::string LineEditor::State::CompleteLine(const std::string& prompt,
                                            const std::string& typed) const {
  const Completions completions = complete(typed);
  if (completions.words.empty()) {
    Print("\a");
    return typed;
  }
  const std::string word = CompletedWord(completions);
  if (completions.begin + word.size() <= typed.size()) {
    Print("\n" + CompletionList(completions) + prompt + typed);
    return typed;
  }
  const std::string line = typed.substr(0, completions.begin) + word;
  Print(line.starts_with(typed) ? line.substr(typed.size()) : "\n" + prompt + line);
  return line;
}

LineEditor::LineEditor(std::string, Complete complete)
    : state_(std::make_unique<State>(State{std::move(complete)})) {}

LineEditor::~LineEditor() = default;

LineEditor::Read LineEditor::ReadLine(const std::string& prompt, std::string& line) {
  const LineInterrupt interrupt;
  Print(prompt);
  for (line.clear();;) {
    const Typed typed = ReadFromConsole(line);
    switch (typed.end) {
      case Typed::End::kTab:
        line = state_->CompleteLine(prompt, typed.text);
        break;
      case Typed::End::kLine:
        line = typed.text;
        return Read::kLine;
      case Typed::End::kEnd:
        return Read::kEnd;
      case Typed::End::kInterrupted:
        return Read::kInterrupted;
    }
  }
}

void LineEditor::Remember(const std::string&) {}

std::string HistoryFile() {
  return "";
}

}  // namespace tavcc
