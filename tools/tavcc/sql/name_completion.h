// What a word of a batch, or of a command of the shell, may go on as.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/batch_session.h"
#include "tavcc/platform/line_editor.h"

namespace tavcc {

class NameCompletion {
 public:
  // `commands`: those of the shell, with their points.
  NameCompletion(BatchSession& session, std::vector<std::string> commands)
      : session_(session), commands_(std::move(commands)) {}

  // `pending`: the lines of the batch above the one at hand. In a batch: tables and views, the
  // columns of those that the batch names, and reserved words, in the letter case in which the word
  // is begun.
  Completions Complete(std::string_view pending, std::string_view before);
  // A batch has run: the names may be others.
  void Forget();

 private:
  const std::vector<std::string>& Tables();
  const std::vector<std::string>& ColumnsOf(const std::string& table);
  Completions CompleteCommand(std::string_view before);

  BatchSession& session_;
  const std::vector<std::string> commands_;
  std::optional<std::vector<std::string>> tables_;
  std::map<std::string, std::vector<std::string>> columns_;
};

}  // namespace tavcc
