#include "scenario/word_diff.h"

#include <vector>

#include "foundation/utf8.h"
#include "scenario/alignment.h"

namespace tavcc {
namespace {

// Beyond this many words on a side, what differs is shown as one piece.
constexpr size_t kMostWords = 2000;

bool IsWordByte(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

// Names and numbers whole; of all else each character is a word.
std::vector<std::string_view> Words(std::string_view text) {
  std::vector<std::string_view> words;
  for (size_t at = 0; at < text.size();) {
    size_t end = at + 1;
    if (IsWordByte(text[at])) {
      while (end < text.size() && IsWordByte(text[end])) ++end;
    } else if (text.substr(at, 2) == "\r\n") {
      ++end;
    } else {
      while (end < text.size() && IsContinuationByte(text[end])) ++end;
    }
    words.push_back(text.substr(at, end - at));
    at = end;
  }
  return words;
}

std::string Shown(std::string_view text) {
  std::string shown;
  for (const char c : text) {
    if (c == '\r') {
      shown += "\\r";
    } else if (c == '\n') {
      shown += "\\n\n";
    } else {
      shown += c;
    }
  }
  return shown;
}

class Diff {
 public:
  void Both(std::string_view word) {
    Flush();
    text_ += Shown(word);
  }
  void First(std::string_view word) { first_ += word; }
  void Second(std::string_view word) { second_ += word; }
  std::string Text() {
    Flush();
    return std::move(text_);
  }

 private:
  void Flush() {
    if (!first_.empty()) text_ += "[-" + Shown(first_) + "-]";
    if (!second_.empty()) text_ += "{+" + Shown(second_) + "+}";
    first_.clear();
    second_.clear();
  }

  std::string text_, first_, second_;
};

}  // namespace

std::string WordDiff(std::string_view first, std::string_view second) {
  const std::vector<std::string_view> a = Words(first), b = Words(second);
  Diff diff;
  if (a.size() > kMostWords || b.size() > kMostWords) {
    diff.First(first);
    diff.Second(second);
    return diff.Text();
  }
  const auto same = [&](size_t i, size_t j) { return a[i] == b[j]; };
  for (const Aligned& pair : Align(a.size(), b.size(), same)) {
    if (pair.first && pair.second && same(*pair.first, *pair.second)) {
      diff.Both(a[*pair.first]);
      continue;
    }
    if (pair.first) diff.First(a[*pair.first]);
    if (pair.second) diff.Second(b[*pair.second]);
  }
  return diff.Text();
}

}  // namespace tavcc
