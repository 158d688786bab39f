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

// Takes a row in, or out again.
template <bool in>
void SumIntegers(Context context, int, Arguments arguments) {
  if (AnyNull(1, arguments)) return;
  auto* state = StateOf<IntegerSum>(context, true);
  if (state == nullptr) return sqlite3_result_error_nomem(context);
  state->count += in ? 1 : -1;
  const int64_t value = sqlite3_value_int64(arguments[0]);
  const bool overflow = in ? __builtin_add_overflow(state->sum, value, &state->sum)
                           : __builtin_sub_overflow(state->sum, value, &state->sum);
  if (overflow) FailOverflow(context, TypeKind::kBigInt);
}

// The server fails AVG too when the sum is beyond the type.
bool SumFits(Context context, TypeKind kind, int64_t sum) {
  if (kind == TypeKind::kBigInt || sum == static_cast<int32_t>(sum)) return true;
  FailOverflow(context, kind);
  return false;
}

template <TypeKind kind, bool average>
void SumIntegersFinal(Context context) {
  const auto* state = StateOf<IntegerSum>(context, false);
  if (state == nullptr || state->count == 0 || !SumFits(context, kind, state->sum)) return;
  sqlite3_result_int64(context, average ? state->sum / state->count : state->sum);
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

// Takes a row in, or out again. What is not wide took in whole values only; taking them out again
// stays within its range or leaves it as adding does.
template <bool in>
void SumDecimals(Context context, int count, Arguments arguments) {
  if (AnyNull(1, arguments)) return;
  auto* state = StateOf<DecimalSum>(context, true);
  if (state == nullptr) return sqlite3_result_error_nomem(context);
  state->count += in ? 1 : -1;
  if (count == 2) state->shape = sqlite3_value_int64(arguments[1]);
  if (!state->is_wide && IsIntegerValue(arguments[0])) {
    const int64_t value = sqlite3_value_int64(arguments[0]);
    int64_t sum = 0;
    const bool overflow = in ? __builtin_add_overflow(state->small, value, &sum)
                             : __builtin_sub_overflow(state->small, value, &sum);
    if (!overflow) {
      state->small = sum;
      return;
    }
  }
  if (!state->is_wide) {
    state->wide = WideInteger::FromInt64(state->small);
    state->is_wide = true;
  }
  const WideInteger value = CoefficientOf(ViewOf(arguments[0]));
  in ? state->wide.Add(value) : state->wide.Subtract(value);
  if (in && !FitsScaled(state->wide, kWidest)) FailOverflow(context, TypeKind::kDecimal);
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
  ReturnCoefficient(context, state->wide);
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
  ReturnCoefficient(context, average);
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
  ReturnCoefficient(context, state->best);
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
  ReturnCoefficient(context, best);
}

template <int wanted>
void FrameFinal(Context context) {
  FrameValue<wanted>(context);
  if (const auto* state = StateOf<ValuesInFrame>(context, false)) delete state->values;
}

// A sum, whose value at the end is the value so far.
template <ScalarFunction in, ScalarFunction out>
constexpr AggregateEntry Sum(const char* name, int arguments, FinalFunction final) {
  return {name, arguments, Guarded<in>, final, Guarded<out>, final};
}
constexpr auto SumOfIntegers = Sum<SumIntegers<true>, SumIntegers<false>>;
constexpr auto SumOfDecimals = Sum<SumDecimals<true>, SumDecimals<false>>;

// clang-format off
constexpr auto kAggregateFunctions = std::to_array<AggregateEntry>({
    SumOfIntegers("t_sum_int", 1, SumIntegersFinal<TypeKind::kInt, false>),
    SumOfIntegers("t_sum_bigint", 1, SumIntegersFinal<TypeKind::kBigInt, false>),
    SumOfIntegers("t_avg_int", 1, SumIntegersFinal<TypeKind::kInt, true>),
    SumOfIntegers("t_avg_bigint", 1, SumIntegersFinal<TypeKind::kBigInt, true>),
    SumOfDecimals("t_sum_decimal", 1, SumDecimalFinal<TypeKind::kDecimal>),
    SumOfDecimals("t_sum_money", 1, SumDecimalFinal<TypeKind::kMoney>),
    SumOfDecimals("t_avg_decimal", 2, AverageDecimalFinal),
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
