// How the last word of a typed line is completed, whatever edits the line.
#include <algorithm>

#include "tavcc/platform/line_editor.h"

namespace tavcc {

std::string CompletedWord(const Completions& completions) {
  if (completions.words.size() == 1) return completions.words.front() + " ";
  std::string common = completions.words.front();
  for (const std::string& word : completions.words) {
    const auto end = std::ranges::mismatch(common, word).in1;
    common.erase(end, common.end());
  }
  return common;
}

std::string CompletionList(const Completions& completions) {
  std::string list;
  for (const std::string& word : completions.words) list += word + "  ";
  return list + "\n";
}

}  // namespace tavcc
