// Lines that a person types: edited, remembered, completed. On Unix with libedit (BSD's, kept with
// NetBSD), on Windows with the console's own editing.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tavcc {

// What the last word of a line may go on as.
struct Completions {
  size_t begin = 0;  // of the word, in bytes of the line
  std::vector<std::string> words;
};

// What the word becomes: its one way to go on with a blank behind it, or as far as all go together.
std::string CompletedWord(const Completions& completions);
// All ways, as a line.
std::string CompletionList(const Completions& completions);

class LineEditor {
 public:
  // `complete`: asked with what stands before the cursor when Tab is pressed.
  using Complete = std::function<Completions(std::string_view before)>;

  // The history of earlier days is read from the file, which need not be there; an empty name keeps
  // none.
  LineEditor(std::string history_file, Complete complete);
  LineEditor(const LineEditor&) = delete;
  LineEditor& operator=(const LineEditor&) = delete;
  ~LineEditor();

  enum class Read { kLine, kEnd, kInterrupted };
  // Reads a line, without its end, from the terminal.
  Read ReadLine(const std::string& prompt, std::string& line);
  // Adds a line to the history, and to its file.
  void Remember(const std::string& line);

 private:
  struct State;
  const std::unique_ptr<State> state_;
};

// Where the history is kept: $XDG_STATE_HOME/tavcc/history, or in ~/.local/state; empty where there
// is no home, and on Windows, whose consoles keep it themselves. The folder is made.
std::string HistoryFile();

}  // namespace tavcc
