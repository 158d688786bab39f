// An explanation as text and as JSON.
#include <fmt/core.h>

#include <algorithm>

#include "language/language.h"
#include "tavcc/answer.h"
#include "tavcc/explain.h"
#include "tavcc/output.h"
#include "tavcc/table.h"

namespace tavcc {
namespace {

// The gates beside the audit that do not let the bill pass.
std::string BesideRefusals(const Explanation& explanation) {
  std::string gates;
  for (const auto* ladder : {&explanation.host, &explanation.own}) {
    for (const Rung& rung : *ladder) {
      if (!IsStopped(rung)) continue;
      gates +=
          fmt::format("{}{} ({})", gates.empty() ? "" : ", ", Translated(rung.gate), rung.message);
    }
  }
  return gates.empty() ? "" : Say("; what is asked beside it does not: {}", gates);
}

// The first thing to know: would it pass.
std::string Headline(const Explanation& explanation) {
  std::string text = Described(explanation.bill) + "\n" + VerdictLine(explanation) + "\n";
  if (!explanation.trial.line.empty()) text += fmt::format("  {}\n", explanation.trial.line);
  return text;
}

std::string Section(const char* title, const std::vector<Rung>& ladder, bool everything) {
  const std::string rungs = LadderText(ladder, everything);
  return rungs.empty() ? "" : fmt::format("\n{}\n\n{}", Translated(title), rungs);
}

std::string ChangesText(const ChangeTable& table) {
  Table text(ChangeHeader(table));
  for (auto& row : ChangeRows(table)) text.Add(std::move(row));
  return fmt::format("\n  {}:\n\n{}", Translated(table.title), text.ToText("    "));
}

std::string TrialText(const Explanation& explanation) {
  const std::string doing = Translated(DirectionText(explanation));
  if (explanation.trial.verdict != Exit::kPassed) {
    return Say("\nThe {} would change nothing.\n", doing);
  }
  if (explanation.trial.changes.empty()) return "";
  std::string text = Say("\nWhat the {} would change:\n", doing);
  for (const ChangeTable& table : explanation.trial.changes) text += ChangesText(table);
  return text;
}

Json ChangesJson(const std::vector<ChangeTable>& tables) {
  Json list = Json::array();
  for (const ChangeTable& table : tables) {
    Json rows = Json::array();
    for (const ChangeTable::Row& row : table.rows) {
      Json key = Json::object();
      for (size_t i = 0; i < row.key.size(); ++i) key[table.key_columns[i]] = ValueJson(row.key[i]);
      const auto values = [&](const std::vector<Value>& cells) -> Json {
        if (cells.empty()) return {};
        Json object = Json::object();
        for (size_t i = 0; i < cells.size(); ++i) {
          object[table.value_columns[i]] = ValueJson(cells[i]);
        }
        return object;
      };
      rows.push_back({{"key", key}, {"before", values(row.before)}, {"after", values(row.after)}});
    }
    list.push_back({{"what", table.title}, {"rows", std::move(rows)}});
  }
  return list;
}

}  // namespace

const char* DirectionText(const Explanation& explanation) {
  return explanation.direction < 0 ? Translatable("un-audit") : Translatable("audit");
}

std::string VerdictLine(const Explanation& explanation) {
  const std::string doing = Translated(DirectionText(explanation));
  switch (explanation.trial.verdict) {
    case Exit::kPassed:
      return Say("The {} passes it{}.", doing, BesideRefusals(explanation));
    case Exit::kRefused:
      return Say("The {} refuses it.", doing);
    case Exit::kFailed:
      return Say("The {} fails: {}", doing, explanation.trial.error);
  }
  return "";
}

std::string ExplanationText(const Explanation& explanation, bool everything) {
  return Headline(explanation) +
         Section(Translatable("Gates of the batch audit:"), explanation.batch, everything) +
         Section(Translatable("What a host asks beside it:"), explanation.host, everything) +
         Section(Translatable("The bill's own class, where it is audited alone:"), explanation.own,
                 everything) +
         TrialText(explanation);
}

Json ExplanationJson(const Explanation& explanation) {
  Json json = {{"bill",
                {{"number", explanation.bill.number},
                 {"class", explanation.bill.class_type},
                 {"id", explanation.bill.id},
                 {"type", explanation.bill.bill_type}}},
               {"direction", DirectionText(explanation)},
               {"verdict", VerdictText(explanation.Verdict())},
               {"gates", LadderJson(explanation.batch)},
               {"host_gates", LadderJson(explanation.host)},
               {"own_gates", LadderJson(explanation.own)}};
  Json audit = {{"verdict", VerdictText(explanation.trial.verdict)},
                {"line", explanation.trial.line}};
  if (!explanation.trial.error.empty()) audit["error"] = explanation.trial.error;
  audit["changes"] = ChangesJson(explanation.trial.changes);
  json["audit"] = std::move(audit);
  return json;
}

}  // namespace tavcc
