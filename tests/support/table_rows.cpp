#include "support/table_rows.h"

#include "foundation/conversions.h"

namespace tavcc::testing {
namespace {

std::string FieldText(const Value& field) {
  switch (field.kind()) {
    case Value::Kind::kNull:
      return "NULL";
    case Value::Kind::kText:
      return "'" + field.text() + "'";
    case Value::Kind::kDate:
      return std::to_string(field.date().ticks());
    default:
      return ToText(field);
  }
}

}  // namespace

std::vector<std::string> CreatedTables(std::string_view script) {
  constexpr std::string_view kCreate = "\nCREATE TABLE ";
  std::vector<std::string> names;
  for (size_t at = 0; (at = script.find(kCreate, at)) != script.npos;) {
    at += kCreate.size();
    names.emplace_back(script.substr(at, script.find_first_of(" (", at) - at));
  }
  return names;
}

std::vector<std::string> TablesWithRows(Connection& connection,
                                        std::span<const std::string> tables) {
  std::string ask;
  for (const std::string& table : tables) {
    ask += (ask.empty() ? "" : " union all ") +
           ("select '" + table + "' where exists(select * from " + table + ")");
  }
  std::vector<std::string> found;
  const RecordsetPtr rows = connection.Execute(ask);
  for (; !rows->AtEnd(); rows->MoveNext()) found.push_back(rows->Field(0).text());
  return found;
}

std::vector<std::string> TableRows(Connection& connection, const std::string& table,
                                   std::string_view but) {
  const RecordsetPtr rows = connection.Execute("select * from " + table);
  std::vector<std::string> texts;
  for (; !rows->AtEnd(); rows->MoveNext()) {
    std::string& text = texts.emplace_back();
    for (int i = 0; i < rows->FieldCount(); ++i) {
      if (rows->FieldName(i) != but) text += "," + FieldText(rows->Field(i));
    }
  }
  return texts;
}

}  // namespace tavcc::testing
