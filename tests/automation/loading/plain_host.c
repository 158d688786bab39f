#define COBJMACROS
#include "plain_host.h"

#include <windows.h>
#include <ole2.h>
#include <oleauto.h>

enum Answer { kNothing, kTrue, kNumber, kText, kObject };

struct Role;
struct Member {
  const wchar_t* name;
  enum Answer answer;
  const struct Role* role;  // of an object
};
struct Role {
  const wchar_t* prog_id;  // null for one that no ProgID makes
  const struct Member* members;
};

static const struct Member kUserMembers[] = {{L"UserID", kNumber, NULL}, {0}};
static const struct Role kUser = {NULL, kUserMembers};
static const struct Member kRecordsetMembers[] = {
    {L"EOF", kTrue, NULL}, {L"BOF", kTrue, NULL}, {L"State", kNumber, NULL},
    {L"Close", kNothing, NULL}, {0}};
static const struct Role kRecordset = {NULL, kRecordsetMembers};
static const struct Member kErrorsMembers[] = {{L"Count", kNothing, NULL}, {0}};
static const struct Role kErrors = {NULL, kErrorsMembers};
static const struct Member kConnectionMembers[] = {
    {L"Execute", kObject, &kRecordset}, {L"Errors", kObject, &kErrors}, {L"State", kNumber, NULL},
    {0}};
static const struct Role kConnection = {NULL, kConnectionMembers};
static const struct Member kContextMembers[] = {
    {L"UserContext", kObject, &kUser}, {L"Bind", kNothing, NULL},
    {L"Connection", kObject, &kConnection}, {L"ReadyFirst", kNothing, NULL},
    {L"ReadySecond", kNothing, NULL}, {0}};
static const struct Role kContext = {NULL, kContextMembers};

static const struct Member kGlobalMembers[] = {{L"DbContext", kObject, &kContext}, {0}};
static const struct Member kLoaderMembers[] = {
    {L"LanguageID", kText, NULL}, {L"ResFileBaseName", kNothing, NULL}, {L"Unload", kNothing, NULL},
    {L"LoadString", kText, NULL}, {0}};
static const struct Member kVectorMembers[] = {
    {L"UBound", kNothing, NULL}, {L"Add", kNothing, NULL}, {0}};
static const struct Member kFunctionsMembers[] = {
    {L"Format", kText, NULL}, {L"FieldText", kText, NULL}, {0}};
enum { kGlobalRole, kLoaderRole, kVectorRole, kFunctionsRole, kRoles };
static const struct Role kMade[kRoles] = {{L"TavGlobal.Application", kGlobalMembers},
                                          {L"M8RESLOADER.Loader", kLoaderMembers},
                                          {L"Bzo.Vector", kVectorMembers},
                                          {L"Bzo.Functions", kFunctionsMembers}};
static LONG made[kRoles];
static LONG living;

struct Object {
  IDispatch base;
  LONG references;
  const struct Role* role;
};

static HRESULT WINAPI QueryObject(IDispatch* self, REFIID id, void** out) {
  *out = NULL;
  if (!IsEqualIID(id, &IID_IUnknown) && !IsEqualIID(id, &IID_IDispatch)) return E_NOINTERFACE;
  *out = self;
  IDispatch_AddRef(self);
  return S_OK;
}
static ULONG WINAPI AddRefObject(IDispatch* self) {
  return (ULONG)InterlockedIncrement(&((struct Object*)self)->references);
}
static ULONG WINAPI ReleaseObject(IDispatch* self) {
  const LONG left = InterlockedDecrement(&((struct Object*)self)->references);
  if (left == 0) {
    InterlockedDecrement(&living);
    HeapFree(GetProcessHeap(), 0, self);
  }
  return (ULONG)left;
}
static HRESULT WINAPI CountTypeInfos(IDispatch* self, UINT* count) {
  (void)self;
  *count = 0;
  return S_OK;
}
static HRESULT WINAPI NoTypeInfo(IDispatch* self, UINT index, LCID locale, ITypeInfo** info) {
  (void)self, (void)index, (void)locale, (void)info;
  return E_NOTIMPL;
}
static HRESULT WINAPI FindMember(IDispatch* self, REFIID id, LPOLESTR* names, UINT count,
                                 LCID locale, DISPID* ids) {
  (void)id, (void)count, (void)locale;
  const struct Member* members = ((struct Object*)self)->role->members;
  for (DISPID i = 0; members[i].name != NULL; ++i) {
    if (lstrcmpiW(members[i].name, names[0]) != 0) continue;
    ids[0] = i + 1;
    return S_OK;
  }
  return DISP_E_UNKNOWNNAME;
}
static IDispatch* NewObject(const struct Role* role);
static HRESULT WINAPI InvokeMember(IDispatch* self, DISPID id, REFIID interface_id, LCID locale,
                                   WORD kind, DISPPARAMS* parameters, VARIANT* result,
                                   EXCEPINFO* info, UINT* bad) {
  (void)interface_id, (void)locale, (void)kind, (void)parameters, (void)info, (void)bad;
  const struct Member* member = &((struct Object*)self)->role->members[id - 1];
  if (result == NULL) return S_OK;
  VariantInit(result);
  switch (member->answer) {
    case kNothing:
      break;
    case kTrue:
      V_VT(result) = VT_BOOL;
      V_BOOL(result) = VARIANT_TRUE;
      break;
    case kNumber:
      V_VT(result) = VT_I4;
      V_I4(result) = 1;
      break;
    case kText:
      V_VT(result) = VT_BSTR;
      V_BSTR(result) = SysAllocString(L"CHS");
      break;
    case kObject:
      V_VT(result) = VT_DISPATCH;
      V_DISPATCH(result) = NewObject(member->role);
      break;
  }
  return S_OK;
}

static IDispatchVtbl object_table = {QueryObject,  AddRefObject, ReleaseObject, CountTypeInfos,
                                     NoTypeInfo,   FindMember,   InvokeMember};

static IDispatch* NewObject(const struct Role* role) {
  struct Object* object = HeapAlloc(GetProcessHeap(), 0, sizeof *object);
  object->base.lpVtbl = &object_table;
  object->references = 1;
  object->role = role;
  InterlockedIncrement(&living);
  return &object->base;
}

// The factories stand as long as the program.
struct Factory {
  IClassFactory base;
  int role;
};

static HRESULT WINAPI QueryFactory(IClassFactory* self, REFIID id, void** out) {
  *out = NULL;
  if (!IsEqualIID(id, &IID_IUnknown) && !IsEqualIID(id, &IID_IClassFactory)) return E_NOINTERFACE;
  *out = self;
  return S_OK;
}
static ULONG WINAPI KeepFactory(IClassFactory* self) {
  (void)self;
  return 1;
}
static HRESULT WINAPI MakeObject(IClassFactory* self, IUnknown* outer, REFIID id, void** out) {
  (void)outer;
  const int role = ((struct Factory*)self)->role;
  InterlockedIncrement(&made[role]);
  IDispatch* object = NewObject(&kMade[role]);
  const HRESULT result = IDispatch_QueryInterface(object, id, out);
  IDispatch_Release(object);
  return result;
}
static HRESULT WINAPI LockFactory(IClassFactory* self, BOOL lock) {
  (void)self, (void)lock;
  return S_OK;
}

static IClassFactoryVtbl factory_table = {QueryFactory, KeepFactory, KeepFactory, MakeObject,
                                          LockFactory};
static struct Factory factories[kRoles] = {{{&factory_table}, 0}, {{&factory_table}, 1},
                                           {{&factory_table}, 2}, {{&factory_table}, 3}};
static __thread DWORD cookies[kRoles];

int RegisterPlainHost(void) {
  for (int i = 0; i < kRoles; ++i) {
    CLSID id;
    if (FAILED(CLSIDFromProgID(kMade[i].prog_id, &id)) ||
        FAILED(CoRegisterClassObject(&id, (IUnknown*)&factories[i].base, CLSCTX_INPROC_SERVER,
                                     REGCLS_MULTIPLEUSE, &cookies[i]))) {
      return 0;
    }
  }
  return 1;
}

void RevokePlainHost(void) {
  for (int i = 0; i < kRoles; ++i) CoRevokeClassObject(cookies[i]);
}

long LivingHostObjects(void) {
  return living;
}
long GlobalsMade(void) {
  return made[kGlobalRole];
}
long LoadersMade(void) {
  return made[kLoaderRole];
}
