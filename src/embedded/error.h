// An error of the dialect as the server words it: what every stage of the embedded database throws.
//
// One table (errors.def) is the contract: number, severity, state, wording, and what the error does
// to the batch and the transaction.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>

namespace tavcc::sql {

// Thrown by value.
struct SqlError {
  int number = 0;
  int severity = 0;
  int state = 1;
  int line = 0;  // of the batch, from 1
  std::string message;
};

// How far an error reaches while XACT_ABORT is off, the server's default.
enum class AfterError : uint8_t {
  kNextStatement,   // the statement is undone; the next one runs
  kEndScope,        // the batch, dynamic batch or procedure ends; a caller goes on behind its EXEC
  kEndBatch,        // everything up to the client's batch ends; the transaction stays open
  kEndTransaction,  // as kEndBatch, and the open transaction is rolled back
};

namespace errors {
// The numbers by name: kInvalidObjectName is 208. errors::kNotSupported is a construct that the
// embedded database does not know.
enum Number : int {
#define TAVCC_SQL_ERROR(number, name, severity, state, text, after) name = number,
#include "embedded/errors.def"
#undef TAVCC_SQL_ERROR
};
}  // namespace errors

struct ErrorDefinition {
  int number;
  int severity;
  int state;
  std::string_view text;  // with marks for the arguments
  AfterError after;
};

// The number for a store that itself fails, in a way for which the server has no error.
inline constexpr int kStoreFailure = 50002;
SqlError StoreFailure(std::string message);

// All errors, in ascending order of number.
std::span<const ErrorDefinition> AllErrors();
// Null when the dialect does not raise this number itself (RAISERROR can make any).
const ErrorDefinition* FindError(int number);
// What follows an error of this number. A number that is not in the table ends its statement only.
AfterError WhatFollows(int number);

// An argument of a message: a text, or a whole number in decimal digits.
class ErrorArgument {
 public:
  // NOLINTBEGIN(google-explicit-constructor): what Raise is given is the argument
  ErrorArgument(std::string_view text) : text_(text) {}
  ErrorArgument(const char* text) : text_(text) {}
  ErrorArgument(const std::string& text) : text_(text) {}
  ErrorArgument(int64_t number) : text_(std::to_string(number)) {}
  ErrorArgument(int number) : text_(std::to_string(number)) {}
  // NOLINTEND(google-explicit-constructor)
  const std::string& text() const { return text_; }

 private:
  std::string text_;
};

// The error of the table with its arguments filled in; line 0, which is for the caller to set.
SqlError MakeError(errors::Number number, std::initializer_list<ErrorArgument> arguments = {});

// As MakeError, thrown: Raise(errors::kInvalidObjectName, name).
template <class... Arguments>
[[noreturn]] void Raise(errors::Number number, const Arguments&... arguments) {
  throw MakeError(number, {ErrorArgument(arguments)...});
}

// Throws 50001 for a construct outside the subset, e.g. RaiseUnsupported("MERGE").
[[noreturn]] void RaiseUnsupported(std::string_view construct);

}  // namespace tavcc::sql
