// Thread-local variables of the module. The compiler turns each access into a call of
// __emutls_get_address; the libraries it brings do so too.

#include <cstdint>
#include <cstring>

#include "automation/border/platform.h"
#include "automation/runtime/module_runtime.h"

namespace __gnu_cxx {
void __freeres();  // libstdc++'s: frees its memory for exceptions
}

namespace tavcc::automation {

namespace {

// A variable as the compiler describes it.
struct Variable {
  uintptr_t size;
  uintptr_t alignment;
  uintptr_t number;     // from 1, in the order of first use; 0 before
  const void* initial;  // null for zeros
};

// What one thread has of them: places[number - 1], null before the thread's first use.
struct Thread {
  Thread* next;
  Thread* before;
  uintptr_t count;
  void** places;
};

// Guards everything below, but not a thread's own places.
SRWLOCK lock = SRWLOCK_INIT;
uintptr_t variables = 0;
Thread* threads = nullptr;
DWORD slot = TLS_OUT_OF_INDEXES;
bool keep_all = false;

// There is no way to report an error from an access to a variable.
void* Allocate(size_t size) {
  void* memory = HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, size);
  if (memory == nullptr) TerminateProcess(GetCurrentProcess(), ERROR_NOT_ENOUGH_MEMORY);
  return memory;
}

void Free(void* memory) {
  HeapFree(GetProcessHeap(), 0, memory);
}

uintptr_t NumberOf(Variable& variable) {
  uintptr_t number = __atomic_load_n(&variable.number, __ATOMIC_ACQUIRE);
  if (number != 0) return number;
  AcquireSRWLockExclusive(&lock);
  if (variable.number == 0) __atomic_store_n(&variable.number, ++variables, __ATOMIC_RELEASE);
  number = variable.number;
  ReleaseSRWLockExclusive(&lock);
  return number;
}

Thread& ThisThread() {
  if (slot != TLS_OUT_OF_INDEXES) {
    if (auto* known = static_cast<Thread*>(TlsGetValue(slot))) return *known;
  }
  auto* made = static_cast<Thread*>(Allocate(sizeof(Thread)));
  AcquireSRWLockExclusive(&lock);
  if (slot == TLS_OUT_OF_INDEXES) slot = TlsAlloc();
  if (slot == TLS_OUT_OF_INDEXES) TerminateProcess(GetCurrentProcess(), ERROR_NO_MORE_ITEMS);
  made->next = threads;
  if (threads != nullptr) threads->before = made;
  threads = made;
  ReleaseSRWLockExclusive(&lock);
  TlsSetValue(slot, made);
  return *made;
}

void Grow(Thread& thread, uintptr_t count) {
  constexpr uintptr_t kStep = 8;
  const uintptr_t grown = (count + kStep - 1) / kStep * kStep;
  auto** places = static_cast<void**>(Allocate(grown * sizeof(void*)));
  if (thread.places != nullptr) {
    std::memcpy(places, thread.places, thread.count * sizeof(void*));
    Free(thread.places);
  }
  thread.places = places;
  thread.count = grown;
}

// A new variable, aligned; the memory it lies in is noted right before it.
void* NewPlace(const Variable& variable) {
  auto* memory = static_cast<char*>(Allocate(variable.size + variable.alignment + sizeof(void*)));
  const auto lowest = reinterpret_cast<uintptr_t>(memory) + sizeof(void*);
  const uintptr_t address =
      (lowest + variable.alignment - 1) / variable.alignment * variable.alignment;
  char* place = memory + (address - reinterpret_cast<uintptr_t>(memory));
  std::memcpy(place - sizeof(void*), &memory, sizeof(void*));
  if (variable.initial != nullptr) std::memcpy(place, variable.initial, variable.size);
  return place;
}

void FreePlace(void* place) {
  if (place == nullptr) return;
  void* memory;
  std::memcpy(&memory, static_cast<char*>(place) - sizeof(void*), sizeof(void*));
  Free(memory);
}

void FreeThread(Thread* thread) {
  for (uintptr_t i = 0; i < thread->count; ++i) FreePlace(thread->places[i]);
  if (thread->places != nullptr) Free(thread->places);
  Free(thread);
}

void FreeAllThreads() {
  while (threads != nullptr) {
    Thread* next = threads->next;
    FreeThread(threads);
    threads = next;
  }
  if (slot != TLS_OUT_OF_INDEXES) TlsFree(slot);
  slot = TLS_OUT_OF_INDEXES;
}

// Made before every other object of the module and so destroyed after them, when nothing can be
// raised any more.
struct LastDestructor {
  ~LastDestructor() {
    if (keep_all) return;
    __gnu_cxx::__freeres();
    FreeAllThreads();
  }
};
__attribute__((init_priority(101))) LastDestructor last_destructor;

}  // namespace

void FreeThreadStorage() {
  if (slot == TLS_OUT_OF_INDEXES) return;
  auto* thread = static_cast<Thread*>(TlsGetValue(slot));
  if (thread == nullptr) return;
  TlsSetValue(slot, nullptr);
  AcquireSRWLockExclusive(&lock);
  (thread->before != nullptr ? thread->before->next : threads) = thread->next;
  if (thread->next != nullptr) thread->next->before = thread->before;
  ReleaseSRWLockExclusive(&lock);
  FreeThread(thread);
}

void ModuleEnds(bool process_ends) {
  keep_all = process_ends;
}

}  // namespace tavcc::automation

extern "C" void* __emutls_get_address(void* object) {
  using namespace tavcc::automation;
  const DWORD last_error = GetLastError();  // an access to a variable changes nothing else
  auto& variable = *static_cast<Variable*>(object);
  const uintptr_t number = NumberOf(variable);
  Thread& thread = ThisThread();
  if (number > thread.count) Grow(thread, number);
  void*& place = thread.places[number - 1];
  if (place == nullptr) place = NewPlace(variable);
  SetLastError(last_error);
  return place;
}
