// The built-in functions: what they take and what they give.
#pragma once

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string_view>

#include "embedded/bind/bound.h"

namespace tavcc::sql {

enum class Function : uint8_t {
  kAbs,
  kAscii,
  kCeiling,
  kChar,
  kCharIndex,
  kCursorStatus,
  kDataLength,
  kDateAdd,
  kDateDiff,
  kDateName,
  kDatePart,
  kExp,
  kFloor,
  kGetDate,
  kIsDate,
  kIsNumeric,
  kLTrim,
  kLeft,
  kLen,
  kLog,
  kLog10,
  kLower,
  kNChar,
  kObjectId,
  kPatIndex,
  kPower,
  kRTrim,
  kReplace,
  kReplicate,
  kReverse,
  kRight,
  kRound,
  kSign,
  kSpace,
  kSqrt,
  kStr,
  kStuff,
  kSubstring,
  kUnicode,
  kUpper,
  kIsNull,        // ISNULL, bound by hand
  kNextIdentity,  // the next identity value, for which the dialect has no name
};

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

struct FunctionRule {
  Function function;
  std::string_view name;
  // One letter for each argument, the optional ones after "|": p a date part, t text, c text that
  // is text already, i int, b bigint, f float, d datetime, n a number, a anything.
  std::string_view arguments;
  FunctionResult result;
};

// Null when there is no such function.
const FunctionRule* FindFunction(std::string_view name);

struct AggregateName {
  std::string_view name;
  Aggregate aggregate;
};
const AggregateName* FindAggregate(std::string_view name);

// A function that always has an OVER.
struct WindowRule {
  std::string_view name;
  WindowFunction function;
  size_t least, most;  // arguments
  bool frame;          // it may have a frame
};
const WindowRule* FindWindowFunction(std::string_view name);

}  // namespace tavcc::sql
