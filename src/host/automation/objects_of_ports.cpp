#include "host/automation/objects_of_ports.h"

#include "automation/border/variant.h"
#include "foundation/conversions.h"
#include "host/automation/ado_objects.h"
#include "host/automation/dispatch_object.h"

namespace tavcc::host_automation {

IDispatch* FaceOf(const DictionaryPtr& dictionary) {
  return NewDispatchObject(
      {
          {"Item", [=](const Arguments& a) { return dictionary->Item(ToText(a[0])); },
           [=](const Arguments& a) -> Value {
             dictionary->SetItem(ToText(a[0]), a.last());
             return Empty{};
           },
           true},
          {"Lookup", [=](const Arguments& a) -> Value { return dictionary->Lookup(ToText(a[0])); }},
      },
      dictionary);
}

IDispatch* FaceOf(const VectorPtr& vector) {
  const auto size = [=](const Arguments&) -> Value { return int32_t{vector->Size()}; };
  return NewDispatchObject(
      {
          {"Item", [=](const Arguments& a) { return vector->Item(ToLong(a[0])); }, nullptr, true},
          {"Add",
           [=](const Arguments& a) -> Value {
             vector->Add(a[0]);
             return Empty{};
           }},
          {"Size", size},
          {"LBound", [=](const Arguments&) -> Value { return int32_t{vector->LBound()}; }},
          {"UBound", [=](const Arguments&) -> Value { return int32_t{vector->UBound()}; }},
      },
      vector);
}

Value OwnedObject(IDispatch* object) {
  const auto value = std::make_shared<ForeignObject>(object);
  object->Release();  // the value holds its own
  return Value(value);
}

}  // namespace tavcc::host_automation

namespace tavcc::automation {

using namespace host_automation;

Value WrapObject(IDispatch* object) {
  if (object == nullptr) return ObjectPtr();
  if (ObjectPtr behind = BehindObject(object)) return behind;
  return Value(std::make_shared<ForeignObject>(object));
}

IDispatch* UnwrapObject(const ObjectPtr& object) {
  if (object == nullptr) return nullptr;
  if (const auto foreign = std::dynamic_pointer_cast<ForeignObject>(object)) {
    foreign->object()->AddRef();
    return foreign->object();
  }
  if (auto dictionary = std::dynamic_pointer_cast<Dictionary>(object)) return FaceOf(dictionary);
  if (auto vector = std::dynamic_pointer_cast<Vector>(object)) return FaceOf(vector);
  if (auto recordset = std::dynamic_pointer_cast<Recordset>(object)) return FaceOf(recordset);
  if (auto connection = std::dynamic_pointer_cast<Connection>(object)) return FaceOf(connection);
  throw AutomationError(RuntimeError::kTypeMismatch);
}

}  // namespace tavcc::automation
