// What the C++ runtime asks of the threads library: the time.

#include <pthread_time.h>

#include <cstdint>

#include "automation/border/platform.h"

namespace {

constexpr int64_t kNanoseconds = 1'000'000'000;
// A file time counts 100 nanoseconds from 1601, the clock on the wall from 1970.
constexpr int64_t kFileTimeUnits = 10'000'000;
constexpr int64_t kSecondsTo1970 = 11'644'473'600;

timespec SinceStart() {
  LARGE_INTEGER frequency;
  LARGE_INTEGER count;
  QueryPerformanceFrequency(&frequency);
  QueryPerformanceCounter(&count);
  const int64_t rest = count.QuadPart % frequency.QuadPart;
  return {static_cast<time_t>(count.QuadPart / frequency.QuadPart),
          static_cast<long>(rest * kNanoseconds / frequency.QuadPart)};
}

timespec OnTheWall() {
  FILETIME now;
  GetSystemTimeAsFileTime(&now);
  const int64_t units = (int64_t{now.dwHighDateTime} << 32) | now.dwLowDateTime;
  return {static_cast<time_t>(units / kFileTimeUnits - kSecondsTo1970),
          static_cast<long>(units % kFileTimeUnits * (kNanoseconds / kFileTimeUnits))};
}

}  // namespace

extern "C" int clock_gettime(clockid_t clock, timespec* time) {
  *time = clock == CLOCK_REALTIME ? OnTheWall() : SinceStart();
  return 0;
}
