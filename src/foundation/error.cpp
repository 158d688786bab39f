#include "foundation/error.h"

namespace tavcc {

std::string Describe(RuntimeError number) {
  switch (number) {
    case RuntimeError::kInvalidProcedureCall:
      return "Invalid procedure call or argument";
    case RuntimeError::kOverflow:
      return "Overflow";
    case RuntimeError::kOutOfMemory:
      return "Out of memory";
    case RuntimeError::kSubscriptOutOfRange:
      return "Subscript out of range";
    case RuntimeError::kTypeMismatch:
      return "Type mismatch";
    case RuntimeError::kInternalError:
      return "Internal error";
    case RuntimeError::kObjectNotSet:
      return "Object variable or With block variable not set";
    case RuntimeError::kInvalidUseOfNull:
      return "Invalid use of Null";
    case RuntimeError::kCannotCreateObject:
      return "ActiveX component can't create object";
    case RuntimeError::kMemberNotFound:
      return "Object doesn't support this property or method";
    case RuntimeError::kNamedArgumentNotFound:
      return "Named argument not found";
    case RuntimeError::kArgumentNotOptional:
      return "Argument not optional";
    case RuntimeError::kWrongNumberOfArguments:
      return "Wrong number of arguments or invalid property assignment";
    case RuntimeError::kNoCurrentRow:
      return "Either BOF or EOF is True, or the current record has been deleted. Requested "
             "operation requires a current record.";
    case RuntimeError::kItemNotInCollection:
      return "Item cannot be found in the collection corresponding to the requested name or "
             "ordinal.";
    case RuntimeError::kObjectClosed:
      return "Operation is not allowed when the object is closed.";
  }
  return "Application-defined or object-defined error";
}

}  // namespace tavcc
