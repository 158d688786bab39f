// The arguments of a call, from what the scenario gives and what the runner supplies.
#include "scenario/runner.h"
#include "scenario/values.h"

namespace tavcc {
namespace {

Value EmptyOfType(Host& host, ArgumentType type) {
  switch (type) {
    case ArgumentType::kBoolean:
      return false;
    case ArgumentType::kInteger:
    case ArgumentType::kLong:
    case ArgumentType::kDouble:
    case ArgumentType::kTransactionMode:
      return 0;
    case ArgumentType::kDate:
      return DateTime();
    case ArgumentType::kText:
      return "";
    case ArgumentType::kVariant:
      return Empty{};
    case ArgumentType::kDictionary:
      return host.NewDictionary();
    case ArgumentType::kVector:
      return host.NewVector();
    case ArgumentType::kConnection:
    case ArgumentType::kRecordset:
    case ArgumentType::kObject:
      return ObjectPtr();
  }
  return Empty{};
}

bool IsReference(ArgumentType type) {
  switch (type) {
    case ArgumentType::kDictionary:
    case ArgumentType::kVector:
    case ArgumentType::kConnection:
    case ArgumentType::kRecordset:
    case ArgumentType::kObject:
      return true;
    default:
      return false;
  }
}

Value NotGiven(const Supplies& supplies, const Parameter& parameter) {
  if (IsConnectionString(parameter)) return supplies.dsn;
  if (parameter.type == ArgumentType::kConnection) return supplies.connection;
  if (parameter.optional) return Missing{};
  return EmptyOfType(supplies.host, parameter.type);
}

}  // namespace

std::vector<Value> MakeArguments(const Supplies& supplies, const Method& method, const Json& args) {
  std::vector<Value> arguments;
  for (const Parameter& parameter : method.parameters) {
    const Json* const given = args.find(parameter.name);
    if (given == nullptr) {
      arguments.push_back(NotGiven(supplies, parameter));
    } else if (given->is_null() && IsReference(parameter.type)) {
      arguments.emplace_back(ObjectPtr());
    } else {
      arguments.push_back(ValueFromJson(supplies.host, *given));
    }
  }
  return arguments;
}

}  // namespace tavcc
