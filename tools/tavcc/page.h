// A page of HTML that stands by itself: one file, its style inside, nothing from a network, light
// or dark as the reader's system is.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tavcc {

// The text as HTML shows it.
std::string Escaped(std::string_view text);

// A table; numbers stand to the right.
std::string HtmlTable(const std::vector<std::string>& header,
                      const std::vector<std::vector<std::string>>& rows);

// The whole page. `title` is text, `body` is HTML.
std::string HtmlPage(std::string_view title, std::string_view body);

}  // namespace tavcc
