#include "embedded/script.h"

#include <algorithm>
#include <charconv>

#include "foundation/text.h"

namespace tavcc::sql {
namespace {

constexpr std::string_view kGo = "go";
constexpr std::string_view kVariable = "$(";

bool IsBlank(std::string_view text) {
  return text.find_first_not_of(kBlanks) == std::string_view::npos;
}

char ClosingOf(char opening) {
  switch (opening) {
    case '\'':
    case '"':
      return opening;
    case '[':
      return ']';
    default:
      return 0;
  }
}

}  // namespace

std::string_view WithoutBlanks(std::string_view text) {
  if (IsBlank(text)) return {};
  const size_t first = text.find_first_not_of(kBlanks);
  return text.substr(first, text.find_last_not_of(kBlanks) + 1 - first);
}

std::optional<int> BatchEnd(std::string_view line) {
  line = WithoutBlanks(line.substr(0, line.find("--")));
  if (line.size() < kGo.size() || !EqualsIgnoringCase(line.substr(0, kGo.size()), kGo)) {
    return std::nullopt;
  }
  const std::string_view behind = line.substr(kGo.size());
  if (behind.empty()) return 1;
  if (kBlanks.find(behind.front()) == std::string_view::npos) return std::nullopt;
  const std::string_view count = WithoutBlanks(behind);
  int times = 0;
  const auto end = std::from_chars(count.data(), count.data() + count.size(), times);
  return end.ec == std::errc() && end.ptr == count.data() + count.size() && times > 0 ? times : 0;
}

std::vector<size_t> ScriptLines::Read(std::string_view line) {
  std::vector<size_t> variables;
  for (size_t at = 0; at < line.size();) {
    const std::string_view rest = line.substr(at);
    if (comments_ > 0 || rest.starts_with("/*")) {
      at = ReadComment(line, at);
    } else if (closing_ != 0) {
      at = ReadQuotation(line, at, variables);
    } else if (rest.starts_with("--")) {
      break;
    } else {
      if (rest.starts_with(kVariable)) variables.push_back(at);
      closing_ = ClosingOf(line[at++]);
    }
  }
  return variables;
}

// To the end of the line, or behind the comment.
size_t ScriptLines::ReadComment(std::string_view line, size_t at) {
  while (at < line.size()) {
    const std::string_view rest = line.substr(at);
    const int step = rest.starts_with("/*") ? 1 : rest.starts_with("*/") ? -1 : 0;
    comments_ += step;
    at += step == 0 ? 1 : 2;
    if (comments_ == 0) break;
  }
  return at;
}

// To the end of the line, or behind the quotation. A doubled mark ends it and begins it again.
size_t ScriptLines::ReadQuotation(std::string_view line, size_t at,
                                  std::vector<size_t>& variables) {
  for (; at < line.size(); ++at) {
    if (line[at] == closing_) {
      closing_ = 0;
      return at + 1;
    }
    if (line.substr(at).starts_with(kVariable)) variables.push_back(at);
  }
  return at;
}

std::vector<ScriptBatch> SplitScript(std::string_view script) {
  std::vector<ScriptBatch> batches;
  ScriptLines lines;
  size_t batch = 0;
  int line = 1, batch_line = 1;
  const auto add = [&](size_t end, int times) {
    const std::string_view text = script.substr(batch, end - batch);
    if (!IsBlank(text)) batches.push_back({text, batch_line, times});
  };
  for (size_t at = 0; at < script.size(); ++line) {
    const size_t end = std::min(script.find('\n', at), script.size());
    const std::string_view text = script.substr(at, end - at);
    const int times = lines.IsOutside() ? BatchEnd(text).value_or(0) : 0;
    if (times > 0) {
      add(at, times);
      batch = std::min(end + 1, script.size());
      batch_line = line + 1;
    } else {
      lines.Read(text);
    }
    at = end + 1;
  }
  add(script.size(), 1);
  return batches;
}

}  // namespace tavcc::sql
