#include "scenario/start_state.h"

#include "scenario/values.h"

namespace tavcc {
namespace {

std::string Quoted(std::string_view text) {
  std::string literal = "N'";
  for (const char c : text) literal.append(c == '\'' ? 2 : 1, c);
  return literal + "'";
}

void SetProfile(Connection& connection, const std::string& setting,
                const std::optional<std::string>& value) {
  const size_t dot = setting.find('.');
  const std::string category = Quoted(setting.substr(0, dot));
  const std::string key = Quoted(setting.substr(dot + 1));
  connection.Execute("delete from t_SystemProfile where FCategory=" + category +
                     " and FKey=" + key);
  if (!value) return;
  connection.Execute("insert into t_SystemProfile(FCategory,FKey,FValue) values(" + category + "," +
                     key + "," + Quoted(*value) + ")");
}

}  // namespace

void ApplyStartState(const StartState& start, ReferenceHost& host, Connection& connection) {
  HostSettings& settings = host.settings();
  settings.user_id = start.user;
  settings.denied_class_types = {start.denied_rights.begin(), start.denied_rights.end()};
  for (const auto& [language, texts] : start.resources) settings.resources[language] = texts;
  if (!start.published.empty()) {
    settings.published = ToObject<Dictionary>(ValueFromJson(host, start.published));
  }
  for (const auto& [setting, value] : start.profile) SetProfile(connection, setting, value);
  for (const std::string& sql : start.sql) connection.Execute(sql);
}

}  // namespace tavcc
