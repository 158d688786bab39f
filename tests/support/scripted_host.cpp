#include "support/scripted_host.h"

namespace tavcc::testing {

namespace {

class Context : public DbContext, public std::enable_shared_from_this<Context> {
 public:
  explicit Context(ScriptedHost& host) : host_(host) { host_.calls.push_back("new context"); }
  ~Context() override { host_.calls.push_back("context released"); }
  std::shared_ptr<UserContext> GetUserContext() override;
  void Bind(std::string_view sDsn) override { host_.calls.push_back("bind " + std::string(sDsn)); }
  ConnectionPtr GetConnection() override { return nullptr; }
  void ReadyFirst() override {}
  void ReadySecond() override {}

 private:
  ScriptedHost& host_;
};

class User : public UserContext {
 public:
  explicit User(ScriptedHost& host) : host_(host) {}
  ~User() override { host_.calls.push_back("user released"); }
  int16_t UserID() const override { return host_.user_id; }

 private:
  ScriptedHost& host_;
};

std::shared_ptr<UserContext> Context::GetUserContext() {
  host_.calls.push_back("user");
  return std::make_shared<User>(host_);
}

class Runner : public ApplicationConnection {
 public:
  explicit Runner(ScriptedHost& host) : host_(host) {}
  ~Runner() override { host_.calls.push_back("application connection released"); }
  RecordsetPtr Execute(std::string_view sDsn, const SqlText& sql) override {
    return host_.execute(sDsn, sql.text);
  }

 private:
  ScriptedHost& host_;
};

class Info : public ClassInfo {
 public:
  explicit Info(ScriptedHost& host) : host_(host) {}
  RecordsetPtr GetData(std::string_view sDsn, const SqlText& sql) override {
    return host_.get_data(sDsn, sql.text);
  }

 private:
  ScriptedHost& host_;
};

class Profile : public SystemProfile {
 public:
  explicit Profile(ScriptedHost& host) : host_(host) {}
  Value GetProfile(std::string_view, std::string_view category, std::string_view key) override {
    return host_.get_profile(category, key);
  }

 private:
  ScriptedHost& host_;
};

class Checker : public ErrorChecker {
 public:
  explicit Checker(ScriptedHost& host) : host_(host) {}
  bool IsError(const ConnectionError& error) override {
    host_.calls.push_back("IsError " + std::to_string(error.number));
    return host_.is_error(error);
  }

 private:
  ScriptedHost& host_;
};

class Service : public DataService {
 public:
  explicit Service(ScriptedHost& host) : host_(host) {}
  void SetClassTypeID(int32_t class_type_id) override { class_type_id_ = class_type_id; }
  Value CheckBillHaveRight(const Value& argument) override {
    return host_.check_right(class_type_id_, argument);
  }

 private:
  ScriptedHost& host_;
  int32_t class_type_id_ = 0;
};

class Reader : public ProfileReader {
 public:
  explicit Reader(ScriptedHost& host) : host_(host) {}
  Value GetSystemProfile(std::string_view category, std::string_view key,
                         const Value& fallback) override {
    return host_.read_profile(category, key, fallback);
  }

 private:
  ScriptedHost& host_;
};

class Ledger : public GLData {
 public:
  explicit Ledger(ScriptedHost& host) : host_(host) {}
  ~Ledger() override { host_.calls.push_back("ledger released"); }
  std::shared_ptr<ProfileReader> SystemProfile() override {
    host_.calls.push_back("profile reader");
    return std::make_shared<Reader>(host_);
  }

 private:
  ScriptedHost& host_;
};

}  // namespace

std::shared_ptr<DbContext> ScriptedHost::NewDbContext() {
  return std::make_shared<Context>(*this);
}

std::unique_ptr<ApplicationConnection> ScriptedHost::NewApplicationConnection() {
  if (!execute) CannotCreate();
  return std::make_unique<Runner>(*this);
}

std::unique_ptr<ClassInfo> ScriptedHost::NewClassInfo() {
  if (!get_data) CannotCreate();
  return std::make_unique<Info>(*this);
}

std::unique_ptr<SystemProfile> ScriptedHost::NewSystemProfile() {
  if (!get_profile) CannotCreate();
  return std::make_unique<Profile>(*this);
}

std::unique_ptr<ErrorChecker> ScriptedHost::NewErrorChecker() {
  if (!is_error) CannotCreate();
  return std::make_unique<Checker>(*this);
}

std::unique_ptr<DataService> ScriptedHost::NewDataService() {
  if (!check_right) CannotCreate();
  return std::make_unique<Service>(*this);
}

std::shared_ptr<GLData> ScriptedHost::NewGLData() {
  if (!read_profile) CannotCreate();
  calls.push_back("ledger");
  return std::make_shared<Ledger>(*this);
}

}  // namespace tavcc::testing
