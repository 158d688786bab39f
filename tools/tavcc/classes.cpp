// tavcc classes: the method table, as the class registry has it.
#include <fmt/core.h>

#include <stdexcept>

#include "scenario/json.h"
#include "scenario/scenario.h"
#include "tavcc/command.h"
#include "tavcc/output.h"
#include "tavcc/table.h"

namespace tavcc {
namespace {

std::string DefaultText(const Parameter& parameter) {
  if (!parameter.default_value) return "";
  if (parameter.type == ArgumentType::kBoolean) {
    return *parameter.default_value != 0 ? " = True" : " = False";
  }
  return fmt::format(" = {}", *parameter.default_value);
}

std::string ParametersText(const Method& method) {
  std::string text;
  for (const Parameter& parameter : method.parameters) {
    if (!text.empty()) text += ", ";
    if (parameter.optional) text += "[";
    if (parameter.in_out) text += "in/out ";
    text +=
        fmt::format("{} {}{}", TypeText(parameter.type), parameter.name, DefaultText(parameter));
    if (parameter.optional) text += "]";
  }
  return text;
}

std::string IdText(const Method& method) {
  return fmt::format("0x{:08X}", method.dispatch_id);
}

void PrintClass(const ClassDescription& cls) {
  Print(fmt::format("{}.{}  (TransMode {})\n", kLibraryName, cls.name, cls.trans_mode));
  Table table({"slot", "id", "method", "result", "parameters"});
  for (const Method& method : cls.methods) {
    table.Add({std::to_string(method.slot), IdText(method),
               std::string(method.name) + (IsBuilt(method) ? "" : " (not built yet)"),
               std::string(TypeText(method.result)), ParametersText(method)});
  }
  Print(table.ToText("  "));
}

Json ClassJson(const ClassDescription& cls) {
  Json methods = Json::array();
  for (const Method& method : cls.methods) {
    Json parameters = Json::array();
    for (const Parameter& parameter : method.parameters) {
      Json json = {{"name", parameter.name},
                   {"type", TypeText(parameter.type)},
                   {"in_out", parameter.in_out},
                   {"optional", parameter.optional}};
      if (parameter.default_value) json["default"] = *parameter.default_value;
      parameters.push_back(std::move(json));
    }
    methods.push_back({{"name", method.name},
                       {"slot", method.slot},
                       {"id", IdText(method)},
                       {"result", TypeText(method.result)},
                       {"property", method.is_property},
                       {"built", IsBuilt(method)},
                       {"parameters", std::move(parameters)}});
  }
  return {{"name", cls.name}, {"trans_mode", cls.trans_mode}, {"methods", std::move(methods)}};
}

std::vector<const ClassDescription*> Chosen(const std::string& name) {
  std::vector<const ClassDescription*> chosen;
  if (!name.empty()) {
    chosen.push_back(&FindClassByName(name));
    return chosen;
  }
  for (const ClassDescription& cls : Classes()) chosen.push_back(&cls);
  return chosen;
}

}  // namespace

Exit ClassesCommand(const CommonOptions& common, const ClassesOptions& options) {
  Json all = Json::array();
  for (const ClassDescription* cls : Chosen(options.name)) {
    if (common.json) {
      all.push_back(ClassJson(*cls));
    } else {
      PrintClass(*cls);
    }
  }
  if (common.json) Print(fmt::format("{}\n", Show(all, 2)));
  return Exit::kPassed;
}

}  // namespace tavcc
