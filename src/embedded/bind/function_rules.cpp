#include "embedded/bind/function_rules.h"

#include <array>

#include "embedded/catalog/names.h"

namespace tavcc::sql {
namespace {

using enum FunctionResult;
using enum FunctionForm;

// clang-format off
constexpr auto kRules = std::to_array<FunctionRule>({
    // name          arguments  result         form         SQLite's function
    {"ABS",          "n",       kFirstNumber,  kNumeric,    "t_abs"},
    {"ASCII",        "t",       kInt,          kPlain,      "t_ascii"},
    {"CEILING",      "n",       kWholeNumber,  kNumeric,    "t_ceiling"},
    {"CHAR",         "i",       kChar,         kPlain,      "t_char"},
    {"CHARINDEX",    "tt|i",    kInt,          kPlain,      "t_charindex"},
    {"CURSOR_STATUS", "tt",     kInt,          kPlain,      "s_cursor_status"},
    {"DATALENGTH",   "a",       kInt,          kDataLength, "t_datalength"},
    {"DATEADD",      "pid",     kDateOfThird,  kDateAdd,    "t_dateadd"},
    {"DATEDIFF",     "pdd",     kInt,          kPlain,      "t_datediff"},
    {"DATENAME",     "pd",      kShortText,    kPlain,      "t_datename"},
    {"DATEPART",     "pd",      kInt,          kPlain,      "t_datepart"},
    {"EXP",          "f",       kFloat,        kPlain,      "t_exp"},
    {"FLOOR",        "n",       kWholeNumber,  kNumeric,    "t_floor"},
    {"GETDATE",      "",        kDateTime,     kPlain,      "t_getdate"},
    {"CURRENT_TIMESTAMP", "",   kDateTime,     kPlain,      "t_getdate"},
    {"ISDATE",       "t",       kInt,          kPlain,      "t_isdate"},
    {"ISNUMERIC",    "t",       kInt,          kPlain,      "t_isnumeric"},
    {"LEFT",         "ti",      kFirstText,    kPlain,      "t_left"},
    {"LEN",          "t",       kInt,          kPlain,      "t_len"},
    {"LOG",          "f",       kFloat,        kPlain,      "t_log"},
    {"LOG10",        "f",       kFloat,        kPlain,      "t_log10"},
    {"LOWER",        "t",       kFirstText,    kPlain,      "t_lower"},
    {"LTRIM",        "t",       kFirstText,    kPlain,      "t_ltrim"},
    {"NCHAR",        "i",       kNChar,        kPlain,      "t_nchar"},
    {"OBJECT_ID",    "t|t",     kInt,          kPlain,      "s_object_id"},
    {"PATINDEX",     "tt",      kInt,          kPlain,      "t_patindex"},
    {"POWER",        "nf",      kFirstNumber,  kNumeric,    "t_power"},
    {"REPLACE",      "ttt",     kLongText,     kPlain,      "t_replace"},
    {"REPLICATE",    "ti",      kLongText,     kPlain,      "t_replicate"},
    {"REVERSE",      "t",       kFirstText,    kPlain,      "t_reverse"},
    {"RIGHT",        "ti",      kFirstText,    kPlain,      "t_right"},
    {"ROUND",        "ni|i",    kFirstNumber,  kNumeric,    "t_round"},
    {"RTRIM",        "t",       kFirstText,    kPlain,      "t_rtrim"},
    {"SIGN",         "n",       kFirstNumber,  kNumeric,    "t_sign"},
    {"SPACE",        "i",       kLongText,     kPlain,      "t_space"},
    {"SQRT",         "f",       kFloat,        kPlain,      "t_sqrt"},
    {"STR",          "f|ii",    kShortText,    kPlain,      "t_str"},
    {"STUFF",        "tiit",    kLongText,     kPlain,      "t_stuff"},
    {"SUBSTRING",    "cii",     kFirstText,    kPlain,      "t_substring"},
    {"UNICODE",      "t",       kInt,          kPlain,      "t_unicode"},
    {"UPPER",        "t",       kFirstText,    kPlain,      "t_upper"},
});
// clang-format on

}  // namespace

const FunctionRule* FindFunction(std::string_view name) {
  for (const FunctionRule& rule : kRules) {
    if (SameName(rule.name, name)) return &rule;
  }
  return nullptr;
}

}  // namespace tavcc::sql
