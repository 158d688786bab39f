#include "tavcc/html/table.h"

#include <algorithm>

namespace tavcc {
namespace {

bool IsNumber(std::string_view cell) {
  return cell.find_first_of("0123456789") != std::string_view::npos &&
         cell.find_first_not_of("+-.0123456789") == std::string_view::npos;
}

// Whether a column holds numbers and nothing else.
bool IsNumeric(const std::vector<std::vector<std::string>>& rows, size_t column) {
  return !rows.empty() && std::ranges::all_of(rows, [&](const std::vector<std::string>& row) {
    return column < row.size() && IsNumber(row[column]);
  });
}

}  // namespace

void WriteTable(HtmlWriter& html, std::string_view caption, const std::vector<std::string>& header,
                const std::vector<std::vector<std::string>>& rows) {
  const auto scroll = html.Open("div", {{"class", "scroll"}});
  const auto table = html.Open("table");
  html.Leaf("caption", caption);
  {
    const auto head = html.Open("thead");
    const auto row = html.Open("tr");
    for (size_t i = 0; i < header.size(); ++i) {
      html.Leaf("th", header[i], {{"scope", "col"}, {"class", IsNumeric(rows, i) ? "number" : ""}});
    }
  }
  html.EndLine();
  const auto body = html.Open("tbody");
  for (const auto& cells : rows) {
    const auto row = html.Open("tr");
    for (const std::string& cell : cells) WriteCell(html, cell);
    html.EndLine();
  }
}

void WriteCell(HtmlWriter& html, std::string_view text) {
  html.Leaf("td", text, {{"class", IsNumber(text) ? "number" : ""}});
}

void WriteTerm(HtmlWriter& html, std::string_view term, std::string_view text) {
  if (text.empty()) return;
  html.Leaf("dt", term);
  html.Leaf("dd", text);
  html.EndLine();
}

void WriteTerm(HtmlWriter& html, std::string_view term, const std::function<void()>& description) {
  html.Leaf("dt", term);
  const auto list = html.Open("dd");
  description();
}

void WriteCode(HtmlWriter& html, std::string_view code) {
  html.Leaf("code", code);
}

void WriteCodeBlock(HtmlWriter& html, std::string_view code) {
  const auto block = html.Open("pre");
  html.Leaf("code", code);
}

}  // namespace tavcc
