// The class registry: one table of the ten automation classes, their methods and what each calls.
//
// Everything that calls by name goes through it: late-bound calls of the COM server, `tavcc call`,
// the scenario runner. A method that is not in the table does not exist.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/error.h"
#include "foundation/plug_in.h"
#include "foundation/value.h"

namespace tavcc {

enum class ArgumentType : uint8_t {
  kBoolean,          // BOOL
  kInteger,          // I2
  kLong,             // I4
  kDouble,           // R8
  kDate,             // DATE
  kText,             // BSTR
  kVariant,          // VARIANT
  kDictionary,       // Bzo.Dictionary
  kVector,           // Bzo.Vector
  kConnection,       // ADODB.Connection
  kRecordset,        // ADODB.Recordset
  kObject,           // IDispatch
  kTransactionMode,  // the host's enumeration, a 32-bit integer
};

// The automation name of a type as the host's documentation writes it, e.g. "I4", "Bzo.Dictionary".
std::string_view TypeText(ArgumentType type);

struct Parameter {
  std::string_view name;
  ArgumentType type;
  bool in_out = false;
  bool optional = false;
  std::optional<int16_t> default_value = std::nullopt;  // True is -1
};

// Whether the parameter takes the host's connection string: no part of a call that may be told.
bool IsConnectionString(const Parameter& parameter);

// Calls a method. `arguments` are as many as the parameters, none of them omitted and each of its
// parameter's type; in/out ones are written back in place. Errors: what the method lets through.
using Invoker = Value (*)(PlugIn& object, std::span<Value> arguments);

struct Method {
  std::string_view name;
  int slot;  // position after IDispatch's own, from 0
  uint32_t dispatch_id;
  std::span<const Parameter> parameters;
  ArgumentType result;
  bool is_property = false;
  Invoker invoke = nullptr;  // null while the method is not built; for TransMode, always null
  bool writes = false;       // whether it changes more than temporary tables
};

struct ClassDescription {
  std::string_view name;
  int32_t trans_mode;
  std::span<const Method> methods;  // in slot order
};

inline constexpr std::string_view kLibraryName = "TavM_CC_PlugIns";
inline constexpr uint32_t kTransModeDispatchId = 0x68030000;

std::span<const ClassDescription> Classes();

// Names are compared without regard to letter case; null when there is none.
const ClassDescription* FindClass(std::string_view name);
const Method* FindMethod(const ClassDescription& cls, std::string_view name);

// Error 13 or 6 in one argument of a call.
class ArgumentError : public AutomationError {
 public:
  ArgumentError(const AutomationError& cause, int index, std::string_view parameter);
  int index() const { return index_; }  // from 0, in the order of the parameters

 private:
  int index_;
};

// Whether the method can be called: it is built, or it is TransMode.
bool IsBuilt(const Method& method);

// Calls a method with arguments as a caller has them: an element of kind Missing, or an absent one
// at the end, is an omitted argument and takes its default; every other is converted to its
// parameter's type. On return `arguments` has one element per parameter, the in/out ones holding
// their results.
// Errors: ArgumentError for a value that does not convert; 449 for an omitted argument that is not
// optional; 450 for too many arguments; 438 for a method that is not built yet; what the method
// itself raises.
Value Invoke(const ClassDescription& cls, const Method& method, PlugIn& object,
             std::vector<Value>& arguments);

}  // namespace tavcc
