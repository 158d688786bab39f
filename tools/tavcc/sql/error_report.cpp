#include "tavcc/sql/error_report.h"

#include <fmt/core.h>

#include <algorithm>
#include <cctype>
#include <string_view>
#include <vector>

#include "foundation/utf8.h"
#include "tavcc/sql/words.h"
#include "tavcc/table.h"

namespace tavcc {
namespace {

constexpr std::string_view kIndent = "  ";
// Bytes of a long line that are shown before what it is about, and behind.
constexpr size_t kBefore = 60, kBehind = 60;

// What stands between single or double quotation marks: names and words of the text.
std::vector<std::string> QuotedWords(std::string_view text) {
  std::vector<std::string> words;
  for (size_t at = 0; (at = text.find_first_of("'\"", at)) != std::string_view::npos;) {
    const size_t end = text.find(text[at], at + 1);
    if (end == std::string_view::npos) break;
    if (end > at + 1) words.emplace_back(text.substr(at + 1, end - at - 1));
    at = end + 1;
  }
  return words;
}

// Where the word stands by itself, without regard to letter case of ASCII.
size_t FindWord(std::string_view line, std::string_view word) {
  const auto same = [](char a, char b) {
    return std::tolower(static_cast<unsigned char>(a)) ==
           std::tolower(static_cast<unsigned char>(b));
  };
  for (size_t from = 0; from + word.size() <= line.size();) {
    const auto found = std::search(line.begin() + static_cast<std::ptrdiff_t>(from), line.end(),
                                   word.begin(), word.end(), same);
    if (found == line.end()) return std::string_view::npos;
    const auto at = static_cast<size_t>(found - line.begin());
    const size_t end = at + word.size();
    const bool begins = at == 0 || !IsPartOfWord(line[at - 1]) || !IsPartOfWord(word.front());
    const bool ends = end == line.size() || !IsPartOfWord(line[end]) || !IsPartOfWord(word.back());
    if (begins && ends) return at;
    from = at + 1;
  }
  return std::string_view::npos;
}

std::string WithoutTabs(std::string text) {
  std::ranges::replace_if(
      text, [](char c) { return static_cast<unsigned char>(c) < 0x20; }, ' ');
  return text;
}

// Not in the middle of a character.
size_t CharacterStart(std::string_view text, size_t at) {
  while (at > 0 && at < text.size() && IsContinuationByte(text[at])) --at;
  return std::min(at, text.size());
}

std::string PlaceText(const ErrorPlace& found) {
  const std::string line = WithoutTabs(found.line);
  const size_t begin = found.column > kBefore ? CharacterStart(line, found.column - kBefore) : 0;
  const size_t end = CharacterStart(line, std::min(line.size(), found.column + kBehind));
  const std::string before = (begin > 0 ? "…" : "") + line.substr(begin, found.column - begin);
  const std::string behind = line.substr(found.column, end - found.column);
  const std::string head = fmt::format("{}{}: {}", kIndent, found.place.ToText(), before);
  return fmt::format("{}{}{}\n{}^\n", head, behind, end < line.size() ? "…" : "",
                     std::string(DisplayWidth(head), ' '));
}

std::string Header(const BatchMessage& message) {
  std::string text = message.number > 0 ? fmt::format("Msg {}", message.number) : "Error";
  if (message.severity > 0) text += fmt::format(", Level {}", message.severity);
  if (message.state > 0) text += fmt::format(", State {}", message.state);
  if (!message.procedure.empty()) text += ", Procedure " + message.procedure;
  if (message.line > 0) text += fmt::format(", Line {}", message.line);
  return text;
}

}  // namespace

std::optional<ErrorPlace> FindPlace(const BatchMessage& message, const Batch& batch) {
  if (message.line < 1 || !message.procedure.empty()) return std::nullopt;
  const auto given = static_cast<size_t>(message.line - 1);
  if (given >= batch.lines.size()) return std::nullopt;
  for (const std::string& word : QuotedWords(message.text)) {
    for (size_t i = given; i < batch.lines.size(); ++i) {
      const size_t column = FindWord(batch.lines[i], word);
      if (column != std::string::npos) return {{batch.places[i], batch.lines[i], column}};
    }
  }
  const std::string& line = batch.lines[given];
  const size_t first = line.find_first_not_of(" \t");
  if (first == std::string::npos) return std::nullopt;
  return {{batch.places[given], line, first}};
}

std::string ErrorText(const BatchMessage& message, const Batch& batch) {
  std::string text = Header(message) + "\n" + message.text + "\n";
  if (const auto place = FindPlace(message, batch)) text += PlaceText(*place);
  return text;
}

}  // namespace tavcc
