#include "tavcc/html/ladder.h"

#include <algorithm>

#include "language/language.h"
#include "scenario/runner.h"
#include "tavcc/html/page.h"
#include "tavcc/html/table.h"
#include "tavcc/output.h"
#include "tavcc/trace.h"

namespace tavcc {
namespace {

void WriteSettings(HtmlWriter& html, const std::vector<ReadSetting>& settings) {
  for (const ReadSetting& setting : settings) {
    if (&setting != &settings.front()) html.Text(", ");
    WriteCode(html, SettingText(setting));
  }
}

void WriteBilingual(HtmlWriter& html, std::string_view term, const Bilingual& text) {
  WriteTerm(html, term, [&] {
    const bool chinese = CurrentLanguage() == Language::kChinese;
    html.Leaf("p", chinese ? text.chinese : text.english);
    html.Leaf("p", chinese ? text.english : text.chinese);
  });
}

void WriteRows(HtmlWriter& html, const ShownRows& rows) {
  if (rows.none || rows.rows.empty()) {
    html.Leaf("p", Translated("(no rows)"));
    return;
  }
  std::vector<std::vector<std::string>> texts;
  for (const std::vector<Value>& row : rows.rows) texts.push_back(ValueTexts(row));
  WriteTable(html, Translated("The rows that the rule saw"), rows.columns, texts);
  if (!rows.whole) html.Leaf("p", Translated("… and more"));
}

void WriteStatement(HtmlWriter& html, const LoggedStatement& statement, const ShownRows& rows) {
  WriteTerm(html, Translated("statement"), [&] { WriteCodeBlock(html, ShowStatement(statement)); });
  if (const std::string place = PlaceText(statement.from); !place.empty()) {
    WriteTerm(html, Translated("sent by"), [&] { WriteCode(html, place); });
  }
  if (rows.none || !rows.columns.empty()) {
    WriteTerm(html, Translated("rows"), [&] { WriteRows(html, rows); });
  }
}

void WriteDetails(HtmlWriter& html, const Rung& rung) {
  const auto list = html.Open("dl");
  for (const Reason& reason : rung.reasons)
    WriteTerm(html, Translated("reason"), ReasonText(reason));
  if (rung.refusal != nullptr) {
    WriteTerm(html, Translated("refusal"), [&] { WriteCode(html, rung.refusal->name); });
    WriteBilingual(html, Translated("cause"), rung.refusal->cause);
    WriteBilingual(html, Translated("remedy"), rung.refusal->remedy);
  }
  if (!rung.settings.empty()) {
    WriteTerm(html, Translated("settings"), [&] { WriteSettings(html, rung.settings); });
  }
  WriteTerm(html, Translated("method"), [&] { WriteCode(html, rung.method); });
  if (!rung.place.empty()) {
    WriteTerm(html, Translated("rule"), [&] { WriteCode(html, rung.place); });
  }
  if (rung.statement) WriteStatement(html, *rung.statement, rung.rows);
}

void WriteRung(HtmlWriter& html, const Rung& rung) {
  const bool stopped = IsStopped(rung);
  const auto item = html.Open("li");
  const auto fold = html.Open("details", {{"open", stopped ? "open" : ""}});
  {
    const auto summary = html.Open("summary");
    WriteMark(html, AnswerText(rung.answer));
    html.Leaf("span", Translated(rung.gate), {{"class", "name"}});
    if (stopped) {
      html.Leaf("span", rung.message);
    } else {
      const auto beside = html.Open("span");
      WriteSettings(html, rung.settings);
    }
  }
  WriteDetails(html, rung);
}

void WriteSentStatement(HtmlWriter& html, const LoggedStatement& statement) {
  const auto item = html.Open("li");
  const auto fold = html.Open("details", {{"open", statement.error ? "open" : ""}});
  {
    const auto summary = html.Open("summary");
    html.Leaf("span", DurationText(statement.milliseconds), {{"class", "faint"}});
    html.Leaf("span", OutcomeText(statement),
              {{"class", statement.error ? "name failed" : "name"}});
    WriteCode(html, ShowStatement(statement));
  }
  const auto list = html.Open("dl");
  WriteStatement(html, statement, statement.seen == nullptr ? ShownRows() : Shown(*statement.seen));
}

}  // namespace

void WriteLadder(HtmlWriter& html, std::span<const Rung> ladder) {
  const auto list = html.Open("ol", {{"class", "ladder"}});
  for (const Rung& rung : ladder) {
    if (!IsShown(rung, false)) continue;
    WriteRung(html, rung);
    html.EndLine();
  }
}

void WriteSentStatements(HtmlWriter& html, std::span<const LoggedStatement> statements) {
  const auto list = html.Open("ol", {{"class", "ladder"}});
  for (const LoggedStatement& statement : statements) {
    WriteSentStatement(html, statement);
    html.EndLine();
  }
}

void WriteWhy(HtmlWriter& html, const Why& why) {
  const auto box = html.Open("div", {{"class", "why"}});
  html.Leaf("p", why.message, {{"class", "message"}});
  for (const Reason& reason : why.reasons) html.Leaf("p", ReasonText(reason));
  if (why.refusal == nullptr) return;
  const auto list = html.Open("dl");
  WriteTerm(html, Translated("refusal"), [&] { WriteCode(html, why.refusal->name); });
  WriteBilingual(html, Translated("cause"), why.refusal->cause);
  WriteBilingual(html, Translated("remedy"), why.refusal->remedy);
}

const Rung* FirstStop(std::span<const Rung> ladder) {
  const auto found = std::ranges::find_if(ladder, IsStopped);
  return found == ladder.end() ? nullptr : &*found;
}

}  // namespace tavcc
