#include "tavcc/touched_rows.h"

#include <fmt/core.h>

#include <algorithm>
#include <cctype>
#include <iterator>
#include <utility>

#include "embedded/script.h"
#include "foundation/conversions.h"
#include "foundation/text.h"
#include "host/schema.h"
#include "language/language.h"
#include "tavcc/bills.h"
#include "tavcc/command.h"
#include "tavcc/output.h"

namespace tavcc {
namespace {

constexpr int kMostWhole = 2000;       // rows of a table that is read whole
constexpr int kMostOfOneValue = 2000;  // rows that a value leads to
constexpr int kMostRowsRead = 5000;    // that are read of any table

bool IsWordCharacter(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '#' || c == '@' ||
         (c & 0x80) != 0;
}

// Words, numbers and quoted texts, in order; each with its quote where it has one.
std::vector<std::string> TokensOf(std::string_view sql) {
  std::vector<std::string> tokens;
  for (size_t at = 0; at < sql.size();) {
    size_t end = at;
    if (sql.substr(at).starts_with("--")) {
      at = std::min(sql.find('\n', at), sql.size());
      continue;
    }
    if (sql[at] == '\'') {
      end = std::min(sql.find('\'', at + 1), sql.size());
      tokens.emplace_back(sql.substr(at, end - at));
      at = end + 1;
      continue;
    }
    while (end < sql.size() && IsWordCharacter(sql[end])) ++end;
    if (end > at) tokens.emplace_back(sql.substr(at, end - at));
    at = std::max(end, at + 1);
  }
  return tokens;
}

bool IsNumberToken(const std::string& token) {
  return !token.empty() && token.size() < 10 &&
         std::ranges::all_of(token, [](unsigned char c) { return std::isdigit(c) != 0; });
}

// A number of a bill or the like, which is a text.
bool IsTextKey(std::string_view column) {
  return column.ends_with("No") || column.ends_with("NO");
}

// By which columns a row is found: ids and numbers of bills and items.
bool IsKey(std::string_view column) {
  return column.ends_with("ID") || column.ends_with("Id") || IsTextKey(column);
}

template <class Texts>
std::string InList(const Texts& values, bool quoted) {
  std::string list;
  for (const std::string& value : values) {
    list += (list.empty() ? "" : ",") + (quoted ? SqlLiteral(value) : value);
  }
  return list;
}

std::set<std::string> Minus(const std::set<std::string>& all, const std::set<std::string>& some) {
  std::set<std::string> rest;
  std::ranges::set_difference(all, some, std::inserter(rest, rest.end()));
  return rest;
}

}  // namespace

TouchedRows::TouchedRows(Erp& erp) : erp_(erp) {
  // The schema as the embedded database has it.
  Erp schema{sql::OpenOptions{}};
  schema.RunScript(SchemaScript());
  for (const sql::ScriptBatch& batch : sql::SplitScript(SchemaScript())) {
    const std::vector<std::string> tokens = TokensOf(batch.text);
    const auto create = std::ranges::find(tokens, "CREATE");
    if (tokens.end() - create < 3) continue;
    if (create[1] == "TABLE") {
      AddTable(*schema.connection(), create[2]);
    } else if (create[1] == "VIEW" || create[1] == "PROCEDURE") {
      AddBehind(create[2], tokens);
    }
  }
}

void TouchedRows::AddTable(Connection& schema, const std::string& name) {
  const RecordsetPtr none = schema.Execute(fmt::format("SELECT * FROM {} WHERE 1 = 0", name));
  columns_[name] = FieldNames(*none);
}

// Whatever the text of a view or procedure names, or what stands behind that.
void TouchedRows::AddBehind(const std::string& name, const std::vector<std::string>& tokens) {
  auto& behind = behind_[name];
  for (const std::string& token : tokens) {
    if (columns_.contains(token)) behind.insert(token);
    if (const auto inner = behind_.find(token); token != name && inner != behind_.end()) {
      behind.insert(inner->second.begin(), inner->second.end());
    }
  }
}

RecordsetPtr TouchedRows::Ask(const std::string& sql) {
  return erp_.host().GetUnloggedConnection(erp_.dsn())->Execute(sql);
}

void TouchedRows::Look(const LoggedStatement& statement) {
  std::set<std::string, CaselessLess> names;
  for (const std::string& token : TokensOf(statement.text)) {
    if (token.starts_with('\'')) {
      if (token.size() > 1) known_.texts.insert(token.substr(1));
    } else if (IsNumberToken(token)) {
      known_.numbers.insert(token);
    } else if (columns_.contains(token)) {
      names.insert(token);
    } else if (const auto behind = behind_.find(token); behind != behind_.end()) {
      names.insert(behind->second.begin(), behind->second.end());
    }
  }
  for (const ProcedureParameter& parameter : statement.parameters) {
    if (parameter.value.kind() == Value::Kind::kLong) {
      known_.numbers.insert(ToText(parameter.value));
    }
  }
  for (const std::string& name : names) Read(name);
}

void TouchedRows::Note(const LoggedStatement& statement) {
  if (statement.answer == nullptr) return;
  for (const std::vector<Value>& row : statement.answer->rows) {
    for (const Value& value : row) {
      const bool number =
          value.kind() == Value::Kind::kLong || value.kind() == Value::Kind::kInteger;
      if (number && ToLong(value) > 0) known_.numbers.insert(ToText(value));
      if (value.IsText() && !value.text().empty()) known_.texts.insert(value.text());
    }
  }
}

void TouchedRows::Read(const std::string& name) {
  const auto known = readings_.find(name);
  if (known != readings_.end()) {
    if (!known->second.whole) ReadMore(known->second);
    return;
  }
  Reading& reading = readings_[name];
  reading.table = tables_.size();
  const auto schema = columns_.find(name);
  tables_.push_back({schema->first, {}, {}});
  const auto count = ToLong(Ask(fmt::format("SELECT COUNT(*) FROM {}", name))->Field(0));
  reading.whole = count <= kMostWhole;
  ReadMore(reading);
}

bool TouchedRows::WasRead(const Reading& reading, const std::vector<Value>& row) const {
  const TouchedTable& table = tables_[reading.table];
  for (size_t i = 0; i < table.columns.size(); ++i) {
    const auto values = reading.read.find(table.columns[i]);
    if (values == reading.read.end() || row[i].IsNull()) continue;
    if (values->second.contains(ToText(row[i]))) return true;
  }
  return false;
}

TouchedRows::Leads TouchedRows::LeadsTo(const std::string& table, const Known& looked_for) {
  const auto numbers = Minus(known_.numbers, looked_for.numbers);
  const auto texts = Minus(known_.texts, looked_for.texts);
  Leads leads;
  for (const std::string& column : columns_.at(table)) {
    if (!IsKey(column)) continue;
    const bool text = IsTextKey(column);
    const std::set<std::string>& values = text ? texts : numbers;
    if (values.empty()) continue;
    const RecordsetPtr rows = Ask(
        fmt::format("SELECT {0} FROM {1} WHERE {0} IN ({2}) GROUP BY {0} HAVING COUNT(*) <= {3}",
                    column, table, InList(values, text), kMostOfOneValue));
    for (; !rows->AtEnd(); rows->MoveNext()) leads[column].insert(ToText(rows->Field(0)));
  }
  return leads;
}

// Rows that were read already may have been changed since.
void TouchedRows::ReadMore(Reading& reading) {
  TouchedTable& table = tables_[reading.table];
  std::string condition;
  Leads leads;
  if (!reading.whole) {
    leads = LeadsTo(table.name, std::exchange(reading.looked_for, known_));
    if (leads.empty()) return;
    for (const auto& [column, values] : leads) {
      condition += fmt::format("{}{} IN ({})", condition.empty() ? " WHERE " : " OR ", column,
                               InList(values, IsTextKey(column)));
    }
  }
  const RecordsetPtr rows =
      Ask(fmt::format("SELECT TOP {} * FROM {}{}", kMostRowsRead + 1, table.name, condition));
  std::vector<int> places;
  table.columns.clear();
  for (const std::string& column : columns_.at(table.name)) {
    for (int i = 0; i < rows->FieldCount(); ++i) {
      if (!EqualsIgnoringCase(rows->FieldName(i), column)) continue;
      places.push_back(i);
      table.columns.push_back(column);
    }
  }
  for (; !rows->AtEnd(); rows->MoveNext()) {
    std::vector<Value> row;
    for (const int place : places) row.push_back(rows->Field(place));
    if (!WasRead(reading, row)) table.rows.push_back(std::move(row));
  }
  if (table.rows.size() > static_cast<size_t>(kMostRowsRead)) {
    throw CommandError(Say(
        "--record-state: more than {} rows of {} may matter to the case; --record has no such limit",
        kMostRowsRead, table.name));
  }
  for (const auto& [column, values] : leads) {
    reading.read[column].insert(values.begin(), values.end());
  }
}

}  // namespace tavcc
