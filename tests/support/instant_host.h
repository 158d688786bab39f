// A host and a database that answer at once: what is left is the library's own work. The database
// only counts what it is sent.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/host.h"

namespace tavcc::testing {

class InstantConnection final : public Connection {
 public:
  // No rows for any statement, but `rows` for those that begin with `prefix`. The recordset is
  // handed out again each time, from its first row on.
  void Answer(std::string prefix, std::vector<std::string> names, std::vector<Value> row);

  RecordsetPtr Execute(const SqlText& sql) override;
  RecordsetPtr OpenClientRecordset(const SqlText& sql) override { return Execute(sql); }
  void CallProcedure(const SqlText&, std::span<ProcedureParameter>) override { ++sent; }
  std::vector<ConnectionError> Errors() const override { return {}; }
  int State() const override { return kStateOpen; }
  void Close() override {}

  int sent = 0;      // statements and procedure calls
  size_t bytes = 0;  // of statement texts

 private:
  std::vector<std::pair<std::string, RecordsetPtr>> answers_;
  RecordsetPtr no_rows_;
};

class InstantHost final : public Host {
 public:
  InstantHost();

  InstantConnection& connection() { return *connection_; }
  std::map<std::string, Value, std::less<>> profile;  // by key
  int16_t user_id = 16394;

  std::shared_ptr<DbContext> NewDbContext() override { return context_; }
  std::unique_ptr<ApplicationConnection> NewApplicationConnection() override;
  std::unique_ptr<ClassInfo> NewClassInfo() override;
  std::unique_ptr<SystemProfile> NewSystemProfile() override;
  std::unique_ptr<ErrorChecker> NewErrorChecker() override { return nullptr; }
  std::unique_ptr<DataService> NewDataService() override;
  std::shared_ptr<GLData> NewGLData() override;
  std::shared_ptr<ResourceLoader> NewResourceLoader() override { return nullptr; }
  DictionaryPtr NewDictionary() override;
  VectorPtr NewVector() override;
  Dictionary* PublishedValues() override { return nullptr; }
  std::string FieldText(const Value& value) override;
  std::string FormatPlaceholders(std::string_view text, std::span<const Value>) override {
    return std::string(text);
  }

 private:
  std::shared_ptr<InstantConnection> connection_ = std::make_shared<InstantConnection>();
  std::shared_ptr<DbContext> context_;
};

}  // namespace tavcc::testing
