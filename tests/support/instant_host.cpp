#include "support/instant_host.h"

#include "foundation/conversions.h"
#include "foundation/error.h"
#include "foundation/text.h"
#include "support/scripted_host.h"

namespace tavcc::testing {

namespace {

class AtMostOneRow final : public Recordset {
 public:
  AtMostOneRow(std::vector<std::string> names, std::vector<Value> row)
      : names_(std::move(names)), row_(std::move(row)), at_end_(row_.empty()) {}

  bool IsOpen() const override { return true; }
  bool AtEnd() const override { return at_end_; }
  bool AtStart() const override { return row_.empty(); }
  void MoveNext() override { at_end_ = true; }
  void MoveFirst() override { at_end_ = row_.empty(); }
  int RecordCount() const override { return row_.empty() ? 0 : 1; }
  int FieldCount() const override { return static_cast<int>(row_.size()); }
  std::string FieldName(int index) const override { return names_.at(static_cast<size_t>(index)); }
  Value Field(int index) const override { return row_.at(static_cast<size_t>(index)); }
  Value Field(std::string_view name) const override {
    for (size_t i = 0; i < names_.size(); ++i) {
      if (EqualsIgnoringCase(names_[i], name)) return row_.at(i);
    }
    throw AutomationError(RuntimeError::kItemNotInCollection);
  }
  void Detach() override {}
  void Close() override {}

 private:
  std::vector<std::string> names_;
  std::vector<Value> row_;
  bool at_end_;
};

class User final : public UserContext {
 public:
  explicit User(InstantHost& host) : host_(host) {}
  int16_t UserID() const override { return host_.user_id; }

 private:
  InstantHost& host_;
};

class Context final : public DbContext {
 public:
  Context(InstantHost& host, ConnectionPtr connection)
      : user_(std::make_shared<User>(host)), connection_(std::move(connection)) {}
  std::shared_ptr<UserContext> GetUserContext() override { return user_; }
  void Bind(std::string_view) override {}
  ConnectionPtr GetConnection() override { return connection_; }
  void ReadyFirst() override {}
  void ReadySecond() override {}

 private:
  std::shared_ptr<UserContext> user_;
  ConnectionPtr connection_;
};

class Sender final : public ApplicationConnection, public ClassInfo {
 public:
  explicit Sender(InstantHost& host) : host_(host) {}
  RecordsetPtr Execute(std::string_view, const SqlText& sql) override {
    return host_.connection().Execute(sql);
  }
  RecordsetPtr GetData(std::string_view, const SqlText& sql) override {
    return host_.connection().Execute(sql);
  }

 private:
  InstantHost& host_;
};

class Settings final : public SystemProfile, public GLData, public ProfileReader {
 public:
  explicit Settings(InstantHost& host) : host_(host) {}
  Value GetProfile(std::string_view, std::string_view, std::string_view key) override {
    return Find(key, Empty{});
  }
  std::shared_ptr<ProfileReader> SystemProfile() override {
    return std::make_shared<Settings>(host_);
  }
  Value GetSystemProfile(std::string_view, std::string_view key, const Value& fallback) override {
    return Find(key, fallback);
  }

 private:
  Value Find(std::string_view key, const Value& fallback) const {
    const auto found = host_.profile.find(key);
    return found == host_.profile.end() ? fallback : found->second;
  }

  InstantHost& host_;
};

class EveryRight final : public DataService {
 public:
  void SetClassTypeID(int32_t) override {}
  Value CheckBillHaveRight(const Value&) override { return true; }
};

}  // namespace

void InstantConnection::Answer(std::string prefix, std::vector<std::string> names,
                               std::vector<Value> row) {
  answers_.emplace_back(std::move(prefix),
                        std::make_shared<AtMostOneRow>(std::move(names), std::move(row)));
}

RecordsetPtr InstantConnection::Execute(const SqlText& sql) {
  ++sent;
  bytes += sql.text.size();
  for (const auto& [prefix, rows] : answers_) {
    if (!sql.text.starts_with(prefix)) continue;
    rows->MoveFirst();
    return rows;
  }
  if (no_rows_ == nullptr) {
    no_rows_ = std::make_shared<AtMostOneRow>(std::vector<std::string>(), std::vector<Value>());
  }
  return no_rows_;
}

InstantHost::InstantHost() : context_(std::make_shared<Context>(*this, connection_)) {}

std::unique_ptr<ApplicationConnection> InstantHost::NewApplicationConnection() {
  return std::make_unique<Sender>(*this);
}
std::unique_ptr<ClassInfo> InstantHost::NewClassInfo() {
  return std::make_unique<Sender>(*this);
}
std::unique_ptr<SystemProfile> InstantHost::NewSystemProfile() {
  return std::make_unique<Settings>(*this);
}
std::unique_ptr<DataService> InstantHost::NewDataService() {
  return std::make_unique<EveryRight>();
}
std::shared_ptr<GLData> InstantHost::NewGLData() {
  return std::make_shared<Settings>(*this);
}
DictionaryPtr InstantHost::NewDictionary() {
  return std::make_shared<MapDictionary>();
}
VectorPtr InstantHost::NewVector() {
  return nullptr;
}
std::string InstantHost::FieldText(const Value& value) {
  return value.IsNull() ? "" : ToText(value);
}

}  // namespace tavcc::testing
