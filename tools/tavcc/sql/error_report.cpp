#include "tavcc/sql/error_report.h"

#include <fmt/core.h>

#include <algorithm>
#include <string_view>

#include "foundation/utf8.h"
#include "tavcc/table.h"

namespace tavcc {
namespace {

constexpr std::string_view kIndent = "  ";
// Bytes of a long line that are shown before what it is about, and behind.
constexpr size_t kBefore = 60, kBehind = 60;

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
  const std::string head = fmt::format("{}{}: {}", kIndent, found.place, before);
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

std::string ErrorText(const BatchMessage& message, const Batch& batch) {
  std::string text = Header(message) + "\n" + message.text + "\n";
  if (const auto place = FindPlace(message, batch)) text += PlaceText(*place);
  return text;
}

}  // namespace tavcc
