// A host whose every answer a test writes down: for what the reference host, being a good host,
// never does.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "foundation/error.h"
#include "foundation/host.h"

namespace tavcc::testing {

// A dictionary over a map, keys compared byte by byte.
class MapDictionary : public Dictionary {
 public:
  Value Item(std::string_view key) const override { return ItemOr(key, Empty{}); }
  void SetItem(std::string_view key, Value value) override {
    items_.insert_or_assign(std::string(key), std::move(value));
  }
  Value ItemOr(std::string_view key, Value fallback) const override {
    const auto found = items_.find(std::string(key));
    return found == items_.end() ? fallback : found->second;
  }
  bool Lookup(std::string_view key) const override { return items_.contains(std::string(key)); }

 private:
  std::map<std::string, Value> items_;
};

// A recordset of one column, "F0".
class OneColumn : public Recordset {
 public:
  explicit OneColumn(std::vector<Value> rows) : rows_(std::move(rows)) {}
  bool IsOpen() const override { return true; }
  bool AtEnd() const override { return at_ >= rows_.size(); }
  bool AtStart() const override { return rows_.empty(); }
  void MoveNext() override { ++at_; }
  void MoveFirst() override { at_ = 0; }
  int RecordCount() const override { return static_cast<int>(rows_.size()); }
  int FieldCount() const override { return 1; }
  std::string FieldName(int) const override { return "F0"; }
  Value Field(int) const override { return rows_.at(at_); }
  Value Field(std::string_view) const override { return rows_.at(at_); }
  void Detach() override {}
  void Close() override {}

 private:
  std::vector<Value> rows_;
  size_t at_ = 0;
};

class ErrorsOnlyConnection : public Connection {
 public:
  explicit ErrorsOnlyConnection(std::vector<ConnectionError> errors) : errors_(std::move(errors)) {}
  RecordsetPtr Execute(const SqlText&) override { return nullptr; }
  RecordsetPtr OpenClientRecordset(const SqlText&) override { return nullptr; }
  void CallProcedure(const SqlText&, std::span<ProcedureParameter>) override {}
  std::vector<ConnectionError> Errors() const override { return errors_; }
  int State() const override { return kStateOpen; }
  void Close() override {}

 private:
  std::vector<ConnectionError> errors_;
};

// Each component answers by a function of the test's; one without a function cannot be created.
class ScriptedHost : public Host {
 public:
  std::vector<std::string> calls;  // what was asked of the components, in order

  std::function<RecordsetPtr(std::string_view sDsn, std::string_view sql)> execute;
  std::function<RecordsetPtr(std::string_view sDsn, std::string_view sql)> get_data;
  std::function<Value(std::string_view category, std::string_view key)> get_profile;
  std::function<bool(const ConnectionError&)> is_error;
  std::function<Value(int32_t class_type_id, const Value&)> check_right;
  std::function<Value(std::string_view category, std::string_view key, const Value&)> read_profile;
  Dictionary* published = nullptr;
  int16_t user_id = 0;

  std::shared_ptr<DbContext> NewDbContext() override;
  std::unique_ptr<ApplicationConnection> NewApplicationConnection() override;
  std::unique_ptr<ClassInfo> NewClassInfo() override;
  std::unique_ptr<SystemProfile> NewSystemProfile() override;
  std::unique_ptr<ErrorChecker> NewErrorChecker() override;
  std::unique_ptr<DataService> NewDataService() override;
  std::shared_ptr<GLData> NewGLData() override;
  std::shared_ptr<ResourceLoader> NewResourceLoader() override { CannotCreate(); }
  DictionaryPtr NewDictionary() override { return std::make_shared<MapDictionary>(); }
  VectorPtr NewVector() override { return nullptr; }
  Dictionary* PublishedValues() override { return published; }
  std::string FieldText(const Value& value) override { return value.IsText() ? value.text() : ""; }
  std::string FormatPlaceholders(std::string_view text, std::span<const Value>) override {
    return std::string(text);
  }

 private:
  [[noreturn]] static void CannotCreate() {
    throw AutomationError(RuntimeError::kCannotCreateObject);
  }
};

}  // namespace tavcc::testing
