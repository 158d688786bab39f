#include "automation/objects.h"

#include "automation/apartment.h"
#include "automation/border/border.h"
#include "automation/border/variant.h"
#include "foundation/conversions.h"
#include "foundation/error.h"
#include "host/connection_wrapper.h"
#include "host/recordset_wrapper.h"

namespace tavcc::automation {

namespace {

// ADO's own numbers (its enumerations of options, parameter directions and types).
constexpr int32_t kOptionUnspecified = -1;
constexpr int32_t kUseClient = 3;
constexpr int32_t kOpenDynamic = 2;
constexpr int32_t kLockReadOnly = 1;
constexpr int32_t kStoredProcedure = 4;
constexpr int32_t kParameterInput = 1;
constexpr int32_t kParameterOutput = 2;
constexpr int32_t kTypeInteger = 3;
constexpr int32_t kTypeVarWChar = 202;
constexpr int32_t kOutputTextLength = 4000;

template <class T>
ObjectPtr Make(IDispatch* object) {
  return std::make_shared<T>(object);
}

LateBound LateBoundOf(const Value& value) {
  ComPtr<IDispatch> object;
  if (value.IsObject()) object.Attach(UnwrapObject(value.object()));
  if (object == nullptr) throw AutomationError(RuntimeError::kObjectNotSet);
  return LateBound(object.Get());
}

}  // namespace

// ---- Dictionary and vector ---------------------------------------------------------------------

Value LateBoundDictionary::Item(std::string_view key) const {
  return late().GetDefault({Value(key)});
}

void LateBoundDictionary::SetItem(std::string_view key, Value value) {
  late().PutDefault(Value(key), value);
}

Value LateBoundDictionary::ItemOr(std::string_view key, Value fallback) const {
  return Lookup(key) ? Item(key) : fallback;
}

bool LateBoundDictionary::Lookup(std::string_view key) const {
  return ToBoolean(late().Call(L"Lookup", {Value(key)}));
}

int HostVectorAdapter::Size() const {
  return ToLong(late_.Get(L"Size"));
}
int HostVectorAdapter::LBound() const {
  return ToLong(late_.Get(L"LBound"));
}
int HostVectorAdapter::UBound() const {
  return ToLong(late_.Get(L"UBound"));
}
Value HostVectorAdapter::Item(int index) const {
  return late_.GetDefault({int32_t{index}});
}
void HostVectorAdapter::Add(Value value) {
  late_.Call(guessed::kAdd, {std::move(value)});
}

// ---- Recordset ---------------------------------------------------------------------------------

bool AdoRecordset::IsOpen() const {
  return ToLong(late_.Get(L"State")) == Connection::kStateOpen;
}
bool AdoRecordset::AtEnd() const {
  return ToBoolean(late_.Get(L"EOF"));
}
bool AdoRecordset::AtStart() const {
  return ToBoolean(late_.Get(L"BOF"));
}
void AdoRecordset::MoveNext() {
  late_.Call(L"MoveNext");
}
void AdoRecordset::MoveFirst() {
  late_.Call(L"MoveFirst");
}
int AdoRecordset::RecordCount() const {
  return ToLong(late_.Get(L"RecordCount"));
}

int AdoRecordset::FieldCount() const {
  return ToLong(LateBoundOf(late_.Get(L"Fields")).Get(L"Count"));
}

std::string AdoRecordset::FieldName(int index) const {
  const LateBound fields = LateBoundOf(late_.Get(L"Fields"));
  return ToText(LateBoundOf(fields.Get(L"Item", {int32_t{index}})).Get(L"Name"));
}

Value AdoRecordset::Field(int index) const {
  return FieldValue(int32_t{index});
}
Value AdoRecordset::Field(std::string_view name) const {
  return FieldValue(Value(name));
}

Value AdoRecordset::FieldValue(const Value& index) const {
  const LateBound fields = LateBoundOf(late_.Get(L"Fields"));
  return LateBoundOf(fields.Get(L"Item", {index})).Get(L"Value");
}

void AdoRecordset::Detach() {
  late_.PutReference(L"ActiveConnection", nullptr);
}
void AdoRecordset::Close() {
  late_.Call(L"Close");
}

// ---- Connection --------------------------------------------------------------------------------

RecordsetPtr AdoConnection::Execute(const SqlText& sql) {
  return ToObject<Recordset>(
      late_.Call(L"Execute", {Value(sql.text), Missing{}, kOptionUnspecified}));
}

RecordsetPtr AdoConnection::OpenClientRecordset(const SqlText& sql) {
  const LateBound recordset = NewComponent(Role::kRecordset);
  recordset.Put(L"CursorLocation", {kUseClient});
  recordset.Call(L"Open", {Value(sql.text), WrapObject(object()), kOpenDynamic, kLockReadOnly});
  return std::make_shared<AdoRecordset>(recordset.object());
}

void AdoConnection::CallProcedure(const SqlText& name, std::span<ProcedureParameter> parameters) {
  const LateBound command = NewComponent(Role::kCommand);
  command.PutReference(L"ActiveConnection", object());
  command.Put(L"CommandType", {kStoredProcedure});
  command.Put(L"CommandText", {Value(name.text)});
  const LateBound list = LateBoundOf(command.Get(L"Parameters"));
  for (const ProcedureParameter& parameter : parameters) {
    const bool is_text = parameter.output || parameter.value.IsText();
    list.Call(L"Append",
              {command.Call(L"CreateParameter",
                            {Value(parameter.name), is_text ? kTypeVarWChar : kTypeInteger,
                             parameter.output ? kParameterOutput : kParameterInput,
                             is_text ? kOutputTextLength : int32_t{0},
                             parameter.output ? Value(Missing{}) : parameter.value})});
  }
  command.Call(L"Execute");
  for (ProcedureParameter& parameter : parameters) {
    if (!parameter.output) continue;
    parameter.value = LateBoundOf(list.Get(L"Item", {Value(parameter.name)})).Get(L"Value");
  }
}

std::vector<ConnectionError> AdoConnection::Errors() const {
  const LateBound list = LateBoundOf(late_.Get(L"Errors"));
  std::vector<ConnectionError> errors;
  const int32_t count = ToLong(list.Get(L"Count"));
  for (int32_t i = 0; i < count; ++i) {
    const Value entry = list.Get(L"Item", {i});
    const LateBound error = LateBoundOf(entry);
    errors.push_back({FromHresult(ToLong(error.Get(L"Number"))), ToText(error.Get(L"Source")),
                      ToText(error.Get(L"Description")), ToText(error.Get(L"SQLState")),
                      entry.object()});
  }
  return errors;
}

int AdoConnection::State() const {
  return ToLong(late_.Get(L"State"));
}
void AdoConnection::Close() {
  late_.Call(L"Close");
}

// ---- Wrapping ----------------------------------------------------------------------------------

Value WrapObject(IDispatch* object) {
  if (object == nullptr) return ObjectPtr();
  const LateBound late(object);
  if (late.Has(L"Lookup")) return Make<HostDictionaryAdapter>(object);
  if (late.Has(L"UBound")) return Make<HostVectorAdapter>(object);
  if (late.Has(L"EOF")) return Make<AdoRecordset>(object);
  if (late.Has(L"Execute") && late.Has(L"Errors")) return Make<AdoConnection>(object);
  return Make<OpaqueObject>(object);
}

namespace {

// The adapter behind what watches it, if any; null where there is none.
const Adapter* AdapterOf(const Object* object) {
  if (const auto* adapter = dynamic_cast<const Adapter*>(object)) return adapter;
  if (const auto* rows = dynamic_cast<const RecordsetWrapper*>(object)) {
    return AdapterOf(rows->inner().get());
  }
  const auto* connection = dynamic_cast<const ConnectionWrapper*>(object);
  return connection == nullptr ? nullptr : AdapterOf(&connection->inner());
}

}  // namespace

IDispatch* UnwrapObject(const ObjectPtr& object) {
  if (object == nullptr) return nullptr;
  const Adapter* const adapter = AdapterOf(object.get());
  if (adapter == nullptr) throw AutomationError(RuntimeError::kTypeMismatch);
  adapter->object()->AddRef();
  return adapter->object();
}

}  // namespace tavcc::automation
