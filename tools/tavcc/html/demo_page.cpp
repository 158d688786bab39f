#include "tavcc/html/demo_page.h"

#include <utility>

#include "language/language.h"
#include "tavcc/answer.h"
#include "tavcc/html/batch_page.h"
#include "tavcc/html/ladder.h"
#include "tavcc/html/page.h"
#include "tavcc/html/table.h"
#include "tavcc/html/timeline.h"

namespace tavcc {
namespace {

void WriteSection(HtmlWriter& html, const BatchReport& report, const char* anchor) {
  const auto section = html.Open("section", {{"id", anchor}});
  html.Leaf("h2", report.title);
  WriteBatch(html, report, anchor, 3);
}

std::vector<std::string> Labelled(std::string label, std::vector<std::string> cells) {
  cells.insert(cells.begin(), std::move(label));
  return cells;
}

void WriteRowOf(HtmlWriter& html, const DemoScene& scene) {
  if (scene.before.empty() && scene.after.empty()) return;
  std::vector<std::vector<std::string>> rows;
  if (scene.before == scene.after) {
    rows = {Labelled(Translated("unchanged"), scene.after)};
  } else {
    rows = {Labelled(Translated("before"), scene.before),
            Labelled(Translated("after"), scene.after)};
  }
  WriteTable(html, Translated("The bill's row"), Labelled(Translated("when"), scene.columns), rows);
}

void WriteScene(HtmlWriter& html, const DemoScene& scene) {
  const auto item = html.Open("li");
  const auto fold = html.Open("details", {{"open", "open"}});
  {
    const auto summary = html.Open("summary");
    WriteMark(html, VerdictText(scene.verdict));
    html.Leaf("h3", scene.title);
    html.Leaf("code", scene.call);
  }
  if (scene.verdict != Exit::kPassed) {
    WriteWhy(html, {scene.message, {}, FindRefusal(scene.message)});
  }
  WriteRowOf(html, scene);
  WriteStatements(html, scene.sent);
}

}  // namespace

std::string DemoPage(const DemoReport& report) {
  return HtmlPage(Translated("The sample company's bills"), [&](HtmlWriter& html) {
    WriteSection(html, report.audit, "audit");
    WriteSection(html, report.un_audit, "un-audit");
    html.Leaf("h2", Translated("The assembly bills, one by one"));
    const auto list = html.Open("ol", {{"class", "outcomes scenes"}});
    for (const DemoScene& scene : report.scenes) {
      WriteScene(html, scene);
      html.EndLine();
    }
  });
}

}  // namespace tavcc
