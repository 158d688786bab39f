#include "scenario/recording.h"

#include <utility>

#include "language/language.h"
#include "scenario/json_edit.h"
#include "scenario/values.h"

namespace tavcc {
namespace {

bool IsObject(const Value& value) {
  return value.IsObject() && value.object() != nullptr;
}

// Not what a scenario's runner supplies, nor what was left out.
bool IsTold(const Parameter& parameter, const Value& value) {
  if (parameter.type == ArgumentType::kConnection) return !IsObject(value);
  return !IsConnectionString(parameter) && !value.IsMissing();
}

Json SettingJson(const Value& value) {
  if (value.IsEmpty()) return nullptr;
  if (value.IsNull()) return Json{{"null", true}};
  return ExactJson(value);
}

Json ProfileJson(const std::vector<HostAnswer>& answers) {
  Json profile = Json::object();
  for (const HostAnswer& setting : answers) {
    if (setting.question != HostQuestion::kSetting) continue;
    const std::string name = setting.category + "." + setting.key;
    const Json value = SettingJson(setting.value);
    const Json* const known = profile.find(name);
    if (known != nullptr && *known != value) {
      throw JsonError(Say("the setting {} changed while it was recorded: {}, then {}", name,
                          Show(*known), Show(value)));
    }
    profile[name] = value;
  }
  return profile;
}

void AddHost(const HostSettings& host, Json& scenario) {
  scenario["user"] = host.user_id;
  for (const int32_t class_type : host.denied_class_types) {
    scenario["denied_rights"].push_back(class_type);
  }
  if (host.published != nullptr) scenario["published"] = ExactJson(Value(host.published));
  for (const auto& [language, texts] : host.resources) {
    for (const auto& [text, translation] : texts) {
      scenario["resources"][language][text] = translation;
    }
  }
}

}  // namespace

RecordedCall::RecordedCall(const ClassDescription& cls, const Method& method,
                           std::span<const Value> given, std::span<const Value> untold)
    : method_(method) {
  step_["call"] = std::string(cls.name) + "." + std::string(method.name);
  Json args = Json::object();
  for (size_t i = 0; i < method.parameters.size() && i < given.size(); ++i) {
    const Parameter& parameter = method.parameters[i];
    Json& kept = given_.emplace_back();
    if (!IsTold(parameter, given[i])) continue;
    kept = ExactJson(given[i]);
    const bool is_default = parameter.type != ArgumentType::kConnection && !untold[i].IsMissing() &&
                            kept == ExactJson(untold[i]);
    if (!is_default) args[parameter.name] = kept;
  }
  if (!args.empty()) step_["args"] = args;
}

void RecordedCall::Answered(const Value& result, std::span<const Value> arguments) {
  step_["expect"]["result"] = JsonFromValue(result);
  ExpectArguments(arguments);
}

void RecordedCall::Raised(const AutomationError& error, std::span<const Value> arguments) {
  ExpectArguments(arguments);
  step_["error"] = ErrorJson(error);
}

// A dictionary or vector that came back as it was says nothing.
void RecordedCall::ExpectArguments(std::span<const Value> arguments) {
  for (size_t i = 0; i < method_.parameters.size() && i < arguments.size(); ++i) {
    const Parameter& parameter = method_.parameters[i];
    if (!parameter.in_out || !IsTold(parameter, arguments[i])) continue;
    const bool is_rows =
        IsObject(arguments[i]) && dynamic_cast<Recordset*>(arguments[i].object().get()) != nullptr;
    if (IsObject(arguments[i]) && !is_rows && given_[i] == ExactJson(arguments[i])) continue;
    step_["expect"][parameter.name] = JsonFromValue(arguments[i]);
  }
}

Json TapeScenario(const Recording& recording) {
  Json scenario = Json::object();
  scenario["name"] = recording.name;
  if (!recording.note.empty()) scenario["note"] = recording.note;
  AddHost(recording.host, scenario);
  scenario["profile"] = ProfileJson(recording.answers);
  for (size_t i = 0; i < recording.steps.size(); ++i) {
    Json step = recording.steps[i];
    step["tape"] = TapeJson(recording.tapes[i]);
    scenario["steps"].push_back(std::move(step));
  }
  return scenario;
}

std::string ScenarioText(const Json& scenario) {
  return LaidOut(scenario) + "\n";
}

}  // namespace tavcc
