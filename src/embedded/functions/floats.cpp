// Floating point arithmetic, which the server checks where the processor does not.
#include <array>
#include <cmath>
#include <limits>

#include "embedded/functions/support.h"

namespace tavcc::sql::internal {
namespace {

template <TypeKind kind>
void ReturnChecked(Context context, double value) {
  constexpr bool kReal = kind == TypeKind::kReal;
  constexpr double kLimit =
      kReal ? double{std::numeric_limits<float>::max()} : std::numeric_limits<double>::max();
  if (!(std::fabs(value) <= kLimit)) return FailOverflow(context, kind);
  sqlite3_result_double(context, kReal ? static_cast<double>(static_cast<float>(value)) : value);
}

template <TypeKind kind, char operation>
void ComputeFloat(Context context, int, Arguments arguments) {
  const double a = sqlite3_value_double(arguments[0]);
  const double b = sqlite3_value_double(arguments[1]);
  if (operation == '/' && b == 0) return Fail(context, errors::kDivideByZero);
  ReturnChecked<kind>(context, operation == '+'   ? a + b
                               : operation == '-' ? a - b
                               : operation == '*' ? a * b
                                                  : a / b);
}

void RoundFloat(Context context, int, Arguments arguments) {
  const double value = sqlite3_value_double(arguments[0]);
  const int digits = sqlite3_value_int(arguments[1]);
  const bool cut = sqlite3_value_int(arguments[2]) != 0;
  // Beyond these a double has no digit left to drop, or none left to keep.
  constexpr int kMostDigits = 308;
  if (digits > kMostDigits) return sqlite3_result_double(context, value);
  if (digits < -kMostDigits) return sqlite3_result_double(context, 0);
  const double unit = std::pow(10.0, std::abs(digits));
  const double scaled = digits >= 0 ? value * unit : value / unit;
  if (std::isinf(scaled)) return sqlite3_result_double(context, value);
  const double whole = cut ? std::trunc(scaled) : std::round(scaled);
  ReturnChecked<TypeKind::kFloat>(context, digits >= 0 ? whole / unit : whole * unit);
}

void SignOfFloat(Context context, int, Arguments arguments) {
  const double value = sqlite3_value_double(arguments[0]);
  sqlite3_result_double(context, value > 0 ? 1 : value < 0 ? -1 : 0);
}

using Formula = double (*)(double);

// A function of one argument; 3623 where it is undefined.
template <Formula formula>
void Apply(Context context, int, Arguments arguments) {
  const double result = formula(sqlite3_value_double(arguments[0]));
  if (std::isnan(result)) return Fail(context, errors::kInvalidFloatOperation);
  ReturnChecked<TypeKind::kFloat>(context, result);
}

constexpr double kUndefined = std::numeric_limits<double>::quiet_NaN();
double Logarithm(double x) {
  return x > 0 ? std::log(x) : kUndefined;
}
double DecimalLogarithm(double x) {
  return x > 0 ? std::log10(x) : kUndefined;
}
void PowerOfFloat(Context context, int, Arguments arguments) {
  const double base = sqlite3_value_double(arguments[0]);
  const double exponent = sqlite3_value_double(arguments[1]);
  if (base == 0 && exponent < 0) return Fail(context, errors::kDivideByZero);
  const double result = std::pow(base, exponent);
  if (std::isnan(result)) return Fail(context, errors::kInvalidFloatOperation);
  ReturnChecked<TypeKind::kFloat>(context, result);
}

constexpr auto kFloat = TypeKind::kFloat;
constexpr auto kReal = TypeKind::kReal;

// clang-format off
constexpr auto kFloatFunctions = std::to_array<ScalarEntry>({
    {"t_add_float", 2, Strict<ComputeFloat<kFloat, '+'>>},        {"t_add_real", 2, Strict<ComputeFloat<kReal, '+'>>},
    {"t_sub_float", 2, Strict<ComputeFloat<kFloat, '-'>>},        {"t_sub_real", 2, Strict<ComputeFloat<kReal, '-'>>},
    {"t_mul_float", 2, Strict<ComputeFloat<kFloat, '*'>>},        {"t_mul_real", 2, Strict<ComputeFloat<kReal, '*'>>},
    {"t_div_float", 2, Strict<ComputeFloat<kFloat, '/'>>},        {"t_div_real", 2, Strict<ComputeFloat<kReal, '/'>>},
    {"t_round_float", 3, Strict<RoundFloat>},                     {"t_sign_float", 1, Strict<SignOfFloat>},
    {"t_ceiling_float", 1, Strict<Apply<std::ceil>>},             {"t_floor_float", 1, Strict<Apply<std::floor>>},
    {"t_power_float", 2, Strict<PowerOfFloat>},                   {"t_sqrt", 1, Strict<Apply<std::sqrt>>},
    {"t_exp", 1, Strict<Apply<std::exp>>},                        {"t_log", 1, Strict<Apply<Logarithm>>},
    {"t_log10", 1, Strict<Apply<DecimalLogarithm>>},
});
// clang-format on

}  // namespace

std::span<const ScalarEntry> FloatFunctions() {
  return kFloatFunctions;
}

}  // namespace tavcc::sql::internal
