#include "embedded/emit/sqlite_functions.h"

#include <array>

namespace tavcc::sql {
namespace {

using F = Function;
using enum FunctionForm;

// In the order of Function.
// clang-format off
constexpr auto kFunctions = std::to_array<SqliteFunction>({
    {F::kAbs,          kNumeric,    "t_abs"},
    {F::kAscii,        kPlain,      "t_ascii"},
    {F::kCeiling,      kNumeric,    "t_ceiling"},
    {F::kChar,         kPlain,      "t_char"},
    {F::kCharIndex,    kPlain,      "t_charindex"},
    {F::kCursorStatus, kPlain,      "s_cursor_status"},
    {F::kDataLength,   kDataLength, "t_datalength"},
    {F::kDateAdd,      kDateAdd,    "t_dateadd"},
    {F::kDateDiff,     kPlain,      "t_datediff"},
    {F::kDateName,     kPlain,      "t_datename"},
    {F::kDatePart,     kPlain,      "t_datepart"},
    {F::kExp,          kPlain,      "t_exp"},
    {F::kFloor,        kNumeric,    "t_floor"},
    {F::kGetDate,      kPlain,      "t_getdate"},
    {F::kIsDate,       kPlain,      "t_isdate"},
    {F::kIsNumeric,    kPlain,      "t_isnumeric"},
    {F::kLTrim,        kPlain,      "t_ltrim"},
    {F::kLeft,         kPlain,      "t_left"},
    {F::kLen,          kPlain,      "t_len"},
    {F::kLog,          kPlain,      "t_log"},
    {F::kLog10,        kPlain,      "t_log10"},
    {F::kLower,        kPlain,      "t_lower"},
    {F::kNChar,        kPlain,      "t_nchar"},
    {F::kObjectId,     kPlain,      "s_object_id"},
    {F::kPatIndex,     kPlain,      "t_patindex"},
    {F::kPower,        kNumeric,    "t_power"},
    {F::kRTrim,        kPlain,      "t_rtrim"},
    {F::kReplace,      kPlain,      "t_replace"},
    {F::kReplicate,    kPlain,      "t_replicate"},
    {F::kReverse,      kPlain,      "t_reverse"},
    {F::kRight,        kPlain,      "t_right"},
    {F::kRound,        kNumeric,    "t_round"},
    {F::kSign,         kNumeric,    "t_sign"},
    {F::kSpace,        kPlain,      "t_space"},
    {F::kSqrt,         kPlain,      "t_sqrt"},
    {F::kStr,          kPlain,      "t_str"},
    {F::kStuff,        kPlain,      "t_stuff"},
    {F::kSubstring,    kPlain,      "t_substring"},
    {F::kUnicode,      kPlain,      "t_unicode"},
    {F::kUpper,        kPlain,      "t_upper"},
    {F::kIsNull,       kPlain,      "ifnull"},
    {F::kNextIdentity, kPlain,      "s_next"},
});
// clang-format on

constexpr bool IsInOrder() {
  for (size_t i = 0; i < kFunctions.size(); ++i) {
    if (kFunctions[i].function != static_cast<Function>(i)) return false;
  }
  return kFunctions.back().function == F::kNextIdentity;
}
static_assert(IsInOrder(), "each function has its line, in the order of the enum");

}  // namespace

const SqliteFunction& SqliteFunctionOf(Function function) {
  return kFunctions[static_cast<size_t>(function)];
}

}  // namespace tavcc::sql
