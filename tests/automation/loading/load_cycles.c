// Loads and unloads the automation server, again and again, as hosts do, and looks whether the
// process is afterwards what it was: thread-local slots, handles, heap.
//
//   load_cycles WAY ROUNDS
//
// With TAVCC_ATTACKS=all in the environment there are five times as many rounds.
//
// WAY is one of
//   components  COM stays; a component is made and used, then COM frees unused libraries
//   requests    COM is initialized and uninitialized for each component
//   by-hand     LoadLibrary and FreeLibrary, with the entry points called directly
//   threads     the server stays; a thread for each component, which it makes, uses and ends with
//   leaking     as components, with a slot, a handle and a block leaked each time: must be noticed
//
// Exit status: 0 nothing grew, 1 something did, 2 a call failed.
#define COBJMACROS
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <windows.h>
#include <ole2.h>
#include <oleauto.h>

#include "plain_host.h"
#include "resources.h"

static const wchar_t kServer[] = L"TavM_CC_PlugIns.dll";
static const wchar_t kProgID[] = L"TavM_CC_PlugIns.CheckProfit";

static void Fail(const char* what, HRESULT result) {
  printf("%s: 0x%08lx\n", what, (unsigned long)result);
  fflush(stdout);
  ExitProcess(2);
}
static void Check(const char* what, HRESULT result) {
  if (FAILED(result)) Fail(what, result);
}

// Audits a bill that does not exist: a whole call through the host, its localized message included.
static void Use(IDispatch* object) {
  LPOLESTR name = (LPOLESTR)L"CheckBill";
  DISPID id;
  Check("GetIDsOfNames", IDispatch_GetIDsOfNames(object, &IID_NULL, &name, 1, 0, &id));
  VARIANT arguments[2];
  V_VT(&arguments[1]) = VT_BSTR;
  V_BSTR(&arguments[1]) = SysAllocString(L"dsn");
  V_VT(&arguments[0]) = VT_I4;
  V_I4(&arguments[0]) = 77;
  DISPPARAMS parameters = {arguments, NULL, 2, 0};
  VARIANT result;
  VariantInit(&result);
  Check("CheckBill", IDispatch_Invoke(object, id, &IID_NULL, 0, DISPATCH_METHOD, &parameters,
                                      &result, NULL, NULL));
  if (V_VT(&result) != VT_I4 || V_I4(&result) != 0) Fail("the bill is not refused", E_FAIL);
  VariantClear(&arguments[1]);
}

static void MakeAndUse(void) {
  CLSID id;
  IDispatch* object;
  Check("CLSIDFromProgID", CLSIDFromProgID(kProgID, &id));
  Check("CoCreateInstance",
        CoCreateInstance(&id, NULL, CLSCTX_INPROC_SERVER, &IID_IDispatch, (void**)&object));
  Use(object);
  IDispatch_Release(object);
}

static void MustBeGone(void) {
  if (GetModuleHandleW(kServer) != NULL) Fail("the server is still loaded", E_FAIL);
  if (LivingHostObjects() != 0) Fail("host objects are still held", E_FAIL);
}

static void ComponentRound(void) {
  MakeAndUse();
  CoFreeUnusedLibrariesEx(0, 0);
  MustBeGone();
}

static void RequestRound(void) {
  Check("CoInitialize", CoInitialize(NULL));
  if (!RegisterPlainHost()) Fail("the host's classes", E_FAIL);
  MakeAndUse();
  RevokePlainHost();
  CoUninitialize();
  MustBeGone();
}

typedef HRESULT(STDAPICALLTYPE* GetClassObject)(REFCLSID, REFIID, void**);
typedef HRESULT(STDAPICALLTYPE* CanUnloadNow)(void);

static void RoundByHand(void) {
  const HMODULE module = LoadLibraryW(kServer);
  if (module == NULL) Fail("LoadLibrary", (HRESULT)GetLastError());
  const GetClassObject get = (GetClassObject)(void*)GetProcAddress(module, "DllGetClassObject");
  const CanUnloadNow can_unload = (CanUnloadNow)(void*)GetProcAddress(module, "DllCanUnloadNow");
  CLSID id;
  IClassFactory* factory;
  IDispatch* object;
  Check("CLSIDFromProgID", CLSIDFromProgID(kProgID, &id));
  Check("DllGetClassObject", get(&id, &IID_IClassFactory, (void**)&factory));
  Check("CreateInstance",
        IClassFactory_CreateInstance(factory, NULL, &IID_IDispatch, (void**)&object));
  Use(object);
  if (can_unload() == S_OK) Fail("the server may be unloaded under an object", E_FAIL);
  IDispatch_Release(object);
  IClassFactory_Release(factory);
  if (can_unload() != S_OK) Fail("the server may not be unloaded", E_FAIL);
  FreeLibrary(module);
  MustBeGone();
}

static DWORD WINAPI ThreadOfOneComponent(void* unused) {
  (void)unused;
  Check("CoInitialize", CoInitialize(NULL));
  if (!RegisterPlainHost()) Fail("the host's classes", E_FAIL);
  MakeAndUse();
  RevokePlainHost();
  CoUninitialize();
  return 0;
}

static void ThreadRound(void) {
  const HANDLE thread = CreateThread(NULL, 0, ThreadOfOneComponent, NULL, 0, NULL);
  WaitForSingleObject(thread, INFINITE);
  CloseHandle(thread);
  if (LivingHostObjects() != 0) Fail("host objects are still held", E_FAIL);
}

static void LeakingRound(void) {
  static int left = 100;
  ComponentRound();
  if (left-- > 0) TlsAlloc();
  CreateEventW(NULL, FALSE, FALSE, NULL);
  HeapAlloc(GetProcessHeap(), 0, 32);
}

struct Way {
  const char* name;
  void (*round)(void);
  int needs_com;  // for all rounds together
};
static const struct Way kWays[] = {{"components", ComponentRound, 1}, {"requests", RequestRound, 0},
                                   {"by-hand", RoundByHand, 1},       {"threads", ThreadRound, 0},
                                   {"leaking", LeakingRound, 1}};

static int RoundsOf(const char* asked) {
  const char* attacks = getenv("TAVCC_ATTACKS");
  return atoi(asked) * (attacks != NULL && strcmp(attacks, "all") == 0 ? 5 : 1);
}

int main(int argc, char** argv) {
  const struct Way* way = NULL;
  for (size_t i = 0; argc == 3 && i < sizeof kWays / sizeof *kWays; ++i) {
    if (strcmp(kWays[i].name, argv[1]) == 0) way = &kWays[i];
  }
  if (way == NULL) Fail("usage: load_cycles components|requests|by-hand|threads|leaking ROUNDS",
                        E_INVALIDARG);
  const int rounds = RoundsOf(argv[2]);
  if (!ResourceCountsMove()) Fail("a leak would not be seen", E_FAIL);
  if (way->needs_com) {
    Check("CoInitialize", CoInitialize(NULL));
    if (!RegisterPlainHost()) Fail("the host's classes", E_FAIL);
  }
  if (way->round == ThreadRound) LoadLibraryW(kServer);

  // What the system itself keeps of a first use is there after a few rounds.
  enum { kWarmUp = 20 };
  for (int i = 0; i < kWarmUp; ++i) way->round();
  CountResources();
  const struct Resources before = CountResources();
  for (int i = 0; i < rounds; ++i) way->round();
  const struct Resources after = CountResources();

  printf("%s, %d rounds: slots %ld to %ld, handles %ld to %ld, heap blocks %ld to %ld, bytes %lld "
         "to %lld\n",
         way->name, rounds, before.slots, after.slots, before.handles, after.handles,
         before.heap_blocks, after.heap_blocks, before.heap_bytes, after.heap_bytes);
  // The heap breathes a little; a block leaked every round would be far above this.
  const int grew = after.slots > before.slots || after.handles > before.handles + 2 ||
                   after.heap_blocks > before.heap_blocks + rounds / 50 + 8 ||
                   after.heap_bytes > before.heap_bytes + rounds + 8192;
  if (grew) printf("it grew\n");
  fflush(stdout);
  // Everything was looked at; what COM does at the process's end is its own affair.
  ExitProcess(grew ? 1 : 0);
}
