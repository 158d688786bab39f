// tavcc refusals: the catalogue, or what it says of one message.
#include "registry/refusals.h"
#include "language/language.h"

#include <fmt/core.h>

#include <string>
#include <vector>

#include "scenario/scenario.h"
#include "tavcc/command.h"
#include "tavcc/ladder_report.h"
#include "tavcc/output.h"

namespace tavcc {
namespace {

const Refusal& ByNameOrMessage(const std::string& text) {
  std::vector<std::string> names;
  for (const Refusal& refusal : Refusals()) {
    if (refusal.name == text) return refusal;
    names.emplace_back(refusal.name);
  }
  if (const Refusal* const refusal = FindRefusal(text)) return *refusal;
  throw CommandError(
      Say("no refusal has the name or the message \"{}\"{}", text, DidYouMean(text, names)));
}

std::string MethodsText(const RefusalText& text) {
  std::string methods;
  for (const std::string_view method : text.methods) {
    methods += fmt::format("{}{}", methods.empty() ? "" : ", ", method);
  }
  return methods;
}

void PrintRefusal(const Refusal& refusal) {
  std::string text = fmt::format("{}\n", refusal.name);
  for (const RefusalText& each : refusal.texts) {
    text += fmt::format("  {}\n    {}\n", each.text, MethodsText(each));
  }
  text += Say("  cause   {}\n          {}\n  remedy  {}\n          {}\n", refusal.cause.english,
              refusal.cause.chinese, refusal.remedy.english, refusal.remedy.chinese);
  Print(text);
}

Json WholeJson(const Refusal& refusal) {
  Json json = RefusalJson(refusal);
  Json texts = Json::array();
  for (const RefusalText& text : refusal.texts) {
    Json methods = Json::array();
    for (const std::string_view method : text.methods) methods.push_back(method);
    texts.push_back({{"text", text.text}, {"methods", std::move(methods)}});
  }
  json["texts"] = std::move(texts);
  return json;
}

}  // namespace

Exit RefusalsCommand(const CommonOptions& common, const RefusalsOptions& options) {
  std::vector<const Refusal*> chosen;
  if (!options.text.empty()) {
    chosen.push_back(&ByNameOrMessage(options.text));
  } else {
    for (const Refusal& refusal : Refusals()) chosen.push_back(&refusal);
  }
  Json list = Json::array();
  for (const Refusal* refusal : chosen) {
    if (common.json) {
      list.push_back(WholeJson(*refusal));
    } else {
      if (refusal != chosen.front()) Print("\n");
      PrintRefusal(*refusal);
    }
  }
  if (common.json) Print(Show(list, 2) + "\n");
  return Exit::kPassed;
}

}  // namespace tavcc
