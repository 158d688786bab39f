// The built-in functions: what they take, what they give, and how SQLite's text calls them.
#pragma once

#include <span>
#include <string_view>

namespace tavcc::sql {

enum class FunctionResult : uint8_t {
  kInt,
  kFloat,
  kDateTime,
  kFirst,         // the type of the first argument
  kFirstText,     // varying text as long as the first argument
  kLongText,      // varying text of 8000 or 4000 characters
  kChar,          // varchar(1)
  kNChar,         // nvarchar(1)
  kNationalName,  // nvarchar(128)
  kShortText,     // varchar(30)
  kFirstNumber,   // the type of the first argument, smaller whole numbers made int
  kWholeNumber,   // the same, decimals without their scale
  kDateOfThird,   // DATEADD
};

// How a call is put into SQLite's text.
enum class FunctionForm : uint8_t {
  kPlain,    // name(arguments …)
  kNumeric,  // the name continues with the kind of the first argument: _int, _decimal, _float
  kDataLength,
  kDateAdd,
};

struct FunctionRule {
  std::string_view name;
  // One letter for each argument, the optional ones after "|": p a date part, t text, c text that
  // is text already, i int, b bigint, f float, d datetime, n a number, a anything.
  std::string_view arguments;
  FunctionResult result;
  FunctionForm form;
  std::string_view emitted;
};

// Null when there is no such function.
const FunctionRule* FindFunction(std::string_view name);

}  // namespace tavcc::sql
