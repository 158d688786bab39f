#include "resources.h"

#include <windows.h>
#include <winternl.h>

// The list of all handles; Windows' own headers leave its form out.
struct ListedHandle {
  void* object;
  ULONG_PTR process_id;
  ULONG_PTR value;
  ULONG access;
  USHORT trace;
  USHORT type;
  ULONG attributes;
  ULONG reserved;
};
struct HandleList {
  ULONG_PTR count;
  ULONG_PTR reserved;
  struct ListedHandle handles[1];
};
enum { kExtendedHandleInformation = 64, kMostSlots = 1088 };

static long CountSlots(void) {
  static DWORD taken[kMostSlots + 1];
  long available = 0;
  while (available <= kMostSlots && (taken[available] = TlsAlloc()) != TLS_OUT_OF_INDEXES) {
    ++available;
  }
  for (long i = 0; i < available; ++i) TlsFree(taken[i]);
  return kMostSlots - available;
}

static long CountHandles(void) {
  static char list_memory[4 << 20];
  const struct HandleList* list = (const struct HandleList*)list_memory;
  ULONG length = 0;
  if (NtQuerySystemInformation((SYSTEM_INFORMATION_CLASS)kExtendedHandleInformation, list_memory,
                               sizeof list_memory, &length) < 0) {
    return -1;
  }
  long count = 0;
  for (ULONG_PTR i = 0; i < list->count; ++i) {
    if (list->handles[i].process_id == GetCurrentProcessId()) ++count;
  }
  return count;
}

struct Resources CountResources(void) {
  struct Resources found = {CountSlots(), CountHandles(), 0, 0};
  static HANDLE heaps[64];
  const DWORD heap_count = GetProcessHeaps(64, heaps);
  for (DWORD i = 0; i < heap_count && i < 64; ++i) {
    HeapLock(heaps[i]);
    PROCESS_HEAP_ENTRY entry = {0};
    while (HeapWalk(heaps[i], &entry)) {
      if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) == 0) continue;
      ++found.heap_blocks;
      found.heap_bytes += entry.cbData;
    }
    HeapUnlock(heaps[i]);
  }
  return found;
}

int ResourceCountsMove(void) {
  // Small blocks may come in groups: enough of them to need another group.
  enum { kBlocks = 1000, kBlockSize = 48 };
  static void* blocks[kBlocks];
  CountResources();
  const struct Resources before = CountResources();
  const DWORD slot = TlsAlloc();
  const HANDLE handle = CreateEventW(NULL, FALSE, FALSE, NULL);
  for (int i = 0; i < kBlocks; ++i) blocks[i] = HeapAlloc(GetProcessHeap(), 0, kBlockSize);
  const struct Resources with = CountResources();
  for (int i = 0; i < kBlocks; ++i) HeapFree(GetProcessHeap(), 0, blocks[i]);
  CloseHandle(handle);
  TlsFree(slot);
  return with.slots == before.slots + 1 && with.handles == before.handles + 1 &&
         with.heap_blocks > before.heap_blocks &&
         with.heap_bytes >= before.heap_bytes + kBlocks / 2 * kBlockSize;
}
