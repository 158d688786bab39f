#include "tavcc/sql/name_completion.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <set>

#include "embedded/syntax/keywords.h"
#include "embedded/syntax/scanner.h"
#include "foundation/error.h"
#include "foundation/file_path.h"
#include "foundation/text.h"
#include "tavcc/sql/row_format.h"
#include "tavcc/sql/words.h"

namespace tavcc {
namespace {

bool BeginsWith(std::string_view word, std::string_view begin) {
  return word.size() >= begin.size() && EqualsIgnoringCase(word.substr(0, begin.size()), begin);
}

// The words that go on from `begin`.
void AddMatching(const std::vector<std::string>& words, std::string_view begin,
                 std::set<std::string>& found) {
  for (const std::string& word : words) {
    if (BeginsWith(word, begin)) found.insert(word);
  }
}

std::vector<std::string> ReservedWords(bool lower_case) {
  std::vector<std::string> words;
  const auto add = [&](std::string_view word) {
    words.push_back(lower_case ? LowerCase(word) : std::string(word));
  };
#define TAVCC_ADD_WORD(word) add(#word);
  TAVCC_SQL_RESERVED_WORDS(TAVCC_ADD_WORD)
#undef TAVCC_ADD_WORD
  add("GO");
  return words;
}

// The files that a path may go on as; a folder has a slash behind it.
std::vector<std::string> Files(const std::string& begin) {
  namespace fs = std::filesystem;
  const size_t slash = begin.rfind('/');
  const std::string folder = slash == std::string::npos ? "" : begin.substr(0, slash + 1);
  std::vector<std::string> files;
  std::error_code problem;
  for (const auto& entry : fs::directory_iterator(PathOf(folder.empty() ? "." : folder), problem)) {
    const std::string name = folder + PathText(entry.path().filename());
    if (name.starts_with(begin)) files.push_back(name + (entry.is_directory(problem) ? "/" : ""));
  }
  return files;
}

}  // namespace

void NameCompletion::Forget() {
  tables_.reset();
  columns_.clear();
}

const std::vector<std::string>& NameCompletion::Tables() {
  if (!tables_) {
    tables_.emplace();
    try {
      for (const SchemaObject& object : session_.Objects()) tables_->push_back(object.name);
    } catch (const AutomationError&) {
      // Then nothing is completed.
    }
  }
  return *tables_;
}

const std::vector<std::string>& NameCompletion::ColumnsOf(const std::string& table) {
  const auto [found, is_new] = columns_.try_emplace(table);
  if (is_new) {
    try {
      found->second = session_.Columns(table);
    } catch (const AutomationError&) {
      // As above.
    }
  }
  return found->second;
}

Completions NameCompletion::Complete(std::string_view pending, std::string_view before) {
  if (pending.empty() && before.starts_with('.')) return CompleteCommand(before);
  Completions completions{before.size(), {}};
  while (completions.begin > 0 && IsPartOfWord(before[completions.begin - 1])) --completions.begin;
  const std::string_view word = before.substr(completions.begin);
  const bool qualified = completions.begin > 0 && before[completions.begin - 1] == '.';
  std::set<std::string> found;
  // A name behind a point is a column, of whichever table the batch names.
  const std::string batch = Cat(pending, "\n", before.substr(0, completions.begin));
  sql::Scanner scanner(batch);
  for (sql::RawToken token = scanner.Next(); token.kind != sql::TokenKind::kEnd;
       token = scanner.Next()) {
    if (token.kind != sql::TokenKind::kWord) continue;
    const std::string name = batch.substr(token.begin, token.end - token.begin);
    const bool is_table = std::ranges::any_of(
        Tables(), [&](const std::string& table) { return EqualsIgnoringCase(table, name); });
    if (is_table) AddMatching(ColumnsOf(name), word, found);
  }
  if (!qualified) {
    AddMatching(Tables(), word, found);
    const bool lower_case = !word.empty() && std::islower(static_cast<unsigned char>(word[0])) != 0;
    if (!word.empty()) AddMatching(ReservedWords(lower_case), word, found);
  }
  completions.words.assign(found.begin(), found.end());
  return completions;
}

Completions NameCompletion::CompleteCommand(std::string_view before) {
  const size_t blank = before.find(' ');
  std::set<std::string> found;
  if (blank == std::string_view::npos) {
    AddMatching(commands_, before, found);
    return {0, {found.begin(), found.end()}};
  }
  const std::string_view command = before.substr(0, blank);
  const size_t begin = before.find_last_of(' ') + 1;
  const std::string word(before.substr(begin));
  if (command == ".mode") AddMatching(OutputModeNames(), word, found);
  if (command == ".timer") AddMatching({"on", "off"}, word, found);
  if (command == ".schema" || command == ".tables") AddMatching(Tables(), word, found);
  if (command == ".read") AddMatching(Files(word), word, found);
  return {begin, {found.begin(), found.end()}};
}

}  // namespace tavcc
