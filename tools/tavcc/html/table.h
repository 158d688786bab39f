// Tables of texts, and lists of terms.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "tavcc/html/writer.h"

namespace tavcc {

// A table; numbers stand to the right.
void WriteTable(HtmlWriter& html, std::string_view caption, const std::vector<std::string>& header,
                const std::vector<std::vector<std::string>>& rows);

// A cell of one; a number stands to the right.
void WriteCell(HtmlWriter& html, std::string_view text);

// A term and what is said of it; nothing where the text is empty. Within a <dl>.
void WriteTerm(HtmlWriter& html, std::string_view term, std::string_view text);
void WriteTerm(HtmlWriter& html, std::string_view term, const std::function<void()>& description);

// Code, as it is: a statement, the name of a method.
void WriteCode(HtmlWriter& html, std::string_view code);
void WriteCodeBlock(HtmlWriter& html, std::string_view code);

}  // namespace tavcc
