#include "tavcc/answer_text.h"

#include <fmt/core.h>

#include <algorithm>

#include "host/host_dictionary.h"
#include "language/language.h"
#include "registry/refusals.h"
#include "scenario/runner.h"
#include "scenario/values.h"
#include "tavcc/output.h"
#include "tavcc/table.h"
#include "tavcc/trace.h"

namespace tavcc {
namespace {

// The last statement of a call that failed although none of its statements did.
std::string StatementBeforeError(const Answer& answer) {
  const bool named = answer.failure && !answer.failure->what.empty();
  if (answer.verdict != Exit::kFailed || named || answer.statements.empty()) return "";
  return ShowStatement(answer.statements.back());
}

// The name of the refusal that an in/out text or the error tells of.
std::string RefusalOf(const Method& method, const Answer& answer) {
  if (answer.verdict != Exit::kRefused) return "";
  if (answer.error) return RefusalName(answer.error->description());
  for (size_t i = 0; i < method.parameters.size(); ++i) {
    if (!method.parameters[i].in_out || !answer.arguments[i].IsText()) continue;
    return RefusalName(answer.arguments[i].text());
  }
  return "";
}

// A name and its value, one below the other for rows and bills.
std::string Named(std::string_view name, const Value& value) {
  constexpr size_t kNameWidth = 14;
  Recordset* rows = nullptr;
  HostDictionary* dictionary = nullptr;
  if (value.IsObject()) {
    rows = dynamic_cast<Recordset*>(value.object().get());
    dictionary = dynamic_cast<HostDictionary*>(value.object().get());
  }
  if (rows != nullptr && rows->IsOpen()) {
    return fmt::format("  {}\n{}", name, RowsText(*rows, "    "));
  }
  if (dictionary != nullptr) {
    std::string entries;
    for (const auto& [key, item] : dictionary->entries()) {
      entries += Named(fmt::format("{}.{}", name, key), item);
    }
    return entries;
  }
  const std::string text = ValueText(value);
  if (name.ends_with(".BillInfo") && !text.empty()) {
    return fmt::format("  {}\n{}", name, LinePerBill(text, "    "));
  }
  return fmt::format("  {}\n",
                     text.empty() ? std::string(name) : Padded(name, kNameWidth) + "  " + text);
}

}  // namespace

std::string RefusalName(std::string_view message) {
  const Refusal* const refusal = FindRefusal(message);
  return refusal == nullptr ? "" : std::string(refusal->name);
}

std::string LinePerBill(std::string_view bill_info, std::string_view indent) {
  std::string text;
  for (const std::string& line : BillLines(bill_info)) text += fmt::format("{}{}\n", indent, line);
  return text;
}

std::vector<std::string> BillLines(std::string_view bill_info) {
  std::vector<std::string> lines;
  while (!bill_info.empty()) {
    const size_t end = std::min(bill_info.find('|'), bill_info.size());
    if (end > 0) lines.emplace_back(bill_info.substr(0, end));
    bill_info.remove_prefix(std::min(end + 1, bill_info.size()));
  }
  return lines;
}

std::string FailureText(const Answer& answer) {
  std::string text;
  if (answer.failure) {
    text += Named(Translated("failure"), ErrorText(answer.failure->error));
    if (!answer.failure->what.empty()) text += Named(Translated("at"), answer.failure->what);
    if (answer.failure->from.line > 0) {
      text += Named(Translated("from"), PlaceText(answer.failure->from));
    }
  }
  if (const std::string last = StatementBeforeError(answer); !last.empty()) {
    text += Named(Translated("after"), last);
  }
  return text;
}

std::string AnswerText(const ClassDescription& cls, const Method& method, const Answer& answer) {
  std::string text =
      fmt::format("{}.{} {}\n", cls.name, method.name, Translated(VerdictText(answer.verdict)));
  if (answer.error) {
    text += Named(Translated("error"), answer.error->number());
    text += Named(Translated("source"), answer.error->source());
    text += Named(Translated("description"), answer.error->description());
  } else {
    text += Named(Translated("result"), answer.result);
  }
  for (size_t i = 0; i < method.parameters.size(); ++i) {
    const Parameter& parameter = method.parameters[i];
    if (parameter.in_out) text += Named(parameter.name, answer.arguments[i]);
  }
  return text + FailureText(answer);
}

Json AnswerJson(const Method& method, const Answer& answer, bool statements) {
  Json json = {{"verdict", VerdictText(answer.verdict)}};
  if (answer.error) {
    json["error"] = ErrorJson(*answer.error);
  } else {
    json["result"] = ValueJson(answer.result);
  }
  if (answer.failure) {
    json["failure"] = {{"number", answer.failure->error.number()},
                       {"description", answer.failure->error.description()},
                       {"at", answer.failure->what},
                       {"from", PlaceText(answer.failure->from)}};
  }
  if (const std::string last = StatementBeforeError(answer); !last.empty()) json["after"] = last;
  json["arguments"] = Json::object();
  for (size_t i = 0; i < method.parameters.size(); ++i) {
    if (!method.parameters[i].in_out) continue;
    json["arguments"][std::string(method.parameters[i].name)] = ValueJson(answer.arguments[i]);
  }
  if (const std::string name = RefusalOf(method, answer); !name.empty()) json["refusal"] = name;
  if (!statements) return json;
  json["statements"] = Json::array();
  for (const LoggedStatement& statement : answer.statements) {
    json["statements"].push_back(StatementJson(statement));
  }
  return json;
}

}  // namespace tavcc
