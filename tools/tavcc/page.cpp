#include "tavcc/page.h"

#include <fmt/core.h>

namespace tavcc {
namespace {

constexpr std::string_view kStyle = R"css(
:root { color-scheme: light dark;
  --paper: #fbfbf9; --ink: #1d2126; --faint: #687078; --line: #dcdfe2; --box: #f1f2f0;
  --passed: #2b7a4b; --refused: #b3261e; --failed: #8a5a00; --refused-box: #fbeceb; }
@media (prefers-color-scheme: dark) { :root {
  --paper: #16191c; --ink: #e4e6e8; --faint: #98a1a8; --line: #32383d; --box: #1f2428;
  --passed: #6fcf97; --refused: #ff8a80; --failed: #f2c14e; --refused-box: #33201f; } }
* { box-sizing: border-box; }
body { margin: 0 auto; max-width: 62rem; padding: 2rem 1.25rem 4rem; background: var(--paper);
  color: var(--ink); font: 15px/1.55 system-ui, "Noto Sans CJK SC", "Microsoft YaHei", sans-serif; }
h1 { font-size: 1.5rem; line-height: 1.25; margin: 0 0 .25rem; }
h2 { font-size: 1.05rem; margin: 2rem 0 .5rem; }
h3 { font-size: .95rem; margin: 1.25rem 0 .35rem; }
p { margin: .35rem 0; }
article + article { margin-top: 3.5rem; padding-top: 2.5rem; border-top: 1px solid var(--line); }
nav { display: flex; flex-wrap: wrap; gap: .4rem 1rem; margin-bottom: 2rem; }
a { color: inherit; }
.faint { color: var(--faint); }
.passed { color: var(--passed); } .refused { color: var(--refused); }
.failed { color: var(--failed); } .not-asked { color: var(--faint); }
.verdict { font-weight: 600; }
.why { background: var(--refused-box); border-left: 3px solid var(--refused); margin: 1rem 0;
  padding: .6rem .9rem; }
.why .message { font-size: 1.1rem; font-weight: 600; }
.ladder { list-style: none; margin: 0; padding: 0; border-top: 1px solid var(--line); }
.ladder > li { border-bottom: 1px solid var(--line); }
summary, .plain { display: grid; grid-template-columns: 5.5rem 15rem 1fr; gap: .75rem;
  padding: .35rem .25rem; }
summary { cursor: pointer; list-style: none; }
summary::-webkit-details-marker { display: none; }
summary:hover { background: var(--box); }
.details { margin: 0 0 .75rem 6.5rem; }
dl { display: grid; grid-template-columns: 6rem 1fr; gap: .25rem .75rem; margin: .35rem 0; }
dt { color: var(--faint); } dd { margin: 0; min-width: 0; }
code, pre { font: 12.5px/1.5 ui-monospace, "Cascadia Mono", Consolas, "Noto Sans Mono CJK SC",
  monospace; }
pre { background: var(--box); margin: 0; max-height: 20rem; overflow: auto; padding: .6rem .75rem;
  white-space: pre-wrap; overflow-wrap: anywhere; }
.scroll { overflow-x: auto; }
table { border-collapse: collapse; font-size: 13.5px; }
th, td { border-bottom: 1px solid var(--line); padding: .2rem .9rem .2rem 0; text-align: left;
  vertical-align: top; white-space: nowrap; }
th { color: var(--faint); font-weight: 500; }
td.number { font-variant-numeric: tabular-nums; text-align: right; }
@media (max-width: 40rem) { summary, .plain { grid-template-columns: 5rem 1fr; }
  summary > :last-child, .plain > :last-child { grid-column: 2; } .details { margin-left: .5rem; } }
@media print { body { max-width: none; } pre { max-height: none; } }
)css";

bool IsNumber(std::string_view cell) {
  return !cell.empty() && cell.find_first_not_of("+-.0123456789") == std::string_view::npos;
}

}  // namespace

std::string Escaped(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    switch (c) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      default:
        escaped += c;
    }
  }
  return escaped;
}

std::string HtmlTable(const std::vector<std::string>& header,
                      const std::vector<std::vector<std::string>>& rows) {
  std::string html = "<div class=\"scroll\"><table><thead><tr>";
  for (const std::string& cell : header) html += fmt::format("<th>{}</th>", Escaped(cell));
  html += "</tr></thead><tbody>\n";
  for (const auto& row : rows) {
    html += "<tr>";
    for (const std::string& cell : row) {
      html +=
          fmt::format("<td{}>{}</td>", IsNumber(cell) ? " class=\"number\"" : "", Escaped(cell));
    }
    html += "</tr>\n";
  }
  return html + "</tbody></table></div>\n";
}

std::string HtmlPage(std::string_view title, std::string_view body) {
  return fmt::format(
      "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
      "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
      "<title>{}</title>\n<style>{}</style>\n</head>\n<body>\n{}</body>\n</html>\n",
      Escaped(title), kStyle, body);
}

}  // namespace tavcc
