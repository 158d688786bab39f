#include "host/automation/ado_objects.h"

#include "automation/border/border.h"
#include "foundation/conversions.h"
#include "foundation/text.h"
#include "host/automation/dispatch_object.h"
#include "host/automation/objects_of_ports.h"

namespace tavcc::host_automation {

namespace {

// A recordset's place: filled at once, or by Open.
struct RecordsetPlace {
  RecordsetPtr recordset;
  RecordsetPtr& Require() {
    if (recordset == nullptr) throw AutomationError(RuntimeError::kObjectClosed);
    return recordset;
  }
};
using PlacePtr = std::shared_ptr<RecordsetPlace>;

Handler Accepted() {
  return [](const Arguments&) -> Value { return Empty{}; };
}

Value FieldFace(const PlacePtr& place, const Value& index) {
  const auto read = [=](auto&& by_index, auto&& by_name) {
    return index.IsText() ? by_name(index.text()) : by_index(ToLong(index));
  };
  const auto value = [=](const Arguments&) {
    return read([&](int32_t i) { return place->Require()->Field(i); },
                [&](const std::string& name) { return place->Require()->Field(name); });
  };
  const auto name = [=](const Arguments&) -> Value {
    return read([&](int32_t i) -> Value { return place->Require()->FieldName(i); },
                [&](const std::string& text) -> Value { return text; });
  };
  return OwnedObject(NewDispatchObject({{"Value", value, nullptr, true}, {"Name", name}}, nullptr));
}

Value FieldsFace(const PlacePtr& place) {
  return OwnedObject(NewDispatchObject(
      {{"Count",
        [=](const Arguments&) -> Value { return int32_t{place->Require()->FieldCount()}; }},
       {"Item", [=](const Arguments& a) { return FieldFace(place, a[0]); }, nullptr, true}},
      nullptr));
}

int32_t StateOf(const PlacePtr& place) {
  const bool open = place->recordset != nullptr && place->recordset->IsOpen();
  return open ? Connection::kStateOpen : Connection::kStateClosed;
}

std::vector<Member> RecordsetMembers(const PlacePtr& place) {
  return {
      {"State", [=](const Arguments&) -> Value { return StateOf(place); }},
      {"EOF", [=](const Arguments&) -> Value { return place->Require()->AtEnd(); }},
      {"BOF", [=](const Arguments&) -> Value { return place->Require()->AtStart(); }},
      {"MoveNext",
       [=](const Arguments&) -> Value { return place->Require()->MoveNext(), Empty{}; }},
      {"MoveFirst",
       [=](const Arguments&) -> Value { return place->Require()->MoveFirst(), Empty{}; }},
      {"RecordCount",
       [=](const Arguments&) -> Value { return int32_t{place->Require()->RecordCount()}; }},
      {"Fields", [=](const Arguments&) { return FieldsFace(place); }},
      {"ActiveConnection", Accepted(),
       [=](const Arguments&) -> Value { return place->Require()->Detach(), Empty{}; }},
      {"Close", [=](const Arguments&) -> Value { return place->Require()->Close(), Empty{}; }},
  };
}

Value ErrorFace(const ConnectionError& error) {
  return OwnedObject(NewDispatchObject(
      {{"Number",
        [=](const Arguments&) -> Value { return int32_t{automation::ToHresult(error.number)}; }},
       {"Source", [=](const Arguments&) -> Value { return error.source; }},
       {"Description", [=](const Arguments&) -> Value { return error.description; }, nullptr, true},
       {"SQLState", [=](const Arguments&) -> Value { return error.sql_state; }},
       {"NativeError", [=](const Arguments&) -> Value { return error.number; }}},
      std::make_shared<ErrorEntry>(error)));
}

Value ErrorsFace(const ConnectionPtr& connection) {
  return OwnedObject(
      NewDispatchObject({{"Count",
                          [=](const Arguments&) -> Value {
                            return static_cast<int32_t>(connection->Errors().size());
                          }},
                         {"Item",
                          [=](const Arguments& a) -> Value {
                            const auto errors = connection->Errors();
                            const int32_t index = ToLong(a[0]);
                            if (index < 0 || index >= static_cast<int32_t>(errors.size())) {
                              throw AutomationError(RuntimeError::kItemNotInCollection);
                            }
                            return ErrorFace(errors[static_cast<size_t>(index)]);
                          },
                          nullptr, true}},
                        nullptr));
}

// ---- Command -----------------------------------------------------------------------------------

struct Command {
  ConnectionPtr connection;
  std::string text;
  std::vector<ProcedureParameter> parameters;
};
using CommandPtr = std::shared_ptr<Command>;

// A parameter between its making and its appending.
class ParameterObject final : public Object {
 public:
  explicit ParameterObject(ProcedureParameter p) : parameter(std::move(p)) {}
  ProcedureParameter parameter;
};

constexpr int32_t kParameterOutput = 2;

Value NewParameter(const Arguments& a) {
  const auto made = std::make_shared<ParameterObject>(ProcedureParameter{
      ToText(a[0]), a[4].IsMissing() ? Value(Null{}) : a[4], ToLong(a[2]) == kParameterOutput});
  return OwnedObject(NewDispatchObject(
      {{"Name", [=](const Arguments&) -> Value { return made->parameter.name; }}}, made));
}

ProcedureParameter& FindParameter(Command& command, const Value& name) {
  for (ProcedureParameter& parameter : command.parameters) {
    if (EqualsIgnoringCase(parameter.name, ToText(name))) return parameter;
  }
  throw AutomationError(RuntimeError::kItemNotInCollection);
}

Value ParametersFace(const CommandPtr& command) {
  return OwnedObject(NewDispatchObject(
      {{"Append",
        [=](const Arguments& a) -> Value {
          command->parameters.push_back(ToObject<ParameterObject>(a[0])->parameter);
          return Empty{};
        }},
       {"Item",
        [=](const Arguments& a) -> Value {
          const Value value = FindParameter(*command, a[0]).value;
          return OwnedObject(NewDispatchObject(
              {{"Value", [=](const Arguments&) { return value; }, nullptr, true}}, nullptr));
        },
        nullptr, true}},
      nullptr));
}

}  // namespace

IDispatch* FaceOf(const RecordsetPtr& recordset) {
  const auto place = std::make_shared<RecordsetPlace>();
  place->recordset = recordset;
  return NewDispatchObject(RecordsetMembers(place), recordset);
}

IDispatch* FaceOf(const ConnectionPtr& connection) {
  return NewDispatchObject(
      {
          {"Execute",
           [=](const Arguments& a) -> Value { return connection->Execute(ToText(a[0])); }},
          {"Errors", [=](const Arguments&) { return ErrorsFace(connection); }},
          {"State", [=](const Arguments&) -> Value { return int32_t{connection->State()}; }},
          {"Close", [=](const Arguments&) -> Value { return connection->Close(), Empty{}; }},
      },
      connection);
}

IDispatch* NewAdoRecordset() {
  const auto place = std::make_shared<RecordsetPlace>();
  std::vector<Member> members = RecordsetMembers(place);
  members.push_back({"CursorLocation", Accepted(), Accepted()});
  members.push_back({"Open", [=](const Arguments& a) -> Value {
                       place->recordset =
                           ToObject<Connection>(a[1])->OpenClientRecordset(ToText(a[0]));
                       return Empty{};
                     }});
  return NewDispatchObject(std::move(members), nullptr);
}

IDispatch* NewAdoCommand() {
  const auto command = std::make_shared<Command>();
  return NewDispatchObject(
      {
          {"ActiveConnection", Accepted(),
           [=](const Arguments& a) -> Value {
             command->connection = ToObject<Connection>(a.last());
             return Empty{};
           }},
          {"CommandType", Accepted(), Accepted()},
          {"CommandText", [=](const Arguments&) -> Value { return command->text; },
           [=](const Arguments& a) -> Value {
             command->text = ToText(a.last());
             return Empty{};
           }},
          {"CreateParameter", NewParameter},
          {"Parameters", [=](const Arguments&) { return ParametersFace(command); }},
          {"Execute",
           [=](const Arguments&) -> Value {
             command->connection->CallProcedure(command->text, command->parameters);
             return Empty{};
           }},
      },
      nullptr);
}

}  // namespace tavcc::host_automation
