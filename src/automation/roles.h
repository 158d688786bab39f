// The host's components and ADO's, by role: the one place where their ProgIDs stand.
#pragma once

namespace tavcc::automation {

enum class Role {
  kGlobal,
  kApplicationConnection,
  kClassInfo,
  kSystemProfile,
  kErrorChecker,
  kGLData,
  kResourceLoader,
  kDictionary,
  kVector,
  kFunctions,
  kDataService,
  kRecordset,
  kCommand,
};

constexpr const wchar_t* ProgID(Role role) {
  switch (role) {
    // Members: DbContext (a new context each time), CreateObject(ProgID).
    // A context's members: UserContext, Bind(sDsn), Connection, ReadyFirst, ReadySecond.
    case Role::kGlobal:
      return L"TavGlobal.Application";
    case Role::kApplicationConnection:
      return L"TavMAPPConnection.APPConnection";
    case Role::kClassInfo:
      return L"TavMClass.ClassInfo";
    case Role::kSystemProfile:
      return L"TavEBSBase.SystemProfile";
    case Role::kErrorChecker:
      return L"TavErrorHandle.CheckADOError";
    case Role::kGLData:
      return L"TavEBCGLView.GLData";
    case Role::kResourceLoader:
      return L"M8RESLOADER.Loader";
    case Role::kDictionary:
      return L"Bzo.Dictionary";
    case Role::kVector:
      return L"Bzo.Vector";
    // The foundation library's functions: FieldText(value), Format(text, vector of values).
    case Role::kFunctions:
      return L"Bzo.Functions";
    // Created through the global object's CreateObject, not directly.
    case Role::kDataService:
      return L"TavClassTpl.DataSrv";
    case Role::kRecordset:
      return L"ADODB.Recordset";
    case Role::kCommand:
      return L"ADODB.Command";
  }
  return L"";
}

}  // namespace tavcc::automation
