// SUM, AVG, MIN and MAX where SQLite's own would not do.
//
// SQLite hands out a context of zero bytes: every struct here is its initial state when all zero.
#include <array>
#include <limits>
#include <map>
#include <type_traits>

#include "embedded/functions/support.h"
#include "embedded/types/decimal_math.h"
#include "embedded/types/type_rules.h"

namespace tavcc::sql::internal {
namespace {

template <class State>
State* StateOf(Context context, bool create) {
  static_assert(std::is_trivially_copyable_v<State>);
  return static_cast<State*>(
      sqlite3_aggregate_context(context, create ? static_cast<int>(sizeof(State)) : 0));
}

// ---- Whole numbers ----

struct IntegerSum {
  int64_t count;
  int64_t sum;
};

void SumIntegerStep(Context context, int, Arguments arguments) {
  if (AnyNull(1, arguments)) return;
  auto* state = StateOf<IntegerSum>(context, true);
  if (state == nullptr) return sqlite3_result_error_nomem(context);
  ++state->count;
  if (__builtin_add_overflow(state->sum, sqlite3_value_int64(arguments[0]), &state->sum)) {
    FailOverflow(context, TypeKind::kBigInt);
  }
}

void SumIntegerInverse(Context context, int, Arguments arguments) {
  if (AnyNull(1, arguments)) return;
  auto* state = StateOf<IntegerSum>(context, true);
  if (state == nullptr) return sqlite3_result_error_nomem(context);
  --state->count;
  if (__builtin_sub_overflow(state->sum, sqlite3_value_int64(arguments[0]), &state->sum)) {
    FailOverflow(context, TypeKind::kBigInt);
  }
}

// The server fails AVG too when the sum is beyond the type.
bool SumFits(Context context, TypeKind kind, int64_t sum) {
  if (kind == TypeKind::kBigInt || sum == static_cast<int32_t>(sum)) return true;
  FailOverflow(context, kind);
  return false;
}

template <TypeKind kind>
void SumIntegerFinal(Context context) {
  const auto* state = StateOf<IntegerSum>(context, false);
  if (state == nullptr || state->count == 0) return;
  if (SumFits(context, kind, state->sum)) sqlite3_result_int64(context, state->sum);
}

template <TypeKind kind>
void AverageIntegerFinal(Context context) {
  const auto* state = StateOf<IntegerSum>(context, false);
  if (state == nullptr || state->count == 0) return;
  if (SumFits(context, kind, state->sum)) sqlite3_result_int64(context, state->sum / state->count);
}

// ---- Decimals ----

struct DecimalSum {
  int64_t count;
  int64_t shape;  // of AVG
  int64_t small;  // the sum while `is_wide` is false
  bool is_wide;
  WideInteger wide;
};

constexpr SqlType kWidest = DecimalType(38, 0);

void SumDecimalStep(Context context, int count, Arguments arguments) {
  if (AnyNull(1, arguments)) return;
  auto* state = StateOf<DecimalSum>(context, true);
  if (state == nullptr) return sqlite3_result_error_nomem(context);
  ++state->count;
  if (count == 2) state->shape = sqlite3_value_int64(arguments[1]);
  if (!state->is_wide && IsIntegerValue(arguments[0])) {
    int64_t sum = 0;
    if (!__builtin_add_overflow(state->small, sqlite3_value_int64(arguments[0]), &sum)) {
      state->small = sum;
      return;
    }
  }
  if (!state->is_wide) {
    state->wide = WideInteger::FromInt64(state->small);
    state->is_wide = true;
  }
  state->wide.Add(CoefficientOf(ViewOf(arguments[0])));
  if (!FitsScaled(state->wide, kWidest)) FailOverflow(context, TypeKind::kDecimal);
}

void SumDecimalInverse(Context context, int, Arguments arguments) {
  if (AnyNull(1, arguments)) return;
  auto* state = StateOf<DecimalSum>(context, true);
  if (state == nullptr) return sqlite3_result_error_nomem(context);
  --state->count;
  if (!state->is_wide) {
    // What is not wide took in whole values only; taking them out again stays within its range or
    // leaves it as adding does.
    int64_t sum = 0;
    if (!__builtin_sub_overflow(state->small, sqlite3_value_int64(arguments[0]), &sum)) {
      state->small = sum;
      return;
    }
    state->wide = WideInteger::FromInt64(state->small);
    state->is_wide = true;
  }
  state->wide.Subtract(CoefficientOf(ViewOf(arguments[0])));
}

WideInteger SumOf(const DecimalSum& state) {
  return state.is_wide ? state.wide : WideInteger::FromInt64(state.small);
}

template <TypeKind kind>
void SumDecimalFinal(Context context) {
  const auto* state = StateOf<DecimalSum>(context, false);
  if (state == nullptr || state->count == 0) return;
  if (!state->is_wide) return sqlite3_result_int64(context, state->small);
  if (!FitsScaled(state->wide, kind == TypeKind::kMoney ? Type(kind) : kWidest)) {
    return FailOverflow(context, kind);
  }
  Scratch scratch;
  Return(context, StoreCoefficient(state->wide, &scratch));
}

void AverageDecimalFinal(Context context) {
  const auto* state = StateOf<DecimalSum>(context, false);
  if (state == nullptr || state->count == 0) return;
  const auto scale = static_cast<int>(state->shape & 63);
  const SqlType result = TypeFromCode(state->shape >> 12);
  WideInteger average;
  const DecimalStatus status = DivideDecimals(
      SumOf(*state), scale, WideInteger::FromInt64(state->count), 0, result, &average);
  if (status != DecimalStatus::kOk) return FailOverflow(context, result.kind);
  Scratch scratch;
  Return(context, StoreCoefficient(average, &scratch));
}

struct DecimalExtreme {
  bool any;
  WideInteger best;
};

template <int wanted>
void ExtremeStep(Context context, int, Arguments arguments) {
  if (AnyNull(1, arguments)) return;
  auto* state = StateOf<DecimalExtreme>(context, true);
  if (state == nullptr) return sqlite3_result_error_nomem(context);
  const WideInteger value = CoefficientOf(ViewOf(arguments[0]));
  if (!state->any || WideInteger::Compare(value, state->best) == wanted) state->best = value;
  state->any = true;
}

void ExtremeFinal(Context context) {
  const auto* state = StateOf<DecimalExtreme>(context, false);
  if (state == nullptr) return;
  Scratch scratch;
  Return(context, StoreCoefficient(state->best, &scratch));
}

// ---- MIN and MAX over rows that leave again ----

struct Smaller {
  bool operator()(const WideInteger& a, const WideInteger& b) const {
    return WideInteger::Compare(a, b) < 0;
  }
};
using Values = std::map<WideInteger, int64_t, Smaller>;  // each value, and how often it is there

struct ValuesInFrame {
  Values* values;
};

void FrameStep(Context context, int, Arguments arguments) {
  if (AnyNull(1, arguments)) return;
  auto* state = StateOf<ValuesInFrame>(context, true);
  if (state == nullptr) return sqlite3_result_error_nomem(context);
  if (state->values == nullptr) state->values = new Values;
  ++(*state->values)[CoefficientOf(ViewOf(arguments[0]))];
}

void FrameInverse(Context context, int, Arguments arguments) {
  const auto* state = StateOf<ValuesInFrame>(context, false);
  if (AnyNull(1, arguments) || state == nullptr || state->values == nullptr) return;
  const auto found = state->values->find(CoefficientOf(ViewOf(arguments[0])));
  if (found != state->values->end() && --found->second == 0) state->values->erase(found);
}

template <int wanted>
void FrameValue(Context context) {
  const auto* state = StateOf<ValuesInFrame>(context, false);
  if (state == nullptr || state->values == nullptr || state->values->empty()) return;
  const WideInteger& best =
      wanted < 0 ? state->values->begin()->first : state->values->rbegin()->first;
  Scratch scratch;
  Return(context, StoreCoefficient(best, &scratch));
}

template <int wanted>
void FrameFinal(Context context) {
  FrameValue<wanted>(context);
  if (const auto* state = StateOf<ValuesInFrame>(context, false)) delete state->values;
}

// One whose value at the end is the value so far.
constexpr AggregateEntry Over(const char* name, int arguments, ScalarFunction step,
                              FinalFunction final, ScalarFunction inverse) {
  return {name, arguments, step, final, inverse, final};
}

// clang-format off
constexpr auto kAggregateFunctions = std::to_array<AggregateEntry>({
    Over("t_sum_int", 1, Guarded<SumIntegerStep>, SumIntegerFinal<TypeKind::kInt>, Guarded<SumIntegerInverse>),
    Over("t_sum_bigint", 1, Guarded<SumIntegerStep>, SumIntegerFinal<TypeKind::kBigInt>, Guarded<SumIntegerInverse>),
    Over("t_avg_int", 1, Guarded<SumIntegerStep>, AverageIntegerFinal<TypeKind::kInt>, Guarded<SumIntegerInverse>),
    Over("t_avg_bigint", 1, Guarded<SumIntegerStep>, AverageIntegerFinal<TypeKind::kBigInt>, Guarded<SumIntegerInverse>),
    Over("t_sum_decimal", 1, Guarded<SumDecimalStep>, SumDecimalFinal<TypeKind::kDecimal>, Guarded<SumDecimalInverse>),
    Over("t_sum_money", 1, Guarded<SumDecimalStep>, SumDecimalFinal<TypeKind::kMoney>, Guarded<SumDecimalInverse>),
    Over("t_avg_decimal", 2, Guarded<SumDecimalStep>, AverageDecimalFinal, Guarded<SumDecimalInverse>),
    {"t_min_decimal", 1, Guarded<ExtremeStep<-1>>, ExtremeFinal},
    {"t_max_decimal", 1, Guarded<ExtremeStep<1>>, ExtremeFinal},
    {"t_min_decimal_over", 1, Guarded<FrameStep>, FrameFinal<-1>, Guarded<FrameInverse>, FrameValue<-1>},
    {"t_max_decimal_over", 1, Guarded<FrameStep>, FrameFinal<1>, Guarded<FrameInverse>, FrameValue<1>},
});
// clang-format on

}  // namespace

std::span<const AggregateEntry> AggregateFunctions() {
  return kAggregateFunctions;
}

}  // namespace tavcc::sql::internal
