#include "embedded/run/case_file.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "foundation/conversions.h"
#include "foundation/error.h"
#include "support/source_dir.h"

namespace tavcc::sql {
namespace {

using Json = nlohmann::json;

std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

Json ReadCases(const std::string& file) {
  return Json::parse(ReadFile(file));
}

std::string Joined(const Json& text) {
  if (text.is_string()) return text.get<std::string>();
  std::string out;
  for (const Json& piece : text) out += piece.get<std::string>();
  return out;
}

Json Shown(const Value& value) {
  switch (value.kind()) {
    case Value::Kind::kNull:
      return nullptr;
    case Value::Kind::kBoolean:
      return value.boolean();
    case Value::Kind::kInteger:
      return value.integer();
    case Value::Kind::kLong:
      return value.long_integer();
    case Value::Kind::kDouble:
      return value.number();
    case Value::Kind::kDecimal:
      return value.decimal().ToText();
    default:
      return ToText(value);
  }
}

bool Same(const Json& expected, const Value& value) {
  if (expected.is_number() && value.kind() == Value::Kind::kDecimal) {
    const auto number = Decimal::Parse(expected.dump());
    return number && *number == value.decimal();
  }
  return expected == Shown(value);
}

std::string CompareRows(const Json& expected, Recordset& rows) {
  Json got = Json::array();
  bool same = true;
  for (size_t row = 0; !rows.AtEnd(); rows.MoveNext(), ++row) {
    Json& cells = got.emplace_back(Json::array());
    const bool has =
        row < expected.size() && expected[row].size() == static_cast<size_t>(rows.FieldCount());
    same = same && has;
    for (int i = 0; i < rows.FieldCount(); ++i) {
      cells.push_back(Shown(rows.Field(i)));
      same = same && Same(expected[row][static_cast<size_t>(i)], rows.Field(i));
    }
  }
  if (same && got.size() == expected.size()) return {};
  return "expected rows " + expected.dump() + "\n     got rows " + got.dump();
}

std::string CompareColumns(const Json& expected, const Recordset& rows) {
  Json got = Json::array();
  for (int i = 0; i < rows.FieldCount(); ++i) got.push_back(rows.FieldName(i));
  return got == expected ? "" : "expected columns " + expected.dump() + ", got " + got.dump();
}

std::string CompareErrors(const Json& step, const Connection& connection,
                          const AutomationError* error) {
  if (!step.contains("error")) {
    return error ? "error " + std::to_string(error->number()) + ": " + error->description() : "";
  }
  if (error == nullptr) return "expected error " + step["error"].dump() + ", there was none";
  if (step["error"] != error->number() ||
      (step.contains("message") && step["message"] != error->description())) {
    return "expected error " + step["error"].dump() + ' ' + step.value("message", "") + ", got " +
           std::to_string(error->number()) + ' ' + error->description();
  }
  if (!step.contains("errors")) return {};
  Json got = Json::array();
  for (const ConnectionError& entry : connection.Errors()) got.push_back(entry.number);
  return got == step["errors"] ? ""
                               : "expected errors " + step["errors"].dump() + ", got " + got.dump();
}

std::string RunStep(const Json& step, Connection& connection) {
  const std::string sql = Joined(step["sql"]);
  std::string difference;
  try {
    const RecordsetPtr rows = connection.Execute(sql);
    difference = CompareErrors(step, connection, nullptr);
    if (difference.empty() && step.contains("rows") && !rows->IsOpen()) difference = "no rows";
    if (difference.empty() && step.contains("columns")) {
      difference = CompareColumns(step["columns"], *rows);
    }
    if (difference.empty() && step.contains("rows")) {
      difference = CompareRows(step["rows"], *rows);
    }
  } catch (const AutomationError& error) {
    difference = CompareErrors(step, connection, &error);
  }
  return difference.empty() ? "" : sql + "\n  " + difference + '\n';
}

}  // namespace

std::vector<CaseName> FindCases(const std::string& folder) {
  std::vector<CaseName> cases;
  const auto root = SourceDir() / "tests/embedded" / folder;
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(root)) {
    if (entry.path().extension() == ".json") files.push_back(entry.path());
  }
  std::ranges::sort(files);
  for (const auto& file : files) {
    const Json json = ReadCases(file.string());
    for (size_t i = 0; i < json.size(); ++i) {
      cases.push_back({file.string(), json[i]["name"].get<std::string>(), i});
    }
  }
  return cases;
}

std::shared_ptr<Database> OpenFor(const CaseName& which) {
  const Json test = ReadCases(which.file)[which.index];
  OpenOptions options;
  options.clock = [] { return *DateTime::Parse("2026-03-15 10:00:00"); };
  const auto database = Database::Open(options);
  if (test.value("schema", false)) {
    const auto host = SourceDir() / "src/host";
    database->RunScript(ReadFile(host / "schema.sql"));
    database->RunScript(ReadFile(host / "base.sql"));
  }
  return database;
}

std::vector<std::string> BatchesOf(const CaseName& which) {
  const Json test = ReadCases(which.file)[which.index];
  std::vector<std::string> batches;
  for (const Json& step : test["steps"]) batches.push_back(Joined(step["sql"]));
  return batches;
}

std::string RunCase(const CaseName& which) {
  const Json test = ReadCases(which.file)[which.index];
  const auto database = OpenFor(which);
  const ConnectionPtr connection = database->NewSession();
  std::string differences;
  for (const Json& step : test["steps"]) differences += RunStep(step, *connection);
  return differences;
}

}  // namespace tavcc::sql
