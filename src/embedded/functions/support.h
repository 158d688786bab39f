// What the sources of the functions share: arguments in, results and errors out, registration.
#pragma once

#include <sqlite3.h>

#include <exception>
#include <span>
#include <string_view>
#include <utility>

#include "embedded/error.h"
#include "embedded/functions/functions.h"
#include "embedded/types/stored_view.h"

namespace tavcc::sql::internal {

using Context = sqlite3_context*;
using Arguments = sqlite3_value**;
using ScalarFunction = void (*)(Context, int, Arguments);
using FinalFunction = void (*)(Context);

inline FunctionSession& SessionOf(Context context) {
  return *static_cast<FunctionSession*>(sqlite3_user_data(context));
}

// Fails the step; the session finds the server's error in `pending`.
inline void Fail(Context context, SqlError error) {
  sqlite3_result_error(context, error.message.data(), static_cast<int>(error.message.size()));
  SessionOf(context).pending = std::move(error);
}
inline void Fail(Context context, errors::Number number,
                 std::initializer_list<ErrorArgument> arguments = {}) {
  Fail(context, MakeError(number, arguments));
}
// 8115 "Arithmetic overflow error converting expression to data type X."
void FailOverflow(Context context, TypeKind kind);

// SQLite takes a function that sets no result to have returned NULL.
inline bool AnyNull(int count, Arguments arguments) {
  for (int i = 0; i < count; ++i) {
    if (sqlite3_value_type(arguments[i]) == SQLITE_NULL) return true;
  }
  return false;
}

inline bool IsIntegerValue(sqlite3_value* value) {
  return sqlite3_value_type(value) == SQLITE_INTEGER;
}
inline std::string_view TextOf(sqlite3_value* value) {
  const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
  return {text, static_cast<size_t>(sqlite3_value_bytes(value))};
}

inline void ReturnText(Context context, std::string_view text) {
  sqlite3_result_text64(context, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
}
void Return(Context context, const StoredView& cell);
void ReturnCoefficient(Context context, const WideInteger& coefficient);

// No exception may leave through SQLite's frames.
template <ScalarFunction function>
void Guarded(Context context, int count, Arguments arguments) noexcept {
  try {
    function(context, count, arguments);
  } catch (SqlError& error) {
    Fail(context, std::move(error));
  } catch (const std::exception&) {  // out of memory, or a text beyond every limit
    sqlite3_result_error_nomem(context);
  }
}

// As Guarded, for functions that are NULL as soon as one argument is.
template <ScalarFunction function>
void Strict(Context context, int count, Arguments arguments) noexcept {
  if (!AnyNull(count, arguments)) Guarded<function>(context, count, arguments);
}

struct ScalarEntry {
  const char* name;
  int arguments;
  ScalarFunction function;
  bool deterministic = true;
};

struct AggregateEntry {
  const char* name;
  int arguments;
  ScalarFunction step;
  FinalFunction final;
  // Of one that may have an OVER, where rows also leave again: takes the rows out that `step` took
  // in, and gives the value so far. Null for one that has none.
  ScalarFunction inverse = nullptr;
  FinalFunction value = nullptr;
};

std::span<const ScalarEntry> IntegerFunctions();
std::span<const ScalarEntry> FloatFunctions();
std::span<const ScalarEntry> DecimalFunctions();
std::span<const ScalarEntry> ConversionFunctions();
std::span<const ScalarEntry> TextFunctions();
std::span<const ScalarEntry> SearchFunctions();
std::span<const ScalarEntry> DateFunctions();
std::span<const ScalarEntry> StepFunctions();
std::span<const AggregateEntry> AggregateFunctions();

}  // namespace tavcc::sql::internal
