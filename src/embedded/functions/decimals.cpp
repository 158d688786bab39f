// Decimal and money arithmetic. Each function first tries two 64-bit coefficients, which is what
// nearly every value is; only what overflows there goes through wide arithmetic.
#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "embedded/functions/support.h"
#include "embedded/types/convert.h"
#include "embedded/types/decimal_math.h"
#include "embedded/types/type_rules.h"

namespace tavcc::sql::internal {
namespace {

struct Shape {
  explicit Shape(sqlite3_value* value) {
    const int64_t code = sqlite3_value_int64(value);
    scale_a = static_cast<int>(code & 63);
    scale_b = static_cast<int>(code >> 6 & 63);
    result = TypeFromCode(code >> 12);
    scale = StoredScale(result);
  }
  int scale_a, scale_b;
  SqlType result;
  int scale;

  // Whether a 64-bit coefficient is within the result's range.
  bool Holds(int64_t value) const {
    constexpr int kMostIn64Bits = 18;
    if (result.kind == TypeKind::kMoney) return true;
    if (result.kind == TypeKind::kSmallMoney) return value == static_cast<int32_t>(value);
    if (result.precision > kMostIn64Bits) return true;
    const int64_t limit = kPowersOf10[static_cast<size_t>(result.precision)];
    return value < limit && value > -limit;
  }
};

void ReturnStatus(Context context, DecimalStatus status, const Shape& shape,
                  const WideInteger& value) {
  if (status == DecimalStatus::kDivideByZero) return Fail(context, errors::kDivideByZero);
  if (status == DecimalStatus::kOverflow) return FailOverflow(context, shape.result.kind);
  ReturnCoefficient(context, value);
}

bool ReturnSmall(Context context, const Shape& shape, int64_t value) {
  if (!shape.Holds(value)) return false;
  sqlite3_result_int64(context, value);
  return true;
}

// value * 10^power; false when it does not fit or power is no index of the table.
bool ScaleUp(int64_t value, int power, int64_t* result) {
  if (power < 0 || power >= static_cast<int>(kPowersOf10.size())) return false;
  return !__builtin_mul_overflow(value, kPowersOf10[static_cast<size_t>(power)], result);
}

// value / 10^power, half away from zero.
bool ScaleDown(int64_t value, int power, int64_t* result) {
  if (power < 0 || power >= static_cast<int>(kPowersOf10.size())) return false;
  const int64_t unit = kPowersOf10[static_cast<size_t>(power)];
  const int64_t rest = value % unit;
  const int64_t distance = rest < 0 ? -rest : rest;
  const int64_t away = distance >= unit - distance && power > 0 ? (rest < 0 ? -1 : 1) : 0;
  *result = value / unit + away;
  return true;
}

bool BothSmall(Arguments arguments) {
  return IsIntegerValue(arguments[0]) && IsIntegerValue(arguments[1]);
}

struct Small {
  int64_t a, b;
};

// Both operands at the larger of their scales, when that fits in 64 bits.
bool AlignSmall(Arguments arguments, const Shape& shape, Small* small) {
  if (!BothSmall(arguments)) return false;
  const int scale = std::max(shape.scale_a, shape.scale_b);
  return ScaleUp(sqlite3_value_int64(arguments[0]), scale - shape.scale_a, &small->a) &&
         ScaleUp(sqlite3_value_int64(arguments[1]), scale - shape.scale_b, &small->b);
}

WideInteger CoefficientOf(sqlite3_value* value) {
  return sql::CoefficientOf(ViewOf(value));
}

template <DecimalOperation operation>
void ComputeWide(Context context, Arguments arguments, const Shape& shape) {
  WideInteger result;
  const DecimalStatus status =
      operation(CoefficientOf(arguments[0]), shape.scale_a, CoefficientOf(arguments[1]),
                shape.scale_b, shape.result, &result);
  ReturnStatus(context, status, shape, result);
}

template <bool subtract>
void AddOrSubtract(Context context, int, Arguments arguments) {
  const Shape shape(arguments[2]);
  Small small;
  int64_t result = 0;
  if (shape.scale == std::max(shape.scale_a, shape.scale_b) &&
      AlignSmall(arguments, shape, &small)) {
    const bool overflow = subtract ? __builtin_sub_overflow(small.a, small.b, &result)
                                   : __builtin_add_overflow(small.a, small.b, &result);
    if (!overflow && ReturnSmall(context, shape, result)) return;
  }
  ComputeWide<subtract ? SubtractDecimals : AddDecimals>(context, arguments, shape);
}

void Multiply(Context context, int, Arguments arguments) {
  const Shape shape(arguments[2]);
  int64_t result = 0;
  if (BothSmall(arguments) && !__builtin_mul_overflow(sqlite3_value_int64(arguments[0]),
                                                      sqlite3_value_int64(arguments[1]), &result)) {
    const int scale = shape.scale_a + shape.scale_b;
    if (ScaleDown(result, scale - shape.scale, &result) && ReturnSmall(context, shape, result))
      return;
  }
  ComputeWide<MultiplyDecimals>(context, arguments, shape);
}

void Divide(Context context, int, Arguments arguments) {
  const Shape shape(arguments[2]);
  if (BothSmall(arguments)) {
    const int64_t b = sqlite3_value_int64(arguments[1]);
    int64_t a = 0;
    if (b == 0) return Fail(context, errors::kDivideByZero);
    if (b != -1 && ScaleUp(sqlite3_value_int64(arguments[0]),
                           shape.scale + shape.scale_b - shape.scale_a, &a)) {
      if (ReturnSmall(context, shape, a / b)) return;
    }
  }
  ComputeWide<DivideDecimals>(context, arguments, shape);
}

void Modulo(Context context, int, Arguments arguments) {
  ComputeWide<RemainderOfDecimals>(context, arguments, Shape(arguments[2]));
}

void Compare(Context context, int, Arguments arguments) {
  const Shape shape(arguments[2]);
  Small small;
  if (AlignSmall(arguments, shape, &small)) {
    return sqlite3_result_int(context, small.a < small.b ? -1 : small.a > small.b ? 1 : 0);
  }
  sqlite3_result_int(context, CompareDecimals(CoefficientOf(arguments[0]), shape.scale_a,
                                              CoefficientOf(arguments[1]), shape.scale_b));
}

// Whether the argument is a 64-bit coefficient whose opposite is one too.
bool IsSmall(sqlite3_value* value) {
  return IsIntegerValue(value) && sqlite3_value_int64(value) != std::numeric_limits<int64_t>::min();
}

void Negate(Context context, int, Arguments arguments) {
  if (IsSmall(arguments[0])) {
    return sqlite3_result_int64(context, -sqlite3_value_int64(arguments[0]));
  }
  WideInteger value = CoefficientOf(arguments[0]);
  value.Negate();
  ReturnCoefficient(context, value);
}

void Absolute(Context context, int, Arguments arguments) {
  if (IsSmall(arguments[0])) {
    const int64_t small = sqlite3_value_int64(arguments[0]);
    return sqlite3_result_int64(context, small < 0 ? -small : small);
  }
  WideInteger value = CoefficientOf(arguments[0]);
  if (value.IsNegative()) value.Negate();
  ReturnCoefficient(context, value);
}

void Order(Context context, int, Arguments arguments) {
  const bool below = !IsIntegerValue(arguments[0]) && CoefficientOf(arguments[0]).IsNegative();
  sqlite3_result_int(context, below ? -1 : 0);
}

// From scale_a to the result's scale and range; for values that are exact there already.
void ReturnAt(Context context, const Shape& shape, WideInteger value, int scale) {
  Rescale(&value, scale, shape.scale);
  const bool fits = FitsScaled(value, shape.result);
  ReturnStatus(context, fits ? DecimalStatus::kOk : DecimalStatus::kOverflow, shape, value);
}

void Sign(Context context, int, Arguments arguments) {
  const WideInteger value = CoefficientOf(arguments[0]);
  const int sign = value.IsZero() ? 0 : value.IsNegative() ? -1 : 1;
  ReturnAt(context, Shape(arguments[1]), WideInteger::FromInt64(sign), 0);
}

template <bool up>
void ToWhole(Context context, int, Arguments arguments) {
  const Shape shape(arguments[1]);
  const WideInteger value = CoefficientOf(arguments[0]);
  WideInteger whole = value;
  whole.CutDigits(shape.scale_a);
  WideInteger back = whole;
  back.MultiplyByPowerOf10(shape.scale_a);
  const bool inexact = WideInteger::Compare(back, value) != 0;
  if (inexact && value.IsNegative() != up) whole.Add(WideInteger::FromInt64(up ? 1 : -1));
  ReturnAt(context, shape, whole, 0);
}

void Round(Context context, int, Arguments arguments) {
  const Shape shape(arguments[3]);
  constexpr int64_t kMostDigits = 38;
  const int64_t digits =
      std::clamp<int64_t>(sqlite3_value_int64(arguments[1]), -kMostDigits, kMostDigits);
  const bool cut = sqlite3_value_int64(arguments[2]) != 0;
  const auto drop = static_cast<int>(std::max<int64_t>(shape.scale_a - digits, 0));
  if (!cut && IsIntegerValue(arguments[0])) {
    int64_t value = sqlite3_value_int64(arguments[0]);
    const bool done = ScaleDown(value, drop, &value) && ScaleUp(value, drop, &value);
    if (done && shape.scale == shape.scale_a && ReturnSmall(context, shape, value)) return;
  }
  WideInteger value = CoefficientOf(arguments[0]);
  if (cut) {
    value.CutDigits(drop);
  } else {
    value.RoundDigits(drop);
  }
  value.MultiplyByPowerOf10(drop);
  ReturnAt(context, shape, value, shape.scale_a);
}

void Power(Context context, int, Arguments arguments) {
  const Shape shape(arguments[2]);
  const SqlType from = DecimalType(38, shape.scale_a);
  const SqlType middle = Type(TypeKind::kFloat);
  Scratch scratch;
  StoredView base, result;
  SqlError error;
  if (!ConvertView(ViewOf(arguments[0]), from, middle, ConvertMode::kCast, 0, &scratch, &base,
                   &error)) {
    return Fail(context, error);
  }
  const double value = std::pow(base.real, sqlite3_value_double(arguments[1]));
  if (std::isnan(value)) return Fail(context, errors::kInvalidFloatOperation);
  if (!ConvertView(StoredView::Real(value), middle, shape.result, ConvertMode::kCast, 0, &scratch,
                   &result, &error)) {
    return Fail(context, error);
  }
  Return(context, result);
}

// clang-format off
constexpr auto kDecimalFunctions = std::to_array<ScalarEntry>({
    {"t_add_decimal", 3, Strict<AddOrSubtract<false>>},
    {"t_sub_decimal", 3, Strict<AddOrSubtract<true>>},
    {"t_mul_decimal", 3, Strict<Multiply>},
    {"t_div_decimal", 3, Strict<Divide>},
    {"t_mod_decimal", 3, Strict<Modulo>},
    {"t_cmp_decimal", 3, Strict<Compare>},
    {"t_neg_decimal", 1, Strict<Negate>},
    {"t_abs_decimal", 1, Strict<Absolute>},
    {"t_order_decimal", 1, Strict<Order>},
    {"t_sign_decimal", 2, Strict<Sign>},
    {"t_ceiling_decimal", 2, Strict<ToWhole<true>>},
    {"t_floor_decimal", 2, Strict<ToWhole<false>>},
    {"t_round_decimal", 4, Strict<Round>},
    {"t_power_decimal", 3, Strict<Power>},
});
// clang-format on

}  // namespace

std::span<const ScalarEntry> DecimalFunctions() {
  return kDecimalFunctions;
}

}  // namespace tavcc::sql::internal
