#include "tavcc/review.h"

#include <fmt/core.h>

#include <algorithm>
#include <iostream>
#include <sstream>
#include <vector>

#include "language/language.h"
#include "scenario/alignment.h"
#include "tavcc/output.h"
#include "tavcc/platform/process.h"
#include "tavcc/platform/streams.h"

namespace tavcc {
namespace {

constexpr const char* kRed = "\x1b[31m";
constexpr const char* kGreen = "\x1b[32m";
constexpr const char* kPlain = "\x1b[0m";
constexpr size_t kAround = 2;  // lines shown before and behind a change

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(std::move(line));
  return lines;
}

void ReplaceAll(std::string& text, std::string_view from, std::string_view to) {
  for (size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
    text.replace(at, from.size(), to);
  }
}

}  // namespace

std::string LineDiff(const std::string& before, const std::string& after, bool colour) {
  const std::vector<std::string> a = LinesOf(before), b = LinesOf(after);
  // What both begin and end with needs no alignment, which is quadratic.
  size_t head = 0;
  while (head < a.size() && head < b.size() && a[head] == b[head]) ++head;
  size_t tail = 0;
  while (tail < a.size() - head && tail < b.size() - head &&
         a[a.size() - 1 - tail] == b[b.size() - 1 - tail]) {
    ++tail;
  }
  struct Line {
    char mark;
    const std::string* text;
  };
  std::vector<Line> lines;
  for (size_t i = 0; i < head; ++i) lines.push_back({' ', &a[i]});
  const auto same = [&](size_t i, size_t j) { return a[head + i] == b[head + j]; };
  std::vector<Line> added;  // behind what was taken out at the same place
  const auto flush = [&] {
    lines.insert(lines.end(), added.begin(), added.end());
    added.clear();
  };
  for (const Aligned& pair : Align(a.size() - head - tail, b.size() - head - tail, same)) {
    if (pair.first && pair.second && same(*pair.first, *pair.second)) {
      flush();
      lines.push_back({' ', &a[head + *pair.first]});
      continue;
    }
    if (pair.first) lines.push_back({'-', &a[head + *pair.first]});
    if (pair.second) added.push_back({'+', &b[head + *pair.second]});
  }
  flush();
  for (size_t i = a.size() - tail; i < a.size(); ++i) lines.push_back({' ', &a[i]});

  std::string out;
  size_t shown = 0;  // lines shown or passed over so far
  for (size_t i = 0; i < lines.size(); ++i) {
    if (lines[i].mark == ' ') continue;
    const size_t from = std::max(shown, i < kAround ? 0 : i - kAround);
    if (from > shown) out += "  …\n";
    size_t until = i + 1;
    for (size_t k = i + 1; k < lines.size() && k <= until + kAround; ++k) {
      if (lines[k].mark != ' ') until = k + 1;
    }
    until = std::min(lines.size(), until + kAround);
    for (size_t k = from; k < until; ++k) {
      const bool changed = colour && lines[k].mark != ' ';
      out += fmt::format("{}{} {}{}\n", changed ? (lines[k].mark == '-' ? kRed : kGreen) : "",
                         lines[k].mark, *lines[k].text, changed ? kPlain : "");
    }
    shown = until;
    i = until - 1;
  }
  return out;
}

Decision AskForChange(const std::string& file, const std::string& before,
                      const std::string& after) {
  Print(fmt::format("{}\n{}", file, LineDiff(before, after, OutputHasColours())));
  for (;;) {
    Print(Say("Take this change? [y]es, [n]o, [q]uit: "));
    std::string answer;
    if (!std::getline(std::cin, answer)) {
      Print("\n");
      return Decision::kStop;
    }
    if (answer == "y" || answer == "yes") return Decision::kTake;
    if (answer == "n" || answer == "no") return Decision::kLeave;
    if (answer == "q" || answer == "quit") return Decision::kStop;
  }
}

bool OutputHasColours() {
  return ShowsEscapes(Stream::kOutput) && EnvironmentVariable("NO_COLOR").value_or("").empty();
}

std::string WithColours(const std::string& text) {
  std::string coloured = text;
  ReplaceAll(coloured, "[-", std::string(kRed) + "[-");
  ReplaceAll(coloured, "-]", std::string("-]") + kPlain);
  ReplaceAll(coloured, "{+", std::string(kGreen) + "{+");
  ReplaceAll(coloured, "+}", std::string("+}") + kPlain);
  return coloured;
}

}  // namespace tavcc
