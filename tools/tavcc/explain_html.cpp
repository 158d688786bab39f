// An explanation as a page to look at, or to send to somebody.
#include <fmt/core.h>

#include <algorithm>

#include "scenario/runner.h"
#include "tavcc/answer.h"
#include "tavcc/explain.h"
#include "tavcc/page.h"

namespace tavcc {
namespace {

std::string ClassOf(const Rung& rung) {
  return rung.answer == Rung::Answer::kNotAsked ? "not-asked" : AnswerText(rung.answer);
}

std::string SettingsHtml(const std::vector<ReadSetting>& settings) {
  std::string html;
  for (const ReadSetting& setting : settings) {
    html +=
        fmt::format("{}<code>{}</code>", html.empty() ? "" : ", ", Escaped(SettingText(setting)));
  }
  return html;
}

void AddTerm(std::string& html, const char* term, const std::string& description) {
  if (!description.empty()) html += fmt::format("<dt>{}</dt><dd>{}</dd>\n", term, description);
}

std::string RowsHtml(const Rung& rung) {
  if (rung.rows.columns.empty()) return "";
  if (rung.rows.rows.empty()) return "(no rows)";
  return HtmlTable(rung.rows.columns, rung.rows.rows) + (rung.rows.whole ? "" : "… and more");
}

std::string DetailsHtml(const Rung& rung) {
  std::string html = "<div class=\"details\"><dl>\n";
  for (const Reason& reason : rung.reasons) AddTerm(html, "reason", Escaped(ReasonText(reason)));
  if (rung.refusal != nullptr) {
    const Refusal& refusal = *rung.refusal;
    AddTerm(html, "refusal", fmt::format("<code>{}</code>", Escaped(refusal.name)));
    AddTerm(
        html, "cause",
        fmt::format("{}<br>{}", Escaped(refusal.cause.english), Escaped(refusal.cause.chinese)));
    AddTerm(
        html, "remedy",
        fmt::format("{}<br>{}", Escaped(refusal.remedy.english), Escaped(refusal.remedy.chinese)));
  }
  AddTerm(html, "settings", SettingsHtml(rung.settings));
  AddTerm(html, "method", fmt::format("<code>{}</code>", Escaped(rung.method)));
  if (!rung.place.empty()) AddTerm(html, "rule", fmt::format("<code>{}</code>", rung.place));
  if (rung.statement) {
    AddTerm(html, "statement",
            fmt::format("<pre>{}</pre>", Escaped(ShowStatement(*rung.statement))));
    AddTerm(html, "sent by", fmt::format("<code>{}</code>", PlaceText(rung.statement->from)));
    AddTerm(html, "rows", RowsHtml(rung));
  }
  return html + "</dl></div>\n";
}

std::string RungHtml(const Rung& rung) {
  const bool stopped = IsStopped(rung);
  const std::string beside = stopped ? Escaped(rung.message) : SettingsHtml(rung.settings);
  return fmt::format(
      "<li><details{}><summary><span class=\"{}\">{}</span><span>{}</span><span>{}</span>"
      "</summary>\n{}</details></li>\n",
      stopped ? " open" : "", ClassOf(rung), AnswerText(rung.answer), Escaped(rung.gate), beside,
      DetailsHtml(rung));
}

std::string LadderHtml(const char* title, const std::vector<Rung>& ladder) {
  std::string rungs;
  for (const Rung& rung : ladder) {
    if (IsShown(rung, false)) rungs += RungHtml(rung);
  }
  if (rungs.empty()) return "";
  return fmt::format("<h2>{}</h2>\n<ol class=\"ladder\">\n{}</ol>\n", title, rungs);
}

// What stops the bill, before all else.
std::string WhyHtml(const Explanation& explanation) {
  for (const auto* ladder : {&explanation.batch, &explanation.host, &explanation.own}) {
    for (const Rung& rung : *ladder) {
      if (!IsStopped(rung)) continue;
      std::string html =
          fmt::format("<div class=\"why\"><p class=\"message\">{}</p>\n", Escaped(rung.message));
      for (const Reason& reason : rung.reasons) {
        html += fmt::format("<p>{}</p>\n", Escaped(ReasonText(reason)));
      }
      if (rung.refusal != nullptr) {
        html += fmt::format("<p>{}<br>{}</p>\n", Escaped(rung.refusal->remedy.english),
                            Escaped(rung.refusal->remedy.chinese));
      }
      return html + "</div>\n";
    }
  }
  return "";
}

std::string ChangesHtml(const Explanation& explanation) {
  std::string html;
  for (const ChangeTable& table : explanation.trial.changes) {
    html += fmt::format("<h3>{}</h3>\n{}", Escaped(table.title),
                        HtmlTable(ChangeHeader(table), ChangeRows(table)));
  }
  if (html.empty()) return "";
  return fmt::format("<h2>What the {} would change</h2>\n{}", DirectionText(explanation), html);
}

std::string BillHtml(const Explanation& explanation) {
  const Exit verdict = explanation.trial.verdict;
  std::string html = fmt::format("<article id=\"b{}\">\n<h1>{}</h1>\n", explanation.bill.id,
                                 Escaped(Described(explanation.bill)));
  html += fmt::format("<p class=\"verdict {}\">{}</p>\n", VerdictText(verdict),
                      Escaped(VerdictLine(explanation)));
  html += fmt::format("<p class=\"faint\">{}</p>\n", Escaped(explanation.trial.line));
  html += WhyHtml(explanation);
  html += LadderHtml("Gates of the batch audit", explanation.batch);
  html += LadderHtml("What a host asks beside it", explanation.host);
  html += LadderHtml("The bill's own class, where it is audited alone", explanation.own);
  return html + ChangesHtml(explanation) + "</article>\n";
}

}  // namespace

std::string ExplanationPage(const std::vector<Explanation>& explanations) {
  std::string body;
  if (explanations.size() > 1) {
    body += "<nav>";
    for (const Explanation& each : explanations) {
      body += fmt::format("<a class=\"{}\" href=\"#b{}\">{}</a>\n", VerdictText(each.Verdict()),
                          each.bill.id, Escaped(each.bill.number));
    }
    body += "</nav>\n";
  }
  std::string title;
  for (const Explanation& each : explanations) {
    title += (title.empty() ? "" : ", ") + each.bill.number;
    body += BillHtml(each);
  }
  return HtmlPage(title, body);
}

}  // namespace tavcc
