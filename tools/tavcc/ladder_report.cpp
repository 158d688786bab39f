#include "tavcc/ladder_report.h"

#include <fmt/core.h>

#include <algorithm>

#include "language/language.h"
#include "scenario/runner.h"
#include "tavcc/output.h"
#include "tavcc/table.h"
#include "tavcc/trace.h"

namespace tavcc {
namespace {

constexpr const char* kIndent = "            ";
constexpr size_t kMostShownRows = 20;
// Wider answers are shown a column a line.
constexpr size_t kMostTableColumns = 8;

std::string SettingsText(const std::vector<ReadSetting>& settings) {
  std::string text;
  for (const ReadSetting& setting : settings) {
    text += (text.empty() ? "" : ", ") + SettingText(setting);
  }
  return text;
}

// A label, and a text of any number of lines behind it.
std::string Labelled(const std::string& label, const std::string& text) {
  std::string out = kIndent + Padded(label, 9) + " ";
  const std::string further = "\n" + std::string(kIndent) + std::string(10, ' ');
  const std::string whole = text.substr(0, text.find_last_not_of("\r\n ") + 1);
  for (const char c : whole) {
    if (c == '\r') continue;
    out += c == '\n' ? further : std::string(1, c);
  }
  return out + "\n";
}

std::string RowsText(const ShownRows& rows) {
  if (rows.none) return Translated("(no rows)");
  if (rows.columns.empty()) return "";
  if (rows.rows.empty()) return Translated("(no rows)");
  const size_t shown = std::min(rows.rows.size(), kMostShownRows);
  std::string text;
  if (rows.columns.size() <= kMostTableColumns) {
    Table table(rows.columns);
    for (size_t i = 0; i < shown; ++i) table.Add(ValueTexts(rows.rows[i]));
    text = table.ToText();
  } else {
    size_t width = 0;
    for (const std::string& column : rows.columns) width = std::max(width, DisplayWidth(column));
    for (size_t i = 0; i < shown; ++i) {
      if (i > 0) text += "--\n";
      for (size_t c = 0; c < rows.columns.size(); ++c) {
        text += Padded(rows.columns[c], width) + "  " + ValueText(rows.rows[i][c]) + "\n";
      }
    }
  }
  if (shown < rows.rows.size() || !rows.whole) {
    text +=
        rows.whole ? Say("… and {} more\n", rows.rows.size() - shown) : Say("… and rows more\n");
  }
  return text;
}

std::string DetailsText(const Rung& rung) {
  std::string text;
  for (const Reason& reason : rung.reasons)
    text += Labelled(Translated("reason"), ReasonText(reason));
  if (rung.refusal != nullptr) {
    text += Labelled(Translated("cause"), InLanguage(rung.refusal->cause));
    text += Labelled(Translated("remedy"), InLanguage(rung.refusal->remedy));
  }
  if (!rung.settings.empty()) text += Labelled(Translated("settings"), SettingsText(rung.settings));
  if (!rung.place.empty()) text += Labelled(Translated("rule"), rung.place);
  if (rung.statement) {
    text += Labelled(Translated("statement"), ShowStatement(*rung.statement));
    text += Labelled(Translated("sent by"), PlaceText(rung.statement->from));
    if (const std::string rows = RowsText(rung.rows); !rows.empty())
      text += Labelled(Translated("rows"), rows);
  }
  return text;
}

}  // namespace

void AddSetting(std::vector<ReadSetting>& settings, ReadSetting setting) {
  if (std::find(settings.begin(), settings.end(), setting) == settings.end()) {
    settings.push_back(std::move(setting));
  }
}

std::vector<ReadSetting> SettingsOf(const std::vector<HostAnswer>& answers, std::string_view gate) {
  std::vector<ReadSetting> settings;
  for (const HostAnswer& answer : answers) {
    const bool published = answer.question == HostQuestion::kPublished;
    const bool told = published || answer.question == HostQuestion::kSetting;
    if (!told || answer.gate != gate) continue;
    ReadSetting setting{published ? "published" : answer.category, answer.key, std::nullopt};
    if (!answer.value.IsEmpty()) setting.value = ValueText(answer.value);
    AddSetting(settings, std::move(setting));
  }
  return settings;
}

ShownRows Shown(const SeenRows& seen) {
  ShownRows shown;
  shown.columns = seen.columns;
  shown.rows = seen.rows;
  for (std::vector<Value>& row : shown.rows) row.resize(seen.columns.size());
  shown.whole = seen.count == static_cast<int>(seen.rows.size());
  shown.none = seen.count == 0 && seen.to_the_end;
  return shown;
}

std::string SettingText(const ReadSetting& setting) {
  return fmt::format("{}/{} {}", setting.category, setting.key,
                     setting.value ? "= " + *setting.value : Translated("is not set"));
}

const char* AnswerText(Rung::Answer answer) {
  switch (answer) {
    case Rung::Answer::kPassed:
      return "passed";
    case Rung::Answer::kRefused:
      return "refused";
    case Rung::Answer::kFailed:
      return "failed";
    case Rung::Answer::kNotAsked:
      return Translatable("not asked");
  }
  return "";
}

bool IsStopped(const Rung& rung) {
  return rung.answer == Rung::Answer::kRefused || rung.answer == Rung::Answer::kFailed;
}

bool IsShown(const Rung& rung, bool everything) {
  return everything || rung.answer != Rung::Answer::kNotAsked || !rung.settings.empty();
}

std::string ReasonText(const Reason& reason) {
  std::string text;
  for (const auto& [label, value] : reason) {
    text += fmt::format("{}{} {}", text.empty() ? "" : ", ", Translated(label), value);
  }
  return text;
}

namespace {

std::string BesideText(const Rung& rung, bool everything) {
  if (!IsStopped(rung)) return everything ? "" : SettingsText(rung.settings);
  if (rung.refusal == nullptr) return rung.message;
  return fmt::format("{}  [{}]", rung.message, rung.refusal->name);
}

}  // namespace

std::string LadderText(const std::vector<Rung>& ladder, bool everything) {
  size_t width = 0;
  for (const Rung& rung : ladder) {
    if (IsShown(rung, everything)) width = std::max(width, DisplayWidth(Translated(rung.gate)));
  }
  std::string text;
  for (const Rung& rung : ladder) {
    if (!IsShown(rung, everything)) continue;
    std::string line =
        fmt::format("  {} {}  {}", Padded(Translated(AnswerText(rung.answer)), 9),
                    Padded(Translated(rung.gate), width), BesideText(rung, everything));
    line.erase(line.find_last_not_of(' ') + 1);
    text += line + "\n";
    if (everything || IsStopped(rung)) text += DetailsText(rung);
  }
  return text;
}

namespace {

Json SettingsJson(const std::vector<ReadSetting>& settings) {
  Json list = Json::array();
  for (const ReadSetting& setting : settings) {
    list.push_back({{"category", setting.category},
                    {"key", setting.key},
                    {"value", setting.value ? Json(*setting.value) : Json()}});
  }
  return list;
}

Json ReasonsJson(const std::vector<Reason>& reasons) {
  Json list = Json::array();
  for (const Reason& reason : reasons) {
    Json object = Json::object();
    for (const auto& [label, value] : reason) object[label] = value;
    list.push_back(std::move(object));
  }
  return list;
}

Json RungJson(const Rung& rung) {
  Json json = {{"gate", rung.gate}, {"method", rung.method}, {"answer", AnswerText(rung.answer)}};
  if (!rung.message.empty()) json["message"] = rung.message;
  if (rung.refusal != nullptr) json["refusal"] = RefusalJson(*rung.refusal);
  if (!rung.place.empty()) json["rule"] = rung.place;
  json["settings"] = SettingsJson(rung.settings);
  if (rung.statement) {
    json["statement"] = StatementJson(*rung.statement);
    json["answer_rows"] = {{"columns", rung.rows.columns},
                           {"rows", RowsJson(rung.rows.rows)},
                           {"whole", rung.rows.whole}};
  }
  if (!rung.reasons.empty()) json["reasons"] = ReasonsJson(rung.reasons);
  return json;
}

}  // namespace

Json RefusalJson(const Refusal& refusal) {
  return {{"name", refusal.name},
          {"cause", refusal.cause.english},
          {"cause_zh", refusal.cause.chinese},
          {"remedy", refusal.remedy.english},
          {"remedy_zh", refusal.remedy.chinese}};
}

Json LadderJson(const std::vector<Rung>& ladder) {
  Json list = Json::array();
  for (const Rung& rung : ladder) list.push_back(RungJson(rung));
  return list;
}

}  // namespace tavcc
