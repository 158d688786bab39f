// The functions of the dialect as SQLite's text calls them.
#pragma once

#include <string_view>

#include "embedded/bind/function_rules.h"

namespace tavcc::sql {

// How a call is put into SQLite's text.
enum class FunctionForm : uint8_t {
  kPlain,    // name(arguments …)
  kNumeric,  // the name continues with the kind of the first argument: _int, _decimal, _float
  kDataLength,
  kDateAdd,
};

struct SqliteFunction {
  Function function;
  FunctionForm form;
  std::string_view name;
};

const SqliteFunction& SqliteFunctionOf(Function function);

}  // namespace tavcc::sql
