// The host's components and ADO's, by role: the one place where their ProgIDs stand, with the
// members and arguments that the library calls. docs/deploying-on-windows.md says it to deployers.
//
//   Bzo.Dictionary       Lookup(key); the default member reads and writes the item of a key
//   Bzo.Vector           Size, LBound, UBound; the default member reads the item of an index
//   TavMAPPConnection.APPConnection   Execute(sDsn, strSQL), both by reference: a recordset
//   TavMClass.ClassInfo               GetData(sDsn, strSQL): a recordset
//   TavEBSBase.SystemProfile          GetProfile(sDsn, category, key)
//   TavErrorHandle.CheckADOError      IsError(error): a Boolean
//   TavEBCGLView.GLData               SystemProfile: an object with
//                                     GetSystemProfile(category, key, default)
//   TavClassTpl.DataSrv               ClassTypeID, written; CheckBillHaveRight(argument): a Boolean
//   M8RESLOADER.Loader                LanguageID, read and written; ResFileBaseName, written;
//                                     Unload; LoadString(key): a text
//   ADODB.Connection     Execute(sql, , -1), Errors, State, Close
//   ADODB.Recordset      CursorLocation, Open(sql, connection, 2, 1), State, EOF, BOF, MoveNext,
//                        MoveFirst, RecordCount, Fields, ActiveConnection, Close; of Fields: Count,
//                        Item(index or name); of a field: Name, Value
//   ADODB.Command        ActiveConnection, CommandType, CommandText, Parameters.Append,
//                        Parameters.Item(name).Value, Execute,
//                        CreateParameter(name, type, direction, size, value)
//   ADODB.Errors         Count, Item(index); of an error: Number, Source, Description, SQLState
#pragma once

#include <cstddef>

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
inline constexpr size_t kRoles = static_cast<size_t>(Role::kCommand) + 1;

constexpr const wchar_t* ProgID(Role role) {
  switch (role) {
    case Role::kGlobal:
      return L"TavGlobal.Application";  // the library is known; the class is a guess
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
    case Role::kFunctions:
      return L"Bzo.Functions";  // the library is known; the class is a guess
    // Created through the global object, not directly.
    case Role::kDataService:
      return L"TavClassTpl.DataSrv";
    case Role::kRecordset:
      return L"ADODB.Recordset";
    case Role::kCommand:
      return L"ADODB.Command";
  }
  return L"";
}

// Members whose names are the host's own affair. Each is a guess at the host's name, and this is
// the one place to put it right. A host that has no such member gets error 438, "Object doesn't
// support this property or method", with the member's name in the text; where a component is
// missing it is error 429 with its ProgID.
namespace guessed {

// Of the global object.
inline constexpr const wchar_t* kDbContext = L"DbContext";        // a guess: a new context
inline constexpr const wchar_t* kCreateObject = L"CreateObject";  // a guess: (ProgID), an object
// Of a context.
inline constexpr const wchar_t* kUserContext = L"UserContext";  // a guess: the current user
inline constexpr const wchar_t* kBind = L"Bind";                // a guess: (sDsn)
inline constexpr const wchar_t* kConnection = L"Connection";    // a guess: an ADODB.Connection
inline constexpr const wchar_t* kReadyFirst = L"ReadyFirst";    // a guess: no arguments, no result
inline constexpr const wchar_t* kReadySecond = L"ReadySecond";  // a guess: no arguments, no result
// Of a user.
inline constexpr const wchar_t* kUserID = L"UserID";  // a guess: a 16-bit integer
// Of a vector.
inline constexpr const wchar_t* kAdd = L"Add";  // a guess: (value), behind the last one
// Of the functions' component.
inline constexpr const wchar_t* kFieldText = L"FieldText";  // a guess: (value), a text; Null is ""
inline constexpr const wchar_t* kFormat = L"Format";        // a guess: (text, vector of values)

}  // namespace guessed

}  // namespace tavcc::automation
