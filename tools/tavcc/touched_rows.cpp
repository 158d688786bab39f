#include "tavcc/touched_rows.h"

#include <fmt/core.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include "embedded/script.h"
#include "embedded/syntax/lexer.h"
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
constexpr int kMostRowsRead = 5000;    // that are read of any table, and as many by joins
constexpr int kMostFollowed = 500;     // rows of one value in a small table whose ids are followed

bool IsText(const sql::Token& token) {
  return token.kind == sql::TokenKind::kText || token.kind == sql::TokenKind::kNationalText;
}

// One that may be an id: no more digits than a long has.
bool IsId(const sql::Token& token) {
  return token.kind == sql::TokenKind::kInteger && token.text.size() < 10;
}

// A word, or a name between its marks.
std::string NameOf(const sql::Token& token) {
  return token.kind == sql::TokenKind::kQuotedName ? sql::Unquote(token) : std::string(token.text);
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

void TouchedRows::Known::Add(const Value& value) {
  const bool number = value.kind() == Value::Kind::kLong || value.kind() == Value::Kind::kInteger;
  if (number && ToLong(value) > 0) numbers.insert(ToText(value));
  if (value.IsText() && !value.text().empty()) texts.insert(value.text());
}

const std::set<std::string>& TouchedRows::Known::KeysOf(std::string_view column) const {
  return IsTextKey(column) ? texts : numbers;
}

TouchedRows::Known TouchedRows::Known::TakeNew(Known& earlier) const {
  Known added{Minus(numbers, earlier.numbers), Minus(texts, earlier.texts)};
  earlier = *this;
  return added;
}

TouchedRows::TouchedRows(Erp& erp) : erp_(erp) {
  // The schema as the embedded database has it.
  Erp schema{sql::OpenOptions{}};
  schema.RunScript(SchemaScript());
  for (const sql::ScriptBatch& batch : sql::SplitScript(SchemaScript())) {
    std::vector<std::string> words;
    for (sql::Lexer lexer(batch.text); lexer.Peek().kind != sql::TokenKind::kEnd;) {
      words.push_back(NameOf(lexer.Take()));
    }
    const auto create = std::ranges::find(words, "CREATE");
    if (words.end() - create < 3) continue;
    if (create[1] == "TABLE") {
      AddTable(*schema.connection(), create[2]);
    } else if (create[1] == "VIEW" || create[1] == "PROCEDURE") {
      AddBehind(create[2], words);
    }
  }
}

void TouchedRows::AddTable(Connection& schema, const std::string& name) {
  const RecordsetPtr none = schema.Execute(fmt::format("SELECT * FROM {} WHERE 1 = 0", name));
  columns_[name] = FieldNames(*none);
}

// Whatever the text of a view or procedure names, or what stands behind that.
void TouchedRows::AddBehind(const std::string& name, const std::vector<std::string>& words) {
  auto& behind = behind_[name];
  for (const std::string& word : words) {
    if (columns_.contains(word)) behind.insert(word);
    if (const auto inner = behind_.find(word); word != name && inner != behind_.end()) {
      behind.insert(inner->second.begin(), inner->second.end());
    }
  }
}

RecordsetPtr TouchedRows::Ask(const std::string& sql) {
  return erp_.host().GetUnloggedConnection(erp_.dsn())->Execute(sql);
}

void TouchedRows::Look(const LoggedStatement& statement) {
  std::set<std::string, CaselessLess> names;
  for (sql::Lexer lexer(statement.text); lexer.Peek().kind != sql::TokenKind::kEnd;) {
    const sql::Token& token = lexer.Take();
    const std::string name = NameOf(token);
    if (IsText(token)) {
      if (const std::string text = sql::Unquote(token); !text.empty()) known_.texts.insert(text);
    } else if (IsId(token)) {
      known_.numbers.insert(name);
    } else if (columns_.contains(name)) {
      names.insert(name);
    } else if (const auto behind = behind_.find(name); behind != behind_.end()) {
      names.insert(behind->second.begin(), behind->second.end());
    }
  }
  for (const ProcedureParameter& parameter : statement.parameters) {
    if (parameter.value.kind() == Value::Kind::kLong) {
      known_.numbers.insert(ToText(parameter.value));
    }
  }
  for (const std::string& name : names) Read(name);
  // Each of them may join any other.
  for (const std::string& name : names) ReadJoined(readings_.at(name));
}

void TouchedRows::Note(const LoggedStatement& statement) {
  if (statement.answer == nullptr) return;
  for (const std::vector<Value>& row : statement.answer->rows) {
    for (const Value& value : row) known_.Add(value);
  }
}

void TouchedRows::Read(const std::string& name) {
  const auto [place, first] = readings_.try_emplace(name);
  Reading& reading = place->second;
  if (first) {
    reading.table = tables_.size();
    tables_.push_back({columns_.find(name)->first, {}, {}});
    const auto count = ToLong(Ask(fmt::format("SELECT COUNT(*) FROM {}", name))->Field(0));
    reading.whole = count <= kMostWhole;
    if (reading.whole) {
      TouchedTable& table = tables_.back();
      table.rows = Rows(table, {}, kMostWhole);
    }
  }
  reading.whole ? FollowWhole(reading) : ReadMore(reading);
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

TouchedRows::Leads TouchedRows::LeadsTo(const std::string& table, const Known& keys) {
  Leads leads;
  for (const std::string& column : columns_.at(table)) {
    if (!IsKey(column)) continue;
    const std::set<std::string>& values = keys.KeysOf(column);
    if (values.empty()) continue;
    const RecordsetPtr rows = Ask(
        fmt::format("SELECT {0} FROM {1} WHERE {0} IN ({2}) GROUP BY {0} HAVING COUNT(*) <= {3}",
                    column, table, InList(values, IsTextKey(column)), kMostOfOneValue));
    for (; !rows->AtEnd(); rows->MoveNext()) leads[column].insert(ToText(rows->Field(0)));
  }
  return leads;
}

std::vector<std::vector<Value>> TouchedRows::Rows(TouchedTable& table, const Leads& leads,
                                                  int most) {
  std::string condition;
  for (const auto& [column, values] : leads) {
    condition += fmt::format("{}{} IN ({})", condition.empty() ? " WHERE " : " OR ", column,
                             InList(values, IsTextKey(column)));
  }
  const RecordsetPtr answer =
      Ask(fmt::format("SELECT TOP {} * FROM {}{}", most + 1, table.name, condition));
  std::vector<int> places;
  table.columns.clear();
  for (const std::string& column : columns_.at(table.name)) {
    for (int i = 0; i < answer->FieldCount(); ++i) {
      if (!EqualsIgnoringCase(answer->FieldName(i), column)) continue;
      places.push_back(i);
      table.columns.push_back(column);
    }
  }
  std::vector<std::vector<Value>> rows;
  for (; !answer->AtEnd(); answer->MoveNext()) {
    std::vector<Value>& row = rows.emplace_back();
    for (const int place : places) row.push_back(answer->Field(place));
  }
  return rows;
}

// Rows that were read already may have been changed since.
int TouchedRows::Add(Reading& reading, std::vector<std::vector<Value>> rows, const Leads& leads) {
  int added = 0;
  for (std::vector<Value>& row : rows) {
    if (WasRead(reading, row)) continue;
    tables_[reading.table].rows.push_back(std::move(row));
    ++added;
  }
  for (const auto& [column, values] : leads) {
    reading.read[column].insert(values.begin(), values.end());
  }
  return added;
}

void TouchedRows::ReadMore(Reading& reading) {
  TouchedTable& table = tables_[reading.table];
  const Leads leads = LeadsTo(table.name, known_.TakeNew(reading.looked_for));
  if (leads.empty()) return;
  std::vector<std::vector<Value>> rows = Rows(table, leads, kMostRowsRead);
  for (const std::vector<Value>& row : rows) FollowRow(table, row);
  Add(reading, std::move(rows), leads);
  if (static_cast<int>(table.rows.size()) - reading.joined > kMostRowsRead) {
    throw CommandError(Say(
        "--record-state: more than {} rows of {} may matter to the case; --record has no such limit",
        kMostRowsRead, table.name));
  }
}

void TouchedRows::ReadJoined(Reading& reading) {
  if (reading.whole) return;
  TouchedTable& table = tables_[reading.table];
  const Leads leads = LeadsTo(table.name, joined_.TakeNew(reading.joins_looked_for));
  if (leads.empty()) return;
  std::vector<std::vector<Value>> rows = Rows(table, leads, kMostRowsRead);
  // A join may lead to more than the case needs: whether the rows tell it whole shows when it is
  // run.
  if (reading.joined + static_cast<int>(rows.size()) > kMostRowsRead) return;
  reading.joined += Add(reading, std::move(rows), leads);
}

void TouchedRows::FollowRow(const TouchedTable& table, const std::vector<Value>& row) {
  for (size_t i = 0; i < row.size(); ++i) {
    if (IsKey(table.columns[i])) joined_.Add(row[i]);
  }
}

void TouchedRows::FollowWhole(Reading& reading) {
  const TouchedTable& table = tables_[reading.table];
  const Known keys = known_.TakeNew(reading.looked_for);
  for (size_t i = 0; i < table.columns.size(); ++i) {
    if (!IsKey(table.columns[i])) continue;
    const std::set<std::string>& values = keys.KeysOf(table.columns[i]);
    if (values.empty()) continue;
    std::map<std::string, std::vector<const std::vector<Value>*>> found;
    for (const std::vector<Value>& row : table.rows) {
      if (row[i].IsNull()) continue;
      if (const std::string value = ToText(row[i]); values.contains(value)) {
        found[value].push_back(&row);
      }
    }
    for (const auto& [value, rows] : found) {
      if (rows.size() > static_cast<size_t>(kMostFollowed)) continue;
      for (const std::vector<Value>* row : rows) FollowRow(table, *row);
    }
  }
}

}  // namespace tavcc
