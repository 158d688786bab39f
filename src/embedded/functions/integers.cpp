// Checked arithmetic on whole numbers. Nothing here allocates unless it fails.
#include <array>
#include <cmath>
#include <cstdio>
#include <limits>

#include "embedded/functions/support.h"
#include "embedded/types/type_rules.h"

namespace tavcc::sql::internal {
namespace {

template <TypeKind kind>
void ReturnChecked(Context context, bool overflow, int64_t value) {
  if (overflow || !IsInRange(kind, value)) {
    FailOverflow(context, kind);
    return;
  }
  sqlite3_result_int64(context, value);
}

template <TypeKind kind, char operation>
void ComputeInteger(Context context, int, Arguments arguments) {
  const int64_t a = sqlite3_value_int64(arguments[0]);
  const int64_t b = sqlite3_value_int64(arguments[1]);
  int64_t result = 0;
  const bool overflow = operation == '+'   ? __builtin_add_overflow(a, b, &result)
                        : operation == '-' ? __builtin_sub_overflow(a, b, &result)
                                           : __builtin_mul_overflow(a, b, &result);
  ReturnChecked<kind>(context, overflow, result);
}

// The smallest 64-bit number divided by -1 is the one quotient that does not fit.
bool IsUndefinedDivision(int64_t a, int64_t b) {
  return b == -1 && a == std::numeric_limits<int64_t>::min();
}

template <TypeKind kind>
void Divide(Context context, int, Arguments arguments) {
  const int64_t a = sqlite3_value_int64(arguments[0]);
  const int64_t b = sqlite3_value_int64(arguments[1]);
  if (b == 0) return Fail(context, errors::kDivideByZero);
  const bool overflow = IsUndefinedDivision(a, b);
  ReturnChecked<kind>(context, overflow, overflow ? 0 : a / b);
}

template <TypeKind kind>
void Modulo(Context context, int, Arguments arguments) {
  const int64_t a = sqlite3_value_int64(arguments[0]);
  const int64_t b = sqlite3_value_int64(arguments[1]);
  if (b == 0) return Fail(context, errors::kDivideByZero);
  sqlite3_result_int64(context, IsUndefinedDivision(a, b) ? 0 : a % b);
}

template <TypeKind kind>
void Negate(Context context, int, Arguments arguments) {
  int64_t result = 0;
  const bool overflow =
      __builtin_sub_overflow(int64_t{0}, sqlite3_value_int64(arguments[0]), &result);
  ReturnChecked<kind>(context, overflow, result);
}

template <TypeKind kind>
void Absolute(Context context, int count, Arguments arguments) {
  const int64_t value = sqlite3_value_int64(arguments[0]);
  if (value < 0) return Negate<kind>(context, count, arguments);
  sqlite3_result_int64(context, value);
}

template <TypeKind kind>
void Round(Context context, int, Arguments arguments) {
  const int64_t value = sqlite3_value_int64(arguments[0]);
  const int64_t digits = sqlite3_value_int64(arguments[1]);
  const bool cut = sqlite3_value_int64(arguments[2]) != 0;
  if (digits >= 0) return sqlite3_result_int64(context, value);
  if (digits < -18) return sqlite3_result_int64(context, 0);
  const int64_t unit = kPowersOf10[static_cast<size_t>(-digits)];
  const int64_t rest = value % unit;
  int64_t result = value - rest;
  bool overflow = false;
  // Half away from zero; `rest` and `unit - rest` are compared, since twice `rest` may not fit.
  const int64_t distance = rest < 0 ? -rest : rest;
  if (!cut && distance >= unit - distance) {
    overflow = __builtin_add_overflow(result, rest < 0 ? -unit : unit, &result);
  }
  ReturnChecked<kind>(context, overflow, result);
}

template <TypeKind kind>
void Power(Context context, int, Arguments arguments) {
  const double result =
      std::trunc(std::pow(sqlite3_value_double(arguments[0]), sqlite3_value_double(arguments[1])));
  if (std::isnan(result)) return Fail(context, errors::kInvalidFloatOperation);
  if (result >= -0x1p63 && result < 0x1p63 && IsInRange(kind, static_cast<int64_t>(result))) {
    return sqlite3_result_int64(context, static_cast<int64_t>(result));
  }
  if (kind == TypeKind::kBigInt) return FailOverflow(context, kind);
  char text[400];
  std::snprintf(text, sizeof text, "%f", result);
  Fail(context, errors::kFloatOverflow, {KindText(kind), text});
}

void SignOfInteger(Context context, int, Arguments arguments) {
  const int64_t value = sqlite3_value_int64(arguments[0]);
  sqlite3_result_int(context, value > 0 ? 1 : value < 0 ? -1 : 0);
}

void ExclusiveOr(Context context, int, Arguments arguments) {
  sqlite3_result_int64(context,
                       sqlite3_value_int64(arguments[0]) ^ sqlite3_value_int64(arguments[1]));
}

constexpr auto kTiny = TypeKind::kTinyInt;
constexpr auto kSmall = TypeKind::kSmallInt;
constexpr auto kInt = TypeKind::kInt;
constexpr auto kBig = TypeKind::kBigInt;

// clang-format off
constexpr auto kIntegerFunctions = std::to_array<ScalarEntry>({
    {"t_add_tinyint", 2, Strict<ComputeInteger<kTiny, '+'>>},     {"t_add_smallint", 2, Strict<ComputeInteger<kSmall, '+'>>},
    {"t_add_int", 2, Strict<ComputeInteger<kInt, '+'>>},          {"t_add_bigint", 2, Strict<ComputeInteger<kBig, '+'>>},
    {"t_sub_tinyint", 2, Strict<ComputeInteger<kTiny, '-'>>},     {"t_sub_smallint", 2, Strict<ComputeInteger<kSmall, '-'>>},
    {"t_sub_int", 2, Strict<ComputeInteger<kInt, '-'>>},          {"t_sub_bigint", 2, Strict<ComputeInteger<kBig, '-'>>},
    {"t_mul_tinyint", 2, Strict<ComputeInteger<kTiny, '*'>>},     {"t_mul_smallint", 2, Strict<ComputeInteger<kSmall, '*'>>},
    {"t_mul_int", 2, Strict<ComputeInteger<kInt, '*'>>},          {"t_mul_bigint", 2, Strict<ComputeInteger<kBig, '*'>>},
    {"t_div_tinyint", 2, Strict<Divide<kTiny>>},                  {"t_div_smallint", 2, Strict<Divide<kSmall>>},
    {"t_div_int", 2, Strict<Divide<kInt>>},                       {"t_div_bigint", 2, Strict<Divide<kBig>>},
    {"t_mod_tinyint", 2, Strict<Modulo<kTiny>>},                  {"t_mod_smallint", 2, Strict<Modulo<kSmall>>},
    {"t_mod_int", 2, Strict<Modulo<kInt>>},                       {"t_mod_bigint", 2, Strict<Modulo<kBig>>},
    {"t_neg_tinyint", 1, Strict<Negate<kTiny>>},                  {"t_neg_smallint", 1, Strict<Negate<kSmall>>},
    {"t_neg_int", 1, Strict<Negate<kInt>>},                       {"t_neg_bigint", 1, Strict<Negate<kBig>>},
    {"t_abs_tinyint", 1, Strict<Absolute<kTiny>>},                {"t_abs_smallint", 1, Strict<Absolute<kSmall>>},
    {"t_abs_int", 1, Strict<Absolute<kInt>>},                     {"t_abs_bigint", 1, Strict<Absolute<kBig>>},
    {"t_round_tinyint", 3, Strict<Round<kTiny>>},                 {"t_round_smallint", 3, Strict<Round<kSmall>>},
    {"t_round_int", 3, Strict<Round<kInt>>},                      {"t_round_bigint", 3, Strict<Round<kBig>>},
    {"t_power_tinyint", 2, Strict<Power<kTiny>>},                 {"t_power_smallint", 2, Strict<Power<kSmall>>},
    {"t_power_int", 2, Strict<Power<kInt>>},                      {"t_power_bigint", 2, Strict<Power<kBig>>},
    {"t_sign_int", 1, Strict<SignOfInteger>},                     {"t_xor", 2, Strict<ExclusiveOr>},
});
// clang-format on

}  // namespace

std::span<const ScalarEntry> IntegerFunctions() {
  return kIntegerFunctions;
}

}  // namespace tavcc::sql::internal
