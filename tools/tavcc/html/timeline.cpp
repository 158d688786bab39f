#include "tavcc/html/timeline.h"

#include <fmt/core.h>

#include <algorithm>

#include "language/language.h"
#include "scenario/runner.h"
#include "tavcc/html/page.h"
#include "tavcc/html/table.h"
#include "tavcc/output.h"

namespace tavcc {
namespace {

std::string Milliseconds(double milliseconds) {
  return fmt::format("{:.3f}", milliseconds);
}

std::string TotalText(const StatementTotal& total) {
  const std::string time = DurationText(total.milliseconds);
  return total.count == 1 ? Say("1 statement, {} in the database", time)
                          : Say("{} statements, {} in the database", total.count, time);
}

void WriteSent(HtmlWriter& html, const LoggedStatement& statement) {
  const auto cell = html.Open("td", {{"class", "sent"}});
  WriteCode(html, ShowStatement(statement));
  if (!statement.error) return;
  html.Leaf("p", ErrorText(*statement.error), {{"class", "failed"}});
}

void WriteStatementRow(HtmlWriter& html, const LoggedStatement& statement, double at,
                       double length) {
  const auto row = html.Open("tr");
  html.Leaf("th", std::to_string(statement.number), {{"scope", "row"}, {"class", "number"}});
  WriteCell(html, Milliseconds(at));
  WriteCell(html, Milliseconds(statement.milliseconds));
  {
    const auto cell = html.Open("td");
    WriteTimeBar(html, at, at + statement.milliseconds, length,
                 SpanText(at, at + statement.milliseconds));
  }
  WriteCell(html, statement.rows < 0 ? "" : std::to_string(statement.rows));
  WriteCell(html, Translated(statement.gate));
  WriteSent(html, statement);
  const auto cell = html.Open("td");
  WriteCode(html, PlaceText(statement.from));
}

// All of them, on a line of time that begins with the first stretch.
void WriteStatementTable(HtmlWriter& html, std::span<const Stretch> stretches) {
  const double begun = stretches.front().begun;
  const double length = stretches.back().ended - begun;
  const auto scroll = html.Open("div", {{"class", "scroll"}});
  const auto table = html.Open("table", {{"class", "statements"}});
  html.Leaf("caption", Say("Statements, on a line of {}", DurationText(length)));
  {
    const auto head = html.Open("thead");
    const auto row = html.Open("tr");
    for (const char* const name :
         {Translatable("no."), Translatable("at (ms)"), Translatable("took (ms)"),
          Translatable("on the line"), Translatable("rows"), Translatable("gate"),
          Translatable("statement"), Translatable("sent by")}) {
      html.Leaf("th", Translated(name), {{"scope", "col"}});
    }
  }
  const auto body = html.Open("tbody");
  for (const Stretch& stretch : stretches) {
    for (size_t i = 0; i < stretch.sent_at.size(); ++i) {
      WriteStatementRow(html, stretch.ladder.statements[i], stretch.sent_at[i] - begun, length);
      html.EndLine();
    }
  }
}

void WritePart(HtmlWriter& html, const NamedStretch& part, double begun, double length) {
  const std::span stretches(&part.stretch, 1);
  const StatementTotal total = TotalOf(stretches);
  const auto item = html.Open("li");
  const auto fold = html.Open("details");
  {
    const auto summary = html.Open("summary");
    if (part.mark.empty()) {
      html.Leaf("span", "");
    } else {
      WriteMark(html, part.mark);
    }
    html.Leaf("span", part.name, {{"class", "name"}});
    html.Leaf("span", TotalText(total), {{"class", "faint"}});
    const double from = part.stretch.begun - begun, to = part.stretch.ended - begun;
    WriteTimeBar(html, from, to, length, SpanText(from, to));
  }
  if (total.count > 0) WriteStatementTable(html, stretches);
}

}  // namespace

void WriteTimeline(HtmlWriter& html, std::span<const NamedStretch> parts) {
  if (parts.empty()) return;
  double begun = parts.front().stretch.begun, ended = begun;
  for (const NamedStretch& part : parts) {
    begun = std::min(begun, part.stretch.begun);
    ended = std::max(ended, part.stretch.ended);
  }
  const auto list = html.Open("ol", {{"class", "timeline"}});
  for (const NamedStretch& part : parts) {
    WritePart(html, part, begun, ended - begun);
    html.EndLine();
  }
}

void WriteStatements(HtmlWriter& html, std::span<const Stretch> stretches) {
  const StatementTotal total = TotalOf(stretches);
  if (total.count == 0) return;
  const auto fold = html.Open("details", {{"class", "sent"}});
  html.Leaf("summary", TotalText(total));
  WriteStatementTable(html, stretches);
}

void WriteTimeBar(HtmlWriter& html, double begun, double ended, double length,
                  const std::string& label) {
  constexpr double kWidth = 1000, kLeast = 2;
  const double scale = length > 0 ? kWidth / length : 0;
  const double width = std::clamp((ended - begun) * scale, kLeast, kWidth);
  const auto picture = html.Open("svg", {{"class", "time"},
                                         {"viewBox", "0 0 1000 10"},
                                         {"preserveAspectRatio", "none"},
                                         {"role", "img"},
                                         {"aria-label", label}});
  html.Void("rect", {{"x", fmt::format("{:.1f}", std::min(begun * scale, kWidth - width))},
                     {"y", "0"},
                     {"width", fmt::format("{:.1f}", width)},
                     {"height", "10"}});
}

std::string SpanText(double begun, double ended) {
  return Say("from {:.1f} to {:.1f} ms", begun, ended);
}

StatementTotal TotalOf(std::span<const Stretch> stretches) {
  StatementTotal total;
  for (const Stretch& stretch : stretches) {
    total.count += stretch.ladder.statements.size();
    for (const LoggedStatement& sent : stretch.ladder.statements) {
      total.milliseconds += sent.milliseconds;
    }
  }
  return total;
}

}  // namespace tavcc
