#include "tavcc/platform/line_editor.h"

#include <histedit.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <csignal>
#include <cwchar>
#include <filesystem>
#include <utility>

#include "foundation/utf8.h"
#include "tavcc/output.h"
#include "tavcc/platform/process.h"

namespace tavcc {
namespace {

constexpr int kMostLines = 2000;  // of the history

volatile std::sig_atomic_t interrupted = 0;
sigset_t signals_while_waiting;  // that are blocked while a byte is waited for

// SIGINT ends the line while this lives. It is blocked but where a byte is waited for: one that
// comes just before is not lost.
class LineInterrupt {
 public:
  LineInterrupt() {
    interrupted = 0;
    sigset_t mine;
    sigemptyset(&mine);
    sigaddset(&mine, SIGINT);
    pthread_sigmask(SIG_BLOCK, &mine, &blocked_earlier_);
    signals_while_waiting = blocked_earlier_;
    sigdelset(&signals_while_waiting, SIGINT);
    struct sigaction action = {};
    action.sa_handler = [](int) { interrupted = 1; };
    sigaction(SIGINT, &action, &earlier_);
  }
  LineInterrupt(const LineInterrupt&) = delete;
  LineInterrupt& operator=(const LineInterrupt&) = delete;
  ~LineInterrupt() {
    sigaction(SIGINT, &earlier_, nullptr);
    pthread_sigmask(SIG_SETMASK, &blocked_earlier_, nullptr);
  }

 private:
  struct sigaction earlier_ = {};
  sigset_t blocked_earlier_ = {};
};

// The next byte of the terminal; -1 at its end, and after Ctrl-C.
int ReadByte() {
  pollfd terminal = {.fd = STDIN_FILENO, .events = POLLIN, .revents = 0};
  while (ppoll(&terminal, 1, nullptr, &signals_while_waiting) < 0) {
    if (errno != EINTR || interrupted != 0) return -1;
  }
  unsigned char byte = 0;
  return read(STDIN_FILENO, &byte, 1) == 1 ? byte : -1;
}

// The next character, UTF-8 whatever the locale: the library's own way gives up the whole shell
// when a signal comes.
int ReadCharacter(EditLine*, wchar_t* character) {
  const int lead = ReadByte();
  if (lead < 0) return interrupted != 0 ? -1 : 0;
  std::string bytes(1, static_cast<char>(lead));
  while (bytes.size() < SizeByLead(bytes.front())) {
    const int byte = ReadByte();
    if (byte < 0) return 0;
    bytes += static_cast<char>(byte);
  }
  const Utf8Character read = CharacterAt(bytes, 0);
  *character = static_cast<wchar_t>(read.size > 0 ? read.code : kReplacementCharacter);
  return 1;
}

// Without a locale of UTF-8 the library shows nothing beyond ASCII.
void UseUtf8() {
  std::setlocale(LC_CTYPE, "");
  if (MB_CUR_MAX == 1) std::setlocale(LC_CTYPE, "C.UTF-8");
}

}  // namespace

struct LineEditor::State {
  std::string file;
  Complete complete;
  std::string prompt;
  History* history = nullptr;
  EditLine* editor = nullptr;

  static State& Of(EditLine* line) {
    void* data = nullptr;
    el_get(line, EL_CLIENTDATA, &data);
    return *static_cast<State*>(data);
  }
  unsigned char CompleteWord();
};

// One word is put in; of several what they begin with, and when that is there already, they are
// listed.
unsigned char LineEditor::State::CompleteWord() {
  const LineInfo* const line = el_line(editor);
  const std::string before(line->buffer, line->cursor);
  const Completions completions = complete(before);
  if (completions.words.empty()) return CC_REFRESH_BEEP;
  const std::string word = CompletedWord(completions);
  const std::string typed = before.substr(completions.begin);
  if (word.size() > typed.size()) {
    el_deletestr(editor, static_cast<int>(CharacterCount(typed)));
    el_insertstr(editor, word.c_str());
    return CC_REFRESH;
  }
  Print("\n" + CompletionList(completions));
  return CC_REDISPLAY;
}

LineEditor::LineEditor(std::string history_file, Complete complete)
    : state_(std::make_unique<State>()) {
  UseUtf8();
  state_->file = std::move(history_file);
  state_->complete = std::move(complete);
  state_->history = history_init();
  HistEvent event;
  history(state_->history, &event, H_SETSIZE, kMostLines);
  history(state_->history, &event, H_SETUNIQUE, 1);
  if (!state_->file.empty()) history(state_->history, &event, H_LOAD, state_->file.c_str());
  EditLine* const editor = el_init("tavcc", stdin, stdout, stderr);
  state_->editor = editor;
  el_set(editor, EL_CLIENTDATA, state_.get());
  el_set(
      editor, EL_PROMPT, +[](EditLine* line) { return State::Of(line).prompt.data(); });
  el_set(editor, EL_HIST, history, state_->history);
  el_set(editor, EL_EDITOR, "emacs");
  el_set(editor, EL_SIGNAL, 0);
  el_set(editor, EL_GETCFN, ReadCharacter);
  // By el_set() the library makes wide texts of the two, and never frees them.
  el_wset(
      editor, EL_ADDFN, L"complete", L"Complete the word",
      +[](EditLine* line, int) { return State::Of(line).CompleteWord(); });
  el_set(editor, EL_BIND, "^I", "complete", nullptr);
  el_set(editor, EL_BIND, "^R", "em-inc-search-prev", nullptr);
}

LineEditor::~LineEditor() {
  el_end(state_->editor);
  history_end(state_->history);
}

LineEditor::Read LineEditor::ReadLine(const std::string& prompt, std::string& line) {
  state_->prompt = prompt;
  const LineInterrupt interrupt;
  int count = 0;
  const char* const read = el_gets(state_->editor, &count);
  if (interrupted != 0) return Read::kInterrupted;
  if (read == nullptr || count <= 0) return Read::kEnd;
  line = read;
  if (line.ends_with('\n')) line.pop_back();
  return Read::kLine;
}

void LineEditor::Remember(const std::string& line) {
  HistEvent event;
  history(state_->history, &event, H_ENTER, line.c_str());
  if (state_->file.empty()) return;
  // What is typed may hold what others are not to read.
  const mode_t mask = umask(S_IRWXG | S_IRWXO);
  history(state_->history, &event, H_SAVE, state_->file.c_str());
  umask(mask);
}

std::string HistoryFile() {
  namespace fs = std::filesystem;
  const auto variable = [](const char* name) { return EnvironmentVariable(name).value_or(""); };
  fs::path folder = variable("XDG_STATE_HOME");
  if (folder.empty() && !variable("HOME").empty()) folder = variable("HOME") + "/.local/state";
  if (folder.empty()) return "";
  folder /= "tavcc";
  std::error_code problem;
  fs::create_directories(folder, problem);
  return problem ? "" : (folder / "history").string();
}

}  // namespace tavcc
