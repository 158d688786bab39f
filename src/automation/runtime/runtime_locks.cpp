// What the C++ runtime asks of the threads library: mutexes, conditions, and calls made once.
//
// One lock stands for all of its mutexes. It is held for moments (while a static variable is made,
// while a stack is unwound), may be taken again by the thread that has it, and owns nothing that
// would have to be given back.

#include <pthread.h>

#include "automation/border/platform.h"

namespace {

SRWLOCK lock = SRWLOCK_INIT;
CONDITION_VARIABLE changed = CONDITION_VARIABLE_INIT;
DWORD owner = 0;  // the thread that has the lock; 0 is no thread's id
int depth = 0;    // how often it has taken it

void Take() {
  const DWORD thread = GetCurrentThreadId();
  if (__atomic_load_n(&owner, __ATOMIC_RELAXED) != thread) {
    AcquireSRWLockExclusive(&lock);
    __atomic_store_n(&owner, thread, __ATOMIC_RELAXED);
  }
  ++depth;
}

void Give() {
  if (--depth > 0) return;
  __atomic_store_n(&owner, 0, __ATOMIC_RELAXED);
  ReleaseSRWLockExclusive(&lock);
}

struct Taken {
  Taken() { Take(); }
  ~Taken() { Give(); }
};

constexpr pthread_once_t kDone = 2;

}  // namespace

extern "C" {

int pthread_mutex_init(pthread_mutex_t*, const pthread_mutexattr_t*) {
  return 0;
}
int pthread_mutex_destroy(pthread_mutex_t*) {
  return 0;
}
int pthread_mutex_lock(pthread_mutex_t*) {
  return Take(), 0;
}
int pthread_mutex_unlock(pthread_mutex_t*) {
  return Give(), 0;
}

int pthread_cond_destroy(pthread_cond_t*) {
  return 0;
}
int pthread_cond_signal(pthread_cond_t*) {
  return WakeAllConditionVariable(&changed), 0;
}
int pthread_cond_broadcast(pthread_cond_t*) {
  return WakeAllConditionVariable(&changed), 0;
}
// Wakes for any condition; who waits looks again.
int pthread_cond_wait(pthread_cond_t*, pthread_mutex_t*) {
  const int taken = depth;
  depth = 0;
  __atomic_store_n(&owner, 0, __ATOMIC_RELAXED);
  SleepConditionVariableSRW(&changed, &lock, INFINITE, 0);
  __atomic_store_n(&owner, GetCurrentThreadId(), __ATOMIC_RELAXED);
  depth = taken;
  return 0;
}

// A function that raises counts as not called.
int pthread_once(pthread_once_t* state, void (*function)()) {
  if (__atomic_load_n(state, __ATOMIC_ACQUIRE) == kDone) return 0;
  const Taken taken;
  if (*state == kDone) return 0;
  function();
  __atomic_store_n(state, kDone, __ATOMIC_RELEASE);
  return 0;
}

}  // extern "C"
