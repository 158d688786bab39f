// The run-time error of the automation world: a number, a source and a description.
//
// Ports raise it, rules let it pass, and each public method traps it once (see trap.h). The numbers
// below are the run-time numbers that a Visual Basic client knows; a database error carries the
// server's own number instead.
#pragma once

#include <cstdint>
#include <exception>
#include <string>

namespace tavcc {

// Numbers and descriptions as Microsoft's "Trappable Errors" reference lists them; 3021, 3265 and
// 3704 are those of its "ADO Error Codes" reference.
enum class RuntimeError : int32_t {
  kInvalidProcedureCall = 5,
  kOverflow = 6,
  kOutOfMemory = 7,
  kSubscriptOutOfRange = 9,
  kTypeMismatch = 13,
  kInternalError = 51,
  kObjectNotSet = 91,
  kInvalidUseOfNull = 94,
  kCannotCreateObject = 429,
  kMemberNotFound = 438,
  kNamedArgumentNotFound = 448,
  kArgumentNotOptional = 449,
  kWrongNumberOfArguments = 450,
  kNoCurrentRow = 3021,
  kItemNotInCollection = 3265,
  kObjectClosed = 3704,
};

// The standard description of a run-time error, e.g. "Overflow" for kOverflow.
std::string Describe(RuntimeError number);

class AutomationError : public std::exception {
 public:
  AutomationError(int32_t number, std::string source, std::string description)
      : number_(number), source_(std::move(source)), description_(std::move(description)) {}

  // A run-time error with its standard description and no source.
  explicit AutomationError(RuntimeError number)
      : AutomationError(static_cast<int32_t>(number), "", Describe(number)) {}

  // A run-time error whose description says more than the standard one.
  AutomationError(RuntimeError number, std::string description)
      : AutomationError(static_cast<int32_t>(number), "", std::move(description)) {}

  int32_t number() const noexcept { return number_; }
  const std::string& source() const noexcept { return source_; }
  const std::string& description() const noexcept { return description_; }
  const char* what() const noexcept override { return description_.c_str(); }

 private:
  int32_t number_;
  std::string source_;
  std::string description_;
};

}  // namespace tavcc
