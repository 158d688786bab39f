#include "embedded/session/session.h"

#include <algorithm>
#include <functional>

#include "embedded/types/stored_conversions.h"
#include "foundation/error.h"

namespace tavcc::sql {
namespace {

struct SqlState {
  int number;
  std::string_view state;
};
// The states that the server's providers give these errors; 42000 the others.
constexpr SqlState kSqlStates[] = {
    {0, "01000"},
    {errors::kInvalidColumnName, "42S22"},
    {errors::kInvalidObjectName, "42S02"},
    {errors::kTextConversionFailed, "22018"},
    {errors::kTextNoDate, "22007"},
    {errors::kDateOutOfRange, "22007"},
    {errors::kNullIntoColumn, "23000"},
    {errors::kDeadlock, "40001"},
    {errors::kDuplicateKeyInUniqueIndex, "23000"},
    {errors::kDuplicateKeyInConstraint, "23000"},
    {errors::kTruncationInColumn, "22001"},
    {errors::kObjectExists, "42S01"},
    {errors::kDropOfMissing, "42S02"},
    {errors::kArithmeticOverflow, "22003"},
    {errors::kDivideByZero, "22012"},
    {errors::kTruncation, "22001"},
};

std::string SqlStateOf(const SqlError& error) {
  if (error.severity <= kMessageSeverity) return "01000";
  const auto found = std::ranges::find(kSqlStates, error.number, &SqlState::number);
  return std::string(found == std::end(kSqlStates) ? "42000" : found->state);
}

}  // namespace

const SqlError* FindFirstError(const std::vector<SqlError>& errors) {
  const auto found = std::ranges::find_if(
      errors, [](const SqlError& error) { return error.severity > kMessageSeverity; });
  return found == errors.end() ? nullptr : &*found;
}

Session::~Session() {
  try {
    Close();
  } catch (...) {
    // Nobody is left to be told.
  }
}

void Session::CheckOpen() const {
  if (!open_) throw AutomationError(RuntimeError::kObjectClosed);
}

void Session::RaiseFirst() const {
  if (const SqlError* error = FindFirstError(engine_->errors())) {
    throw AutomationError(error->number, std::string(kErrorSource), error->message);
  }
}

RecordsetPtr Session::Execute(const SqlText& sql) {
  CheckOpen();
  engine_->RunBatch(sql.text);
  RaiseFirst();
  return engine_->TakeResult();
}

RecordsetPtr Session::OpenClientRecordset(const SqlText& sql) {
  return Execute(sql);
}

void Session::CallProcedure(const SqlText& name, std::span<ProcedureParameter> parameters) {
  CheckOpen();
  std::vector<CallArgument> arguments;
  try {
    for (const ProcedureParameter& parameter : parameters) {
      arguments.push_back({parameter.name, FromValue(parameter.value), false, parameter.output});
    }
  } catch (const SqlError& error) {
    throw AutomationError(error.number, std::string(kErrorSource), error.message);
  }
  engine_->RunProcedure(name.text, arguments);
  RaiseFirst();
  for (size_t i = 0; i < arguments.size(); ++i) {
    if (!parameters[i].output) continue;
    parameters[i].value = ToValue(arguments[i].value.value, arguments[i].value.type);
  }
}

bool Session::RunBatch(std::string_view batch, BatchReader& reader) {
  CheckOpen();
  try {
    return engine_->RunBatch(batch, reader);
  } catch (...) {
    // The reader's error has left the batch wherever it was.
    Close();
    throw;
  }
}

std::vector<SchemaObject> Session::Objects() {
  CheckOpen();
  engine_->RunBatch("");  // takes note of what others changed
  std::vector<SchemaObject> objects;
  engine_->context().catalog.ForEachObject([&](const CatalogObject& object) {
    const auto kind = object.table  ? SchemaObject::Kind::kTable
                      : object.view ? SchemaObject::Kind::kView
                                    : SchemaObject::Kind::kProcedure;
    objects.push_back({kind, object.name});
  });
  std::ranges::sort(objects, std::less(), &SchemaObject::name);
  return objects;
}

std::vector<std::string> Session::Columns(std::string_view name) {
  CheckOpen();
  engine_->RunBatch("");
  const ObjectName object{SplitName(name)};
  std::vector<std::string> names;
  if (const TablePtr table = engine_->context().catalog.FindTable(object)) {
    for (const Column& column : table->columns) names.push_back(column.name);
  } else if (const auto view = engine_->context().catalog.Find(object); view && view->view) {
    engine_->RunBatch("SELECT TOP 0 * FROM " + WrittenName(object));
    const RecordsetPtr rows = engine_->TakeResult();
    for (int i = 0; rows->IsOpen() && i < rows->FieldCount(); ++i) {
      names.push_back(rows->FieldName(i));
    }
  }
  return names;
}

std::string Session::Definition(std::string_view name) {
  CheckOpen();
  engine_->RunBatch("");
  const auto object = engine_->context().catalog.Find(ObjectName{SplitName(name)});
  return object == nullptr ? "" : object->definition;
}

std::vector<ConnectionError> Session::Errors() const {
  std::vector<ConnectionError> out;
  for (const SqlError& error : engine_->errors()) {
    out.push_back({error.number, std::string(kErrorSource), error.message, SqlStateOf(error)});
  }
  return out;
}

void Session::Close() {
  if (!open_) return;
  open_ = false;
  engine_->Clear();
}

}  // namespace tavcc::sql
