#include "automation/com_host.h"

#include "automation/apartment.h"
#include "automation/border/border.h"
#include "automation/border/variant.h"
#include "automation/objects.h"
#include "automation/roles.h"
#include "foundation/conversions.h"
#include "foundation/rule_watch.h"

namespace tavcc::automation {

namespace {

// The object that a member answered. Errors: 91 when it answered none.
LateBound ObjectOf(const Value& value) {
  ComPtr<IDispatch> object;
  if (value.IsObject()) object.Attach(UnwrapObject(value.object()));
  if (object == nullptr) throw AutomationError(RuntimeError::kObjectNotSet);
  return LateBound(object.Get());
}

class ComUserContext final : public UserContext {
 public:
  explicit ComUserContext(LateBound late) : late_(std::move(late)) {}
  int16_t UserID() const override {
    const int16_t id = ToInteger(late_.Get(guessed::kUserID));
    RuleWatch::TellHostAnswer(HostQuestion::kUser, "", "", id);
    return id;
  }

 private:
  LateBound late_;
};

class ComDbContext final : public DbContext {
 public:
  explicit ComDbContext(LateBound late) : late_(std::move(late)) {}
  std::shared_ptr<UserContext> GetUserContext() override {
    return std::make_shared<ComUserContext>(ObjectOf(late_.Get(guessed::kUserContext)));
  }
  void Bind(std::string_view sDsn) override { late_.Call(guessed::kBind, {Value(sDsn)}); }
  ConnectionPtr GetConnection() override {
    return ToObject<Connection>(late_.Get(guessed::kConnection));
  }
  void ReadyFirst() override { late_.Call(guessed::kReadyFirst); }
  void ReadySecond() override { late_.Call(guessed::kReadySecond); }

 private:
  LateBound late_;
};

class ComApplicationConnection final : public ApplicationConnection {
 public:
  RecordsetPtr Execute(std::string_view sDsn, const SqlText& strSQL) override {
    return ToObject<Recordset>(late_.CallWithTexts(L"Execute", sDsn, strSQL.text));
  }

 private:
  LateBound late_ = NewComponent(Role::kApplicationConnection);
};

class ComClassInfo final : public ClassInfo {
 public:
  RecordsetPtr GetData(std::string_view sDsn, const SqlText& strSQL) override {
    return ToObject<Recordset>(late_.Call(L"GetData", {Value(sDsn), Value(strSQL.text)}));
  }

 private:
  LateBound late_ = NewComponent(Role::kClassInfo);
};

class ComSystemProfile final : public SystemProfile {
 public:
  Value GetProfile(std::string_view sDsn, std::string_view category,
                   std::string_view key) override {
    Value value = late_.Call(L"GetProfile", {Value(sDsn), Value(category), Value(key)});
    RuleWatch::TellHostAnswer(HostQuestion::kSetting, category, key, value);
    return value;
  }

 private:
  LateBound late_ = NewComponent(Role::kSystemProfile);
};

class ComErrorChecker final : public ErrorChecker {
 public:
  bool IsError(const ConnectionError& error) override {
    return ToBoolean(late_.Call(L"IsError", {error.entry}));
  }

 private:
  LateBound late_ = NewComponent(Role::kErrorChecker);
};

class ComDataService final : public DataService {
 public:
  explicit ComDataService(LateBound late) : late_(std::move(late)) {}
  void SetClassTypeID(int32_t class_type_id) override {
    late_.Put(L"ClassTypeID", {class_type_id});
  }
  Value CheckBillHaveRight(const Value& argument) override {
    return late_.Call(L"CheckBillHaveRight", {argument});
  }

 private:
  LateBound late_;
};

class ComProfileReader final : public ProfileReader {
 public:
  explicit ComProfileReader(LateBound late) : late_(std::move(late)) {}
  Value GetSystemProfile(std::string_view category, std::string_view key,
                         const Value& fallback) override {
    Value value = late_.Call(L"GetSystemProfile", {Value(category), Value(key), fallback});
    RuleWatch::TellHostAnswer(HostQuestion::kSetting, category, key, value);
    return value;
  }

 private:
  LateBound late_;
};

class ComGLData final : public GLData {
 public:
  std::shared_ptr<ProfileReader> SystemProfile() override {
    return std::make_shared<ComProfileReader>(ObjectOf(late_.Get(L"SystemProfile")));
  }

 private:
  LateBound late_ = NewComponent(Role::kGLData);
};

class ComResourceLoader final : public ResourceLoader {
 public:
  std::string LanguageID() override { return ToText(late_.Get(L"LanguageID")); }
  void SetLanguageID(std::string_view language) override {
    late_.Put(L"LanguageID", {Value(language)});
  }
  void SetResFileBaseName(std::string_view name) override {
    late_.Put(L"ResFileBaseName", {Value(name)});
  }
  void Unload() override { late_.Call(L"Unload"); }
  std::string LoadString(std::string_view key) override {
    return ToText(late_.Call(L"LoadString", {Value(key)}));
  }

 private:
  LateBound late_ = NewComponent(Role::kResourceLoader);
};

}  // namespace

std::shared_ptr<DbContext> ComHost::NewDbContext() {
  return std::make_shared<ComDbContext>(ObjectOf(GlobalObject().Get(guessed::kDbContext)));
}

std::unique_ptr<ApplicationConnection> ComHost::NewApplicationConnection() {
  return std::make_unique<ComApplicationConnection>();
}

std::unique_ptr<ClassInfo> ComHost::NewClassInfo() {
  return std::make_unique<ComClassInfo>();
}

std::unique_ptr<SystemProfile> ComHost::NewSystemProfile() {
  return std::make_unique<ComSystemProfile>();
}

std::unique_ptr<ErrorChecker> ComHost::NewErrorChecker() {
  return std::make_unique<ComErrorChecker>();
}

std::unique_ptr<DataService> ComHost::NewDataService() {
  return std::make_unique<ComDataService>(
      ObjectOf(GlobalObject().Call(guessed::kCreateObject, {Narrow(ProgID(Role::kDataService))})));
}

std::shared_ptr<GLData> ComHost::NewGLData() {
  return std::make_shared<ComGLData>();
}

std::shared_ptr<ResourceLoader> ComHost::NewResourceLoader() {
  return std::make_shared<ComResourceLoader>();
}

DictionaryPtr ComHost::NewDictionary() {
  return std::make_shared<HostDictionaryAdapter>(NewComponent(Role::kDictionary).object());
}

VectorPtr ComHost::NewVector() {
  return std::make_shared<HostVectorAdapter>(NewComponent(Role::kVector).object());
}

Dictionary* ComHost::PublishedValues() {
  const std::string name = std::to_string(GetCurrentProcessId());
  auto* object = static_cast<IDispatch*>(GetPropA(GetDesktopWindow(), name.c_str()));
  published_.reset();
  if (object == nullptr) return nullptr;
  return &published_.emplace(object);
}

std::string ComHost::FieldText(const Value& value) {
  return ToText(NewComponent(Role::kFunctions).Call(guessed::kFieldText, {value}));
}

std::string ComHost::FormatPlaceholders(std::string_view text, std::span<const Value> values) {
  const VectorPtr list = NewVector();
  for (const Value& value : values) list->Add(value);
  return ToText(NewComponent(Role::kFunctions).Call(guessed::kFormat, {Value(text), Value(list)}));
}

}  // namespace tavcc::automation
