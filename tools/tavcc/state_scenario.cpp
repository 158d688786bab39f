#include "tavcc/state_scenario.h"

#include <fmt/core.h>

#include <algorithm>
#include <set>
#include <utility>

#include "foundation/conversions.h"
#include "foundation/text.h"
#include "host/company.h"
#include "host/schema.h"
#include "language/language.h"
#include "scenario/embedded_backend.h"
#include "scenario/prepared_backend.h"
#include "scenario/runner.h"
#include "scenario/values.h"
#include "tavcc/bills.h"

namespace tavcc {
namespace {

constexpr std::string_view kSettings = "t_SystemProfile";
constexpr int kMostTries = 600;  // of leaving rows out

const StatementObserver kSeeingAll = {.rows = StatementObserver::kAllRows};

std::string Literal(const Value& value) {
  switch (value.kind()) {
    case Value::Kind::kNull:
      return "NULL";
    case Value::Kind::kText:
      return SqlLiteral(value.text());
    case Value::Kind::kDate:
      return "'" + JsonFromValue(value)["date"].get<std::string>() + "'";
    case Value::Kind::kBoolean:
      return value.boolean() ? "1" : "0";
    case Value::Kind::kDecimal:
      return value.decimal().Normalized().ToText();
    case Value::Kind::kDouble:
      return fmt::format("{}", value.number());
    default:
      return ToText(value);
  }
}

bool HasIdentity(std::string_view table) {
  const std::string_view schema = SchemaScript();
  const size_t begin = schema.find(Cat("CREATE TABLE ", table, " "));
  const std::string_view body = schema.substr(begin, schema.find("\nGO", begin) - begin);
  return body.find("IDENTITY(") != std::string_view::npos;
}

std::string Insert(const std::string& table, const std::string& columns,
                   const std::string& values) {
  return fmt::format("insert into {}({}) values({})", table, columns, values);
}

// What an insert leaves in the columns that it does not name; empty where it must name them, as it
// must the key's, which come first.
std::vector<std::string> Defaults(Connection& scratch, const TouchedTable& table) {
  std::vector<std::string> defaults(table.columns.size());
  if (table.rows.empty() || HasIdentity(table.name)) return defaults;
  std::string columns, values;
  for (size_t named = 0; named < table.columns.size(); ++named) {
    columns += (named == 0 ? "" : ",") + table.columns[named];
    values += (named == 0 ? "" : ",") + Literal(table.rows[0][named]);
    try {
      scratch.Execute(Insert(table.name, columns, values));
    } catch (const AutomationError&) {
      continue;
    }
    const RecordsetPtr row = scratch.Execute(fmt::format("SELECT * FROM {}", table.name));
    for (size_t i = named + 1; i < table.columns.size(); ++i) {
      defaults[i] = Literal(row->Field(table.columns[i]));
    }
    break;
  }
  return defaults;
}

// One database for all tries, each of which is a transaction that is rolled back: making one takes
// longer than most cases.
PreparedDatabase TrialDatabase(DateTime now, const std::vector<TouchedTable>& tables) {
  const sql::OpenOptions options = CompanyOptions([now] { return now; });
  const std::shared_ptr<sql::Database> database = sql::Database::Open(options);
  std::string at_start;
  for (const TouchedTable& table : tables) {
    if (HasIdentity(table.name)) at_start += fmt::format("TRUNCATE TABLE {}\n", table.name);
  }
  return {options.path, [database](std::string_view) { return database->NewSession(); },
          [database](Connection& session) { database->Reopen(session); }, at_start};
}

// One row of the start state.
struct StateRow {
  size_t table;
  std::string insert;
};

class StateBuilder {
 public:
  StateBuilder(const Recording& recording, const std::vector<TouchedTable>& tables)
      : recording_(recording),
        tables_(tables),
        backend_(MakePreparedBackend(TrialDatabase(recording.now, tables), kSeeingAll)) {
    Erp scratch{sql::OpenOptions{}};
    scratch.RunScript(SchemaScript());
    for (size_t i = 0; i < tables.size(); ++i) {
      if (EqualsIgnoringCase(tables[i].name, kSettings)) continue;
      AddRows(i, Defaults(*scratch.connection(), tables[i]));
    }
    case_ = ParseScenario("the case", Show(ScenarioWith({})));
  }

  Json Build();

 private:
  // What a try comes to: what the calls answer and were answered, and what they change.
  struct Trial {
    std::string failures;  // of the scenario
    std::string effects;
    bool is_whole = true;  // the transaction held to the end
  };

  void AddRows(size_t table, const std::vector<std::string>& defaults);
  Json Profile() const;
  Json ScenarioWith(const std::vector<StateRow>& rows) const;
  Trial Try(const std::vector<StateRow>& rows) const;
  std::set<std::string> Contents(Connection& connection) const;
  bool Suffices(const std::vector<StateRow>& rows, const Trial& whole) {
    if (++tries_ > kMostTries) return false;
    const Trial trial = Try(rows);
    return trial.is_whole && trial.failures.empty() && trial.effects == whole.effects;
  }
  void LeaveOutRows(const Trial& whole);
  bool NeedsClock(Json scenario) const;

  const Recording& recording_;
  const std::vector<TouchedTable>& tables_;
  std::unique_ptr<Backend> backend_;
  std::vector<StateRow> rows_;
  Scenario case_;  // without rows
  int tries_ = 0;
};

void StateBuilder::AddRows(size_t index, const std::vector<std::string>& defaults) {
  const TouchedTable& table = tables_[index];
  const bool identity = HasIdentity(table.name);
  for (const std::vector<Value>& row : table.rows) {
    std::string columns, values;
    for (size_t i = 0; i < row.size(); ++i) {
      const std::string value = Literal(row[i]);
      if (value == defaults[i]) continue;
      columns += (columns.empty() ? "" : ",") + table.columns[i];
      values += (values.empty() ? "" : ",") + value;
    }
    std::string insert = Insert(table.name, columns, values);
    if (identity) {
      insert = fmt::format("set identity_insert {0} on {1} set identity_insert {0} off", table.name,
                           insert);
    }
    rows_.push_back({index, std::move(insert)});
  }
}

// The settings that the host was asked for, and those that a statement reads for itself.
Json StateBuilder::Profile() const {
  Json profile = Json::object();
  const auto text = [](const Value& value) {
    return value.IsEmpty() || value.IsNull() ? Json() : Json(ToText(value));
  };
  for (const HostAnswer& setting : recording_.answers) {
    if (setting.question != HostQuestion::kSetting) continue;
    profile[setting.category + "." + setting.key] = text(setting.value);
  }
  for (const TouchedTable& table : tables_) {
    if (!EqualsIgnoringCase(table.name, kSettings)) continue;
    for (const std::vector<Value>& row : table.rows) {
      const std::string category = ToText(row[0]), key = ToText(row[1]);
      const bool read = std::ranges::any_of(recording_.tapes, [&](const Tape& tape) {
        return std::ranges::any_of(tape, [&](const LoggedStatement& statement) {
          return UpperCase(statement.text).find(UpperCase("'" + key + "'")) != std::string::npos;
        });
      });
      if (read) profile[category + "." + key] = text(row[2]);
    }
  }
  return profile;
}

Json StateBuilder::ScenarioWith(const std::vector<StateRow>& rows) const {
  Json scenario = Json::object();
  scenario["name"] = recording_.name;
  if (!recording_.note.empty()) scenario["note"] = recording_.note;
  scenario["user"] = recording_.host.user_id;
  scenario["now"] = recording_.now.ToText();
  if (const Json profile = Profile(); !profile.empty()) scenario["profile"] = profile;
  for (const TouchedTable& table : tables_) {
    if (EqualsIgnoringCase(table.name, "t_PeriodDate")) {
      scenario["sql"].push_back("delete from t_PeriodDate");
    }
  }
  for (const StateRow& row : rows) scenario["sql"].push_back(row.insert);
  for (size_t i = 0; i < recording_.steps.size(); ++i) {
    Json step = recording_.steps[i];
    step["statements"] = ListedStatements(recording_.tapes[i]);
    scenario["steps"].push_back(std::move(step));
  }
  return scenario;
}

std::set<std::string> StateBuilder::Contents(Connection& connection) const {
  std::set<std::string> contents;
  for (const TouchedTable& table : tables_) {
    const RecordsetPtr rows = connection.Execute(fmt::format("SELECT * FROM {}", table.name));
    std::map<std::string, int> times;
    for (; !rows->AtEnd(); rows->MoveNext()) {
      std::string text = table.name;
      for (int i = 0; i < rows->FieldCount(); ++i) text += "," + Literal(rows->Field(i));
      contents.insert(fmt::format("{} {}", text, ++times[text]));
    }
  }
  return contents;
}

StateBuilder::Trial StateBuilder::Try(const std::vector<StateRow>& rows) const {
  StartState start = case_.start;
  for (const StateRow& row : rows) start.sql.push_back(row.insert);
  Trial trial;
  const auto session = backend_->Open(start);
  const std::set<std::string> before = Contents(*session->connection());
  for (const Step& step : case_.steps) {
    const CallOutcome outcome = CallStep(*session, step, std::nullopt);
    for (const std::string& difference : StepDifferences(step, outcome)) {
      if (trial.failures.empty())
        trial.failures = fmt::format("step {}: {}", step.number, difference);
    }
    for (const LoggedStatement& sent : outcome.sent) {
      if (sent.seen == nullptr) continue;
      for (const auto& row : sent.seen->rows) {
        for (const Value& value : row) trial.effects += Literal(value) + ",";
        trial.effects += "\n";
      }
    }
  }
  const std::set<std::string> after = Contents(*session->connection());
  std::vector<std::string> changes;
  std::ranges::set_symmetric_difference(before, after, std::back_inserter(changes));
  for (const std::string& change : changes) trial.effects += change + "\n";
  trial.is_whole = session->SkipReason().empty();
  return trial;
}

// Leaves out what it can: first whole tables, then ever smaller pieces.
void StateBuilder::LeaveOutRows(const Trial& whole) {
  for (size_t piece = rows_.size(); piece > 0; piece /= 2) {
    for (size_t at = 0; at < rows_.size();) {
      std::vector<StateRow> fewer = rows_;
      const size_t end = std::min(at + piece, fewer.size());
      fewer.erase(fewer.begin() + static_cast<std::ptrdiff_t>(at),
                  fewer.begin() + static_cast<std::ptrdiff_t>(end));
      if (Suffices(fewer, whole)) {
        rows_ = std::move(fewer);
      } else {
        at = end;
      }
    }
  }
}

// Whether the case comes out otherwise at another time.
bool StateBuilder::NeedsClock(Json scenario) const {
  scenario["now"] = "2043-08-09 11:12:13";
  const Scenario later = ParseScenario("the case", Show(scenario));
  return !RunScenario(later, *MakeEmbeddedBackend()).empty();
}

Json StateBuilder::Build() {
  Trial whole = Try(rows_);
  if (!whole.is_whole || !whole.failures.empty()) {
    // An error of the case may have ended the transaction: each try gets a database of its own.
    backend_ = MakeEmbeddedBackend(kSeeingAll);
    whole = Try(rows_);
  }
  if (!whole.failures.empty()) {
    throw JsonError(Say("the rows that were read do not tell the whole case: {}", whole.failures));
  }
  LeaveOutRows(whole);
  Json scenario = ScenarioWith(rows_);
  if (NeedsClock(scenario)) scenario["needs_clock"] = true;
  return scenario;
}

}  // namespace

Json StateScenario(const Recording& recording, const std::vector<TouchedTable>& tables) {
  try {
    return StateBuilder(recording, tables).Build();
  } catch (const AutomationError& error) {
    throw JsonError(Say("the rows that were read make no start state: {}", error.description()));
  }
}

}  // namespace tavcc
