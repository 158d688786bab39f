#include "tavcc/trace.h"

#include <fmt/core.h>

#include <algorithm>
#include <memory>
#include <span>
#include <utility>

#include "host/trace_lines.h"
#include "language/language.h"
#include "scenario/runner.h"
#include "tavcc/output.h"
#include "tavcc/table.h"

namespace tavcc {
namespace {

constexpr std::string_view kLineIndent = "  ";
constexpr std::string_view kRowIndent = "    ";

// Each line but the first behind blanks.
std::string Indented(std::string text) {
  for (size_t at = 0; (at = text.find('\n', at)) != std::string::npos;
       at += 1 + kLineIndent.size()) {
    text.replace(at, 1, "\n" + std::string(kLineIndent));
  }
  return text;
}

// Shows rows below their statement, or says whose they are where another one was sent meanwhile.
StatementObserver OnStandardError(int rows) {
  const auto last = std::make_shared<std::shared_ptr<const SeenRows>>();
  return {.sent =
              [last](const LoggedStatement& statement) {
                PrintAside(SentText(statement));
                *last = statement.seen;
              },
          .rows_seen =
              [last, rows](const LoggedStatement& statement) {
                if (statement.seen->count == 0) return;
                std::string text;
                if (statement.seen != *last) {
                  text = kLineIndent;
                  text += Say("rows of {}\n", Indented(ShowStatement(statement)));
                }
                PrintAside(text + SentRowsText(statement, rows));
              },
          .rows = rows};
}

Json ParametersJson(const std::vector<ProcedureParameter>& parameters) {
  Json json = Json::object();
  for (const ProcedureParameter& parameter : parameters) {
    json[parameter.name] = ValueJson(parameter.value);
  }
  return json;
}

}  // namespace

StatementObserver TraceOf(const CommonOptions& options) {
  if (!options.trace) return {};
  return OnStandardError(options.rows);
}

StatementObserver TraceForJson(const CommonOptions& options) {
  return {.rows = options.trace ? StatementObserver::kAllRows : 0};
}

StatementObserver TraceWithoutRows(const CommonOptions& options) {
  if (!options.trace) return {};
  return OnStandardError(0);
}

std::string OutcomeText(const LoggedStatement& statement) {
  if (statement.error) return ErrorText(*statement.error);
  if (statement.rows < 0) return "";
  return statement.rows == 1 ? Say("1 row") : Say("{} rows", statement.rows);
}

std::string SentText(const LoggedStatement& statement) {
  const std::string outcome = OutcomeText(statement);
  std::string text =
      fmt::format("> {}\n{}{}, {:.3f} ms", Indented(ShowStatement(statement)), kLineIndent,
                  outcome.empty() ? Translated("done") : outcome, statement.milliseconds);
  if (const std::string from = PlaceText(statement.from); !from.empty()) text += ", " + from;
  if (!statement.gate.empty()) text += Say(", gate \"{}\"", Translated(statement.gate));
  for (const ProcedureParameter& output : statement.outputs) {
    text += fmt::format("\n{}{} = {}", kRowIndent, output.name, ValueText(output.value));
  }
  return text + "\n";
}

std::string SentRowsText(const LoggedStatement& statement, int most) {
  if (statement.seen == nullptr || statement.seen->count == 0) return "";
  return SeenRowsText(*statement.seen, statement.rows, most, kRowIndent);
}

std::string SeenRowsText(const SeenRows& seen, int in_all, int most, std::string_view indent) {
  const int shown = std::min(most, static_cast<int>(seen.rows.size()));
  std::string text;
  if (shown > 0) {
    Table table(seen.columns);
    for (const std::vector<Value>& row : std::span(seen.rows).first(static_cast<size_t>(shown))) {
      std::vector<std::string> cells = ValueTexts(row);
      cells.resize(seen.columns.size());
      table.Add(std::move(cells));
    }
    text = table.ToText(indent);
  }
  const int more = seen.count - shown;
  if (more > 0) text += Say("{}… and {} more\n", indent, more);
  if (in_all > seen.count) {
    text += Say("{}({} of {} rows were looked at)\n", indent, seen.count, in_all);
  }
  return text;
}

Json StatementJson(const LoggedStatement& statement) {
  Json json = ParseJson(StatementJsonText(statement));
  if (statement.is_procedure) {
    json["parameters"] = ParametersJson(statement.parameters);
    json["outputs"] = ParametersJson(statement.outputs);
  }
  if (statement.seen != nullptr) {
    const SeenRows& seen = *statement.seen;
    json["seen"] = {{"columns", seen.columns},
                    {"rows", RowsJson(seen.rows)},
                    {"count", seen.count},
                    {"to_the_end", seen.to_the_end}};
  }
  return json;
}

}  // namespace tavcc
