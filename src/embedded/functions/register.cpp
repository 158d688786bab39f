// Registration, results, and the session's clock.
#include <chrono>
#include <ctime>

#include "embedded/functions/collation.h"
#include "embedded/functions/functions.h"
#include "embedded/functions/support.h"
#include "embedded/types/type_rules.h"

namespace tavcc::sql {
namespace internal {

void FailOverflow(Context context, TypeKind kind) {
  Fail(context, errors::kArithmeticOverflow, {"expression", KindText(kind)});
}

void Return(Context context, const StoredView& cell) {
  switch (cell.kind) {
    case StoredView::Kind::kNull:
      sqlite3_result_null(context);
      return;
    case StoredView::Kind::kInteger:
      sqlite3_result_int64(context, cell.integer);
      return;
    case StoredView::Kind::kReal:
      sqlite3_result_double(context, cell.real);
      return;
    case StoredView::Kind::kText:
      ReturnText(context, cell.bytes);
      return;
    case StoredView::Kind::kBlob:
      sqlite3_result_blob64(context, cell.bytes.data(), cell.bytes.size(), SQLITE_TRANSIENT);
      return;
  }
}

void ReturnCoefficient(Context context, const WideInteger& coefficient) {
  Scratch scratch;
  Return(context, StoreCoefficient(coefficient, &scratch));
}

namespace {

void Check(int result) {
  if (result != SQLITE_OK) RaiseUnsupported(sqlite3_errstr(result));
}

void RegisterScalars(sqlite3* database, FunctionSession* session,
                     std::span<const ScalarEntry> entries) {
  for (const ScalarEntry& entry : entries) {
    const int flags =
        SQLITE_UTF8 | SQLITE_INNOCUOUS | (entry.deterministic ? SQLITE_DETERMINISTIC : 0);
    Check(sqlite3_create_function_v2(database, entry.name, entry.arguments, flags, session,
                                     entry.function, nullptr, nullptr, nullptr));
  }
}

int Collate(void*, int size_a, const void* a, int size_b, const void* b) {
  return CompareText({static_cast<const char*>(a), static_cast<size_t>(size_a)},
                     {static_cast<const char*>(b), static_cast<size_t>(size_b)});
}

}  // namespace
}  // namespace internal

DateTime FunctionSession::Now() {
  if (now) return *now;
  if (clock) {
    now = clock();
    return *now;
  }
  const auto instant = std::chrono::system_clock::now();
  const std::time_t seconds = std::chrono::system_clock::to_time_t(instant);
  const auto fraction = instant.time_since_epoch() % std::chrono::seconds(1);
  std::tm local{};
#ifdef _WIN32
  localtime_s(&local, &seconds);
#else
  localtime_r(&seconds, &local);
#endif
  now = DateTime::FromParts(
            {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min,
             std::min(local.tm_sec, 59),
             static_cast<int>(std::chrono::floor<std::chrono::milliseconds>(fraction).count())})
            .value_or(DateTime());
  return *now;
}

void RegisterFunctions(sqlite3* database, FunctionSession* session) {
  using namespace internal;
  for (const auto entries :
       {IntegerFunctions(), FloatFunctions(), DecimalFunctions(), ConversionFunctions(),
        TextFunctions(), SearchFunctions(), DateFunctions(), StepFunctions()}) {
    RegisterScalars(database, session, entries);
  }
  for (const AggregateEntry& entry : AggregateFunctions()) {
    constexpr int kFlags = SQLITE_UTF8 | SQLITE_INNOCUOUS | SQLITE_DETERMINISTIC;
    if (entry.inverse == nullptr) {
      Check(sqlite3_create_function_v2(database, entry.name, entry.arguments, kFlags, session,
                                       nullptr, entry.step, entry.final, nullptr));
    } else {
      Check(sqlite3_create_window_function(database, entry.name, entry.arguments, kFlags, session,
                                           entry.step, entry.final, entry.value, entry.inverse,
                                           nullptr));
    }
  }
  Check(sqlite3_create_collation_v2(database, "tsql", SQLITE_UTF8, nullptr, Collate, nullptr));
}

}  // namespace tavcc::sql
