#include "tavcc/html/page.h"

#include <fmt/core.h>

#include <algorithm>
#include <ctime>

#include "language/language.h"
#include "tavcc/html/style_sheet.h"

namespace tavcc {
namespace {

void WriteHead(HtmlWriter& html, std::string_view title) {
  const auto head = html.Open("head");
  html.EndLine();
  html.Void("meta", {{"charset", "utf-8"}});
  html.Void("meta", {{"name", "viewport"}, {"content", "width=device-width, initial-scale=1"}});
  // Whatever a database says: a browser fetches nothing and runs nothing for this page.
  html.Void("meta", {{"http-equiv", "Content-Security-Policy"},
                     {"content", "default-src 'none'; style-src 'unsafe-inline'"}});
  html.Leaf("title", title);
  html.EndLine();
  html.Style(PageStyle());
}

void WriteFoot(HtmlWriter& html) {
  const auto footer = html.Open("footer");
  const std::time_t now = std::time(nullptr);
  char minute[20];
  std::strftime(minute, sizeof(minute), "%Y-%m-%d %H:%M", std::localtime(&now));
  html.Text(fmt::format("tavcc {}, {}", TAVCC_VERSION, minute));
}

}  // namespace

std::string HtmlPage(std::string_view title, const std::function<void(HtmlWriter&)>& body) {
  HtmlWriter html;
  {
    const auto root =
        html.Open("html", {{"lang", CurrentLanguage() == Language::kChinese ? "zh-CN" : "en"}});
    WriteHead(html, title);
    html.EndLine();
    const auto visible = html.Open("body");
    html.EndLine();
    {
      const auto main = html.Open("main");
      html.Leaf("h1", title);
      html.EndLine();
      body(html);
    }
    WriteFoot(html);
  }
  return "<!DOCTYPE html>\n" + html.html() + "\n";
}

std::string_view HeadingTag(int level) {
  constexpr std::string_view kTags[] = {"h1", "h2", "h3", "h4", "h5", "h6"};
  return kTags[level - 1];
}

void WriteMark(HtmlWriter& html, std::string_view word) {
  std::string name(word);
  std::ranges::replace(name, ' ', '-');
  html.Leaf("span", Translated(word), {{"class", "mark " + name}});
}

void WriteFigures(HtmlWriter& html, const Figures& figures) {
  const auto list = html.Open("dl", {{"class", "figures"}});
  for (const auto& [label, figure] : figures) {
    const auto pair = html.Open("div");
    html.Leaf("dt", label);
    html.Leaf("dd", figure);
  }
}

std::string DurationText(double milliseconds) {
  constexpr double kSecond = 1000;
  if (milliseconds < kSecond) return fmt::format("{:.1f} ms", milliseconds);
  return fmt::format("{:.2f} s", milliseconds / kSecond);
}

}  // namespace tavcc
