// Ports: the host ERP's own components, one small interface each, and Host, which hands them out.
//
// Creating a component is a call of Host, so that a host in which one is missing fails where the
// rule asks for it (error 429, "ActiveX component can't create object").
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "foundation/connection.h"
#include "foundation/dictionary.h"
#include "foundation/recordset.h"
#include "foundation/value.h"
#include "foundation/vector.h"

namespace tavcc {

class UserContext {
 public:
  virtual ~UserContext() = default;
  // The current user's id, which the rules write into FCheckerID and compare with FBillerID.
  virtual int16_t UserID() const = 0;
};

class DbContext {
 public:
  virtual ~DbContext() = default;
  virtual std::shared_ptr<UserContext> GetUserContext() = 0;
  // Ties the context to the database that the connection string names.
  virtual void Bind(std::string_view sDsn) = 0;
  // The context's open connection: the same one each time. A connection that was closed meanwhile
  // is open again. Errors: 91 when the context was never bound; the database's own.
  virtual ConnectionPtr GetConnection() = 0;
  // The two members that ready the context for work. What they do is the host's business; which of
  // them is called where is the rule's.
  virtual void ReadyFirst() = 0;
  virtual void ReadySecond() = 0;
};

// "TavMAPPConnection.APPConnection"
class ApplicationConnection {
 public:
  virtual ~ApplicationConnection() = default;
  virtual RecordsetPtr Execute(std::string_view sDsn, const SqlText& strSQL) = 0;
};

// "TavMClass.ClassInfo"
class ClassInfo {
 public:
  virtual ~ClassInfo() = default;
  virtual RecordsetPtr GetData(std::string_view sDsn, const SqlText& strSQL) = 0;
};

// "TavEBSBase.SystemProfile"
class SystemProfile {
 public:
  virtual ~SystemProfile() = default;
  // The setting's value, Empty when there is none.
  virtual Value GetProfile(std::string_view sDsn, std::string_view category,
                           std::string_view key) = 0;
};

// "TavErrorHandle.CheckADOError"
class ErrorChecker {
 public:
  virtual ~ErrorChecker() = default;
  // Whether an entry of the connection's errors is an error, not a mere message.
  virtual bool IsError(const ConnectionError& error) = 0;
};

// "TavClassTpl.DataSrv"
class DataService {
 public:
  virtual ~DataService() = default;
  virtual void SetClassTypeID(int32_t class_type_id) = 0;
  virtual Value CheckBillHaveRight(const Value& argument) = 0;
};

// The profile reader that "TavEBCGLView.GLData" hands out.
class ProfileReader {
 public:
  virtual ~ProfileReader() = default;
  virtual Value GetSystemProfile(std::string_view category, std::string_view key,
                                 const Value& fallback) = 0;
};

// "TavEBCGLView.GLData"
class GLData {
 public:
  virtual ~GLData() = default;
  virtual std::shared_ptr<ProfileReader> SystemProfile() = 0;
};

// "M8RESLOADER.Loader"
class ResourceLoader {
 public:
  virtual ~ResourceLoader() = default;
  virtual std::string LanguageID() = 0;
  virtual void SetLanguageID(std::string_view language) = 0;
  virtual void SetResFileBaseName(std::string_view name) = 0;
  virtual void Unload() = 0;
  virtual std::string LoadString(std::string_view key) = 0;
};

class Host {
 public:
  virtual ~Host() = default;

  // A new data-access context of the application-wide global object, not yet bound.
  virtual std::shared_ptr<DbContext> NewDbContext() = 0;

  virtual std::unique_ptr<ApplicationConnection> NewApplicationConnection() = 0;
  virtual std::unique_ptr<ClassInfo> NewClassInfo() = 0;
  virtual std::unique_ptr<SystemProfile> NewSystemProfile() = 0;
  virtual std::unique_ptr<ErrorChecker> NewErrorChecker() = 0;
  virtual std::unique_ptr<DataService> NewDataService() = 0;
  virtual std::shared_ptr<GLData> NewGLData() = 0;
  virtual std::shared_ptr<ResourceLoader> NewResourceLoader() = 0;

  virtual DictionaryPtr NewDictionary() = 0;
  virtual VectorPtr NewVector() = 0;

  // The dictionary that the host publishes for the whole process; null when it publishes none.
  // Borrowed: the caller neither keeps nor releases it.
  virtual Dictionary* PublishedValues() = 0;

  // The foundation library's null-safe text of a value (Null: the empty text).
  virtual std::string FieldText(const Value& value) = 0;
  // The foundation library's placeholder formatting: "%1" to "%9" by position, "%%" a percent sign,
  // a placeholder without a value stays as it is.
  virtual std::string FormatPlaceholders(std::string_view text, std::span<const Value> values) = 0;
};

}  // namespace tavcc
