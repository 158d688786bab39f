// Values that are computed in steps: t_keep, t_kept and t_last.
#include <array>
#include <new>

#include "embedded/functions/support.h"

namespace tavcc::sql::internal {
namespace {

void Keep(Context context, int, Arguments arguments) {
  auto& kept = SessionOf(context).kept;
  const auto place = static_cast<size_t>(sqlite3_value_int64(arguments[0]));
  if (place >= kept.size()) kept.resize(place + 1);
  kept[place].reset(sqlite3_value_dup(arguments[1]));
  if (!kept[place]) throw std::bad_alloc();
}

void Kept(Context context, int, Arguments arguments) {
  const auto place = static_cast<size_t>(sqlite3_value_int64(arguments[0]));
  sqlite3_result_value(context, SessionOf(context).kept[place].get());
}

void Last(Context context, int count, Arguments arguments) {
  sqlite3_result_value(context, arguments[count - 1]);
}

// Not deterministic: SQLite would compute a call of constants once, at a time of its own.
constexpr auto kStepFunctions = std::to_array<ScalarEntry>({
    {"t_keep", 2, Guarded<Keep>, false},
    {"t_kept", 1, Guarded<Kept>, false},
    {"t_last", -1, Guarded<Last>, false},
});

}  // namespace

std::span<const ScalarEntry> StepFunctions() {
  return kStepFunctions;
}

}  // namespace tavcc::sql::internal

namespace tavcc::sql {

void FreeValue::operator()(sqlite3_value* value) const {
  sqlite3_value_free(value);
}

}  // namespace tavcc::sql
