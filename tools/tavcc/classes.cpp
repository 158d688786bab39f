// tavcc classes: the method table, as the class registry has it.
#include <fmt/core.h>

#include <stdexcept>

#include "language/language.h"
#include "registry/dictionary_keys.h"
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
  Table table({Translated("slot"), Translated("id"), Translated("method"), Translated("result"),
               Translated("parameters")});
  for (const Method& method : cls.methods) {
    table.Add({std::to_string(method.slot), IdText(method),
               std::string(method.name) + (IsBuilt(method) ? "" : Translated(" (not built yet)")),
               std::string(TypeText(method.result)), ParametersText(method)});
  }
  Print(table.ToText("  "));
}

const char* UseText(KeyUse use) {
  switch (use) {
    case KeyUse::kNeeded:
      return Translatable("in");
    case KeyUse::kOptional:
      return Translatable("in, optional");
    case KeyUse::kWritten:
      return Translatable("out");
  }
  return "";
}

std::string MeaningText(const DictionaryKey& key) {
  if (key.needed_by.empty()) return InLanguage(key.meaning);
  std::string classes;
  for (const int32_t cls : key.needed_by) {
    classes += fmt::format("{}{}", classes.empty() ? "" : ", ", cls);
  }
  return Say("{}; needed for the classes {}", InLanguage(key.meaning), classes);
}

void AddKeys(Table& table, std::span<const DictionaryKey> keys, const std::string& prefix) {
  for (const DictionaryKey& key : keys) {
    table.Add({fmt::format("{}{}", prefix, key.name), std::string(KeyTypeText(key.type)),
               Translated(UseText(key.use)), MeaningText(key)});
    AddKeys(table, key.keys, fmt::format("{}{}.", prefix, key.name));
  }
}

Json KeysJson(std::span<const DictionaryKey> keys) {
  Json list = Json::array();
  for (const DictionaryKey& key : keys) {
    Json row = {{"key", key.name},
                {"type", KeyTypeText(key.type)},
                {"use", key.use == KeyUse::kWritten    ? "out"
                        : key.use == KeyUse::kOptional ? "optional"
                                                       : "needed"},
                {"meaning", key.meaning.english},
                {"meaning_zh", key.meaning.chinese}};
    if (!key.keys.empty()) row["keys"] = KeysJson(key.keys);
    if (!key.needed_by.empty()) {
      row["needed_by"] = Json::array();
      for (const int32_t cls : key.needed_by) row["needed_by"].push_back(cls);
    }
    list.push_back(std::move(row));
  }
  return list;
}

Json MethodJson(const ClassDescription& cls, const Method& method) {
  Json parameters = Json::array();
  for (const Parameter& parameter : method.parameters) {
    Json json = {{"name", parameter.name},
                 {"type", TypeText(parameter.type)},
                 {"in_out", parameter.in_out},
                 {"optional", parameter.optional}};
    if (parameter.default_value) json["default"] = *parameter.default_value;
    const auto keys = KeysOf(cls, method, parameter);
    if (!keys.empty()) json["keys"] = KeysJson(keys);
    parameters.push_back(std::move(json));
  }
  return {{"name", method.name},
          {"slot", method.slot},
          {"id", IdText(method)},
          {"result", TypeText(method.result)},
          {"property", method.is_property},
          {"built", IsBuilt(method)},
          {"writes", method.writes},
          {"parameters", std::move(parameters)}};
}

Json ClassJson(const ClassDescription& cls) {
  Json methods = Json::array();
  for (const Method& method : cls.methods) methods.push_back(MethodJson(cls, method));
  return {{"name", cls.name}, {"trans_mode", cls.trans_mode}, {"methods", std::move(methods)}};
}

// One method: its row, and the keys of its dictionaries.
Exit PrintMethod(const CommonOptions& common, const MethodName& name) {
  if (common.json) {
    Print(Show(MethodJson(*name.cls, *name.method), 2) + "\n");
    return Exit::kPassed;
  }
  Print(fmt::format(
      "{}.{}({})\n  {}\n", name.cls->name, name.method->name, ParametersText(*name.method),
      name.method->writes ? Say("answers {}; writes", TypeText(name.method->result))
                          : Say("answers {}; only reads", TypeText(name.method->result))));
  for (const Parameter& parameter : name.method->parameters) {
    const auto keys = KeysOf(*name.cls, *name.method, parameter);
    if (keys.empty()) continue;
    Print(fmt::format("\n{}{}\n", parameter.name,
                      parameter.type == ArgumentType::kDictionary ? "" : Translated(", each")));
    Table table({Translated("key"), Translated("type"), Translated("use"), Translated("meaning")});
    AddKeys(table, keys, "");
    Print(table.ToText("  "));
  }
  return Exit::kPassed;
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
  if (options.name.find('.') != std::string::npos) {
    return PrintMethod(common, FindMethodByName(options.name));
  }
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
