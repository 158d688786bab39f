#include "embedded/session/plan_run.h"

#include <sqlite3.h>

#include "embedded/types/sqlite_value.h"
#include "embedded/types/stored_conversions.h"
#include "embedded/types/stored_form.h"
#include "embedded/types/type_rules.h"

namespace tavcc::sql {
namespace {

// Text that a column is too short for, with the names of the column that the parameter has.
[[noreturn]] void RaiseTruncation(const Parameter& parameter, const StoredValue& value) {
  const std::string cut = value.kind() == StoredValue::Kind::kText
                              ? value.text().substr(0, static_cast<size_t>(parameter.to.length))
                              : std::string();
  Raise(errors::kTruncationInColumn, parameter.table, parameter.column, cut);
}

// The short way of most numbers: a coefficient that takes on zeros and stays within 64 bits.
bool Rescale(const StoredValue& value, const SqlType& from, const SqlType& to, int64_t& out) {
  if (value.kind() != StoredValue::Kind::kInteger || to.kind != TypeKind::kDecimal) return false;
  if (!IsInteger(from.kind) && from.kind != TypeKind::kDecimal) return false;
  const int up = to.scale - from.scale;
  if (up < 0 || up >= std::ssize(kPowersOf10) || to.precision < 19) return false;
  return !__builtin_mul_overflow(value.integer(), kPowersOf10[static_cast<size_t>(up)], &out);
}

StoredValue ConvertParameter(const Parameter& parameter, const StoredValue& value,
                             const SqlType& from) {
  try {
    return ConvertStored(value, from, parameter.to, parameter.mode);
  } catch (const SqlError& error) {
    if (error.number == errors::kTruncation && !parameter.table.empty())
      RaiseTruncation(parameter, value);
    throw;
  }
}

}  // namespace

PlanRun::PlanRun(SessionContext& session, Plan& plan, const Frame& frame,
                 std::span<const StoredValue> row)
    : session_(session), plan_(plan) {
  if (!plan.statement) {
    plan.statement = session.store.Prepare(plan.emitted.sql);
    plan.converted.resize(plan.emitted.parameters.size());
  }
  sqlite3_stmt* const statement = plan.statement.get();
  StoredValue* next = plan.converted.data();
  int place = 0;
  for (const Parameter& parameter : plan.emitted.parameters) {
    StoredValue& converted = *next++;
    ++place;
    const auto index = static_cast<size_t>(parameter.index);
    const StoredValue* value = nullptr;
    const SqlType* from = &parameter.from;
    switch (parameter.source) {
      case Parameter::Source::kLiteral:
        value = &frame.literals[index].value;
        from = &frame.literals[index].type;
        break;
      case Parameter::Source::kVariable:
        value = &frame.variables[index];
        break;
      case Parameter::Source::kRow:
        value = &row[index];
        break;
      case Parameter::Source::kSession:
        converted = session.ValueOf(static_cast<SessionValue>(index), frame);
        value = &converted;
        break;
    }
    if (parameter.convert && !value->IsNull()) {
      int64_t rescaled = 0;
      if (Rescale(*value, *from, parameter.to, rescaled)) {
        sqlite3_bind_int64(statement, place, rescaled);
        continue;
      }
      if (!IsSameStored(*from, parameter.to)) {
        converted = ConvertParameter(parameter, *value, *from);
        value = &converted;
      }
    }
    BindStored(statement, place, *value);
  }
}

PlanRun::~PlanRun() {
  sqlite3_reset(plan_.statement.get());
}

bool PlanRun::Step() {
  return session_.store.Step(plan_.statement.get());
}

int PlanRun::ColumnCount() const {
  return sqlite3_column_count(plan_.statement.get());
}

StoredValue PlanRun::Column(int index) const {
  return FromSqlite(sqlite3_column_value(plan_.statement.get(), index));
}

void PlanRun::Read(int index, StoredValue& out) const {
  ReadSqlite(sqlite3_column_value(plan_.statement.get(), index), out);
}

// Another program may have written into the file, or the disk may have lost something.
void PlanRun::ReadTyped(size_t column, const ResultShape& shape, StoredValue& out) const {
  Read(static_cast<int>(column), out);
  const SqlType& type = shape.types[column];
  if (IsStoredAs(out, type)) return;
  const std::string& name = shape.names[column];
  const std::string named = name.empty() ? "column " + std::to_string(column + 1) : name;
  throw session_.store.Damage(named + " holds " + std::string(FormText(out)) + " that no " +
                              TypeText(type) + " can be");
}

}  // namespace tavcc::sql
