#include "registry/class_registry.h"

#include "foundation/conversions.h"
#include "foundation/text.h"

namespace tavcc {

namespace {

Value DefaultOf(const Parameter& parameter) {
  const int16_t number = parameter.default_value.value_or(0);
  switch (parameter.type) {
    case ArgumentType::kBoolean:
      return number != 0;
    case ArgumentType::kInteger:
      return number;
    case ArgumentType::kLong:
    case ArgumentType::kTransactionMode:
      return int32_t{number};
    case ArgumentType::kDouble:
      return double{0};
    case ArgumentType::kDate:
      return *DateTime::FromAutomation(0);
    case ArgumentType::kText:
      return "";
    case ArgumentType::kVariant:
      return Missing{};
    default:
      return ObjectPtr();
  }
}

// An object argument: a reference, perhaps null. Empty counts as null, as an uninitialised
// variable.
template <class T>
Value ToReference(const Value& value) {
  if (value.IsEmpty() || (value.IsObject() && value.object() == nullptr)) return ObjectPtr();
  return Value(ToObject<T>(value));
}

Value Convert(const Value& value, ArgumentType type) {
  switch (type) {
    case ArgumentType::kBoolean:
      return ToBoolean(value);
    case ArgumentType::kInteger:
      return ToInteger(value);
    case ArgumentType::kLong:
    case ArgumentType::kTransactionMode:
      return ToLong(value);
    case ArgumentType::kDouble:
      return ToDouble(value);
    case ArgumentType::kDate:
      return ToDate(value);
    case ArgumentType::kText:
      return ToText(value);
    case ArgumentType::kVariant:
      return value;
    case ArgumentType::kDictionary:
      return ToReference<Dictionary>(value);
    case ArgumentType::kVector:
      return ToReference<Vector>(value);
    case ArgumentType::kConnection:
      return ToReference<Connection>(value);
    case ArgumentType::kRecordset:
      return ToReference<Recordset>(value);
    case ArgumentType::kObject:
      return ToReference<Object>(value);
  }
  return value;
}

void Complete(const Method& method, std::vector<Value>& arguments) {
  if (arguments.size() > method.parameters.size()) {
    throw AutomationError(RuntimeError::kWrongNumberOfArguments);
  }
  arguments.resize(method.parameters.size(), Missing{});
  for (size_t i = 0; i < arguments.size(); ++i) {
    const Parameter& parameter = method.parameters[i];
    if (arguments[i].IsMissing()) {
      if (!parameter.optional) {
        throw AutomationError(RuntimeError::kArgumentNotOptional,
                              Cat("Argument not optional: ", parameter.name));
      }
      arguments[i] = DefaultOf(parameter);
      continue;
    }
    try {
      arguments[i] = Convert(arguments[i], parameter.type);
    } catch (const AutomationError& error) {
      throw ArgumentError(error, static_cast<int>(i), parameter.name);
    }
  }
}

}  // namespace

std::string_view TypeText(ArgumentType type) {
  switch (type) {
    case ArgumentType::kBoolean:
      return "BOOL";
    case ArgumentType::kInteger:
      return "I2";
    case ArgumentType::kLong:
      return "I4";
    case ArgumentType::kDouble:
      return "R8";
    case ArgumentType::kDate:
      return "DATE";
    case ArgumentType::kText:
      return "BSTR";
    case ArgumentType::kVariant:
      return "VARIANT";
    case ArgumentType::kDictionary:
      return "Bzo.Dictionary";
    case ArgumentType::kVector:
      return "Bzo.Vector";
    case ArgumentType::kConnection:
      return "ADODB.Connection";
    case ArgumentType::kRecordset:
      return "ADODB.Recordset";
    case ArgumentType::kObject:
      return "IDispatch";
    case ArgumentType::kTransactionMode:
      return "transaction mode";
  }
  return "";
}

const ClassDescription* FindClass(std::string_view name) {
  for (const ClassDescription& cls : Classes()) {
    if (EqualsIgnoringCase(cls.name, name)) return &cls;
  }
  return nullptr;
}

const Method* FindMethod(const ClassDescription& cls, std::string_view name) {
  for (const Method& method : cls.methods) {
    if (EqualsIgnoringCase(method.name, name)) return &method;
  }
  return nullptr;
}

bool IsConnectionString(const Parameter& parameter) {
  return parameter.name == "sDsn" || parameter.name == "strConString";
}

ArgumentError::ArgumentError(const AutomationError& cause, int index, std::string_view parameter)
    : AutomationError(cause.number(), cause.source(),
                      Cat(cause.description(), ": argument ", parameter)),
      index_(index) {}

bool IsBuilt(const Method& method) {
  return method.is_property || method.invoke != nullptr;
}

Value Invoke(const ClassDescription& cls, const Method& method, PlugIn& object,
             std::vector<Value>& arguments) {
  if (!IsBuilt(method)) {
    throw AutomationError(RuntimeError::kMemberNotFound,
                          Cat(cls.name, ".", method.name, " is not built yet"));
  }
  Complete(method, arguments);
  if (method.is_property) return cls.trans_mode;
  return method.invoke(object, arguments);
}

}  // namespace tavcc
