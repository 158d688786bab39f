#include "embedded/bind/function_rules.h"

#include <array>

#include "embedded/catalog/names.h"

namespace tavcc::sql {
namespace {

using F = Function;
using enum FunctionResult;

// clang-format off
constexpr auto kRules = std::to_array<FunctionRule>({
    // function        name                 arguments result
    {F::kAbs,          "ABS",               "n",    kFirstNumber},
    {F::kAscii,        "ASCII",             "t",    kInt},
    {F::kCeiling,      "CEILING",           "n",    kWholeNumber},
    {F::kChar,         "CHAR",              "i",    kChar},
    {F::kCharIndex,    "CHARINDEX",         "tt|i", kInt},
    {F::kCursorStatus, "CURSOR_STATUS",     "tt",   kInt},
    {F::kDataLength,   "DATALENGTH",        "a",    kInt},
    {F::kDateAdd,      "DATEADD",           "pid",  kDateOfThird},
    {F::kDateDiff,     "DATEDIFF",          "pdd",  kInt},
    {F::kDateName,     "DATENAME",          "pd",   kShortText},
    {F::kDatePart,     "DATEPART",          "pd",   kInt},
    {F::kExp,          "EXP",               "f",    kFloat},
    {F::kFloor,        "FLOOR",             "n",    kWholeNumber},
    {F::kGetDate,      "GETDATE",           "",     kDateTime},
    {F::kGetDate,      "CURRENT_TIMESTAMP", "",     kDateTime},
    {F::kIsDate,       "ISDATE",            "t",    kInt},
    {F::kIsNumeric,    "ISNUMERIC",         "t",    kInt},
    {F::kLeft,         "LEFT",              "ti",   kFirstText},
    {F::kLen,          "LEN",               "t",    kInt},
    {F::kLog,          "LOG",               "f",    kFloat},
    {F::kLog10,        "LOG10",             "f",    kFloat},
    {F::kLower,        "LOWER",             "t",    kFirstText},
    {F::kLTrim,        "LTRIM",             "t",    kFirstText},
    {F::kNChar,        "NCHAR",             "i",    kNChar},
    {F::kObjectId,     "OBJECT_ID",         "t|t",  kInt},
    {F::kPatIndex,     "PATINDEX",          "tt",   kInt},
    {F::kPower,        "POWER",             "nf",   kFirstNumber},
    {F::kReplace,      "REPLACE",           "ttt",  kLongText},
    {F::kReplicate,    "REPLICATE",         "ti",   kLongText},
    {F::kReverse,      "REVERSE",           "t",    kFirstText},
    {F::kRight,        "RIGHT",             "ti",   kFirstText},
    {F::kRound,        "ROUND",             "ni|i", kFirstNumber},
    {F::kRTrim,        "RTRIM",             "t",    kFirstText},
    {F::kSign,         "SIGN",              "n",    kFirstNumber},
    {F::kSpace,        "SPACE",             "i",    kLongText},
    {F::kSqrt,         "SQRT",              "f",    kFloat},
    {F::kStr,          "STR",               "f|ii", kShortText},
    {F::kStuff,        "STUFF",             "tiit", kLongText},
    {F::kSubstring,    "SUBSTRING",         "cii",  kFirstText},
    {F::kUnicode,      "UNICODE",           "t",    kInt},
    {F::kUpper,        "UPPER",             "t",    kFirstText},
});
// clang-format on

// clang-format off
constexpr AggregateName kAggregates[] = {
    {"SUM",       Aggregate::kSum},
    {"AVG",       Aggregate::kAvg},
    {"MIN",       Aggregate::kMin},
    {"MAX",       Aggregate::kMax},
    {"COUNT",     Aggregate::kCount},
    {"COUNT_BIG", Aggregate::kCount},
};

constexpr WindowRule kWindowFunctions[] = {
    // Name           Function                        Arguments  Frame
    {"ROW_NUMBER",    WindowFunction::kRowNumber,     0, 0,      false},
    {"RANK",          WindowFunction::kRank,          0, 0,      false},
    {"DENSE_RANK",    WindowFunction::kDenseRank,     0, 0,      false},
    {"PERCENT_RANK",  WindowFunction::kPercentRank,   0, 0,      false},
    {"CUME_DIST",     WindowFunction::kCumeDist,      0, 0,      false},
    {"NTILE",         WindowFunction::kNtile,         1, 1,      false},
    {"LAG",           WindowFunction::kLag,           1, 3,      false},
    {"LEAD",          WindowFunction::kLead,          1, 3,      false},
    {"FIRST_VALUE",   WindowFunction::kFirstValue,    1, 1,      true},
    {"LAST_VALUE",    WindowFunction::kLastValue,     1, 1,      true},
};
// clang-format on

}  // namespace

const FunctionRule* FindFunction(std::string_view name) {
  return FindByName(kRules, name);
}

const AggregateName* FindAggregate(std::string_view name) {
  return FindByName(kAggregates, name);
}

const WindowRule* FindWindowFunction(std::string_view name) {
  return FindByName(kWindowFunctions, name);
}

}  // namespace tavcc::sql
