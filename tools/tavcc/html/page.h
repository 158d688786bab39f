// A page of HTML that stands by itself: one file, its style inside, nothing from a network, no
// script.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tavcc/html/writer.h"

namespace tavcc {

// The whole page, in the language of the process. Its title is its first heading too; `body` writes
// what stands below it.
std::string HtmlPage(std::string_view title, const std::function<void(HtmlWriter&)>& body);

// "h2" for 2.
std::string_view HeadingTag(int level);

// "passed", "refused", "failed", "not asked": the word, in the language and in its colour.
void WriteMark(HtmlWriter& html, std::string_view word);

// The figures that a page begins with: labels and numbers, side by side.
using Figures = std::vector<std::pair<std::string, std::string>>;
void WriteFigures(HtmlWriter& html, const Figures& figures);

// "12.3 ms", from a second on "1.23 s".
std::string DurationText(double milliseconds);

}  // namespace tavcc
