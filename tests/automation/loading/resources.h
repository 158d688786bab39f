// What a process holds: the measures of a leak. Each of them moves when something is leaked, on
// Windows and under Wine (whose GetProcessHandleCount is always 0).
#pragma once

#ifdef __cplusplus
extern "C" {
#endif

struct Resources {
  long slots;        // thread-local slots in use
  long handles;      // handles of this process, as the system lists them
  long heap_blocks;  // blocks in use, in all heaps
  long long heap_bytes;
};

// Counts them. A count may itself take memory once; the second and later ones leave all as it is.
struct Resources CountResources(void);

// Takes one of each, looks whether every count has moved by it, and gives all back. Returns 0 when
// a count is blind.
int ResourceCountsMove(void);

#ifdef __cplusplus
}
#endif
