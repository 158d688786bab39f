#include "host_calls/recording_host.h"

#include <utility>

#include "foundation/conversions.h"
#include "foundation/text.h"
#include "host/connection_wrapper.h"
#include "host/recordset_wrapper.h"

namespace tavcc::testing {

namespace {

// The head of a stock-check bill with the field that no database adds.
class WithBillNo final : public RecordsetWrapper {
 public:
  WithBillNo(RecordsetPtr rows, std::string bill_no)
      : RecordsetWrapper(std::move(rows)), bill_no_(std::move(bill_no)) {}
  using RecordsetWrapper::Field;
  Value Field(std::string_view name) const override {
    return name == "FBillNo" ? Value(bill_no_) : RecordsetWrapper::Field(name);
  }

 private:
  std::string bill_no_;
};

class RecordedConnection final : public ConnectionWrapper {
 public:
  RecordedConnection(ConnectionPtr connection, HostCalls& calls)
      : ConnectionWrapper(std::move(connection)), calls_(calls) {}
  RecordsetPtr Execute(const SqlText& sql) override {
    calls_.Add("sql");
    RecordsetPtr rows = ConnectionWrapper::Execute(sql);
    const bool head = sql.text.starts_with("Select FStatus,FVoucherID,FDate,");
    if (calls_.bill_no.empty() || !head) return rows;
    return std::make_shared<WithBillNo>(std::move(rows), calls_.bill_no);
  }
  RecordsetPtr OpenClientRecordset(const SqlText& sql) override {
    calls_.Add("client sql");
    return ConnectionWrapper::OpenClientRecordset(sql);
  }
  void CallProcedure(const SqlText& name, std::span<ProcedureParameter> parameters) override {
    calls_.Add("procedure");
    ConnectionWrapper::CallProcedure(name, parameters);
  }
  std::vector<ConnectionError> Errors() const override {
    calls_.Add("errors");
    return ConnectionWrapper::Errors();
  }
  int State() const override {
    calls_.Add("state");
    return ConnectionWrapper::State();
  }
  void Close() override {
    calls_.Add("close");
    ConnectionWrapper::Close();
  }

 private:
  HostCalls& calls_;
};

class RecordedContext final : public DbContext {
 public:
  RecordedContext(std::shared_ptr<DbContext> context, HostCalls& calls)
      : context_(std::move(context)), calls_(calls) {}
  std::shared_ptr<UserContext> GetUserContext() override {
    calls_.Add("user");
    return context_->GetUserContext();
  }
  void Bind(std::string_view sDsn) override {
    calls_.Add("bind");
    context_->Bind(sDsn);
  }
  ConnectionPtr GetConnection() override {
    calls_.Add("connection");
    return RecordCalls(context_->GetConnection(), calls_);
  }
  void ReadyFirst() override {
    calls_.Add("first");
    context_->ReadyFirst();
  }
  void ReadySecond() override {
    calls_.Add("second");
    context_->ReadySecond();
  }

 private:
  std::shared_ptr<DbContext> context_;
  HostCalls& calls_;
};

class RecordedApplicationConnection final : public ApplicationConnection {
 public:
  RecordedApplicationConnection(std::unique_ptr<ApplicationConnection> connection, HostCalls& calls)
      : connection_(std::move(connection)), calls_(calls) {}
  RecordsetPtr Execute(std::string_view sDsn, const SqlText& strSQL) override {
    calls_.Add("run");
    return connection_->Execute(sDsn, strSQL);
  }

 private:
  std::unique_ptr<ApplicationConnection> connection_;
  HostCalls& calls_;
};

class RecordedClassInfo final : public ClassInfo {
 public:
  RecordedClassInfo(std::unique_ptr<ClassInfo> info, HostCalls& calls)
      : info_(std::move(info)), calls_(calls) {}
  RecordsetPtr GetData(std::string_view sDsn, const SqlText& strSQL) override {
    calls_.Add("first value");
    return info_->GetData(sDsn, strSQL);
  }

 private:
  std::unique_ptr<ClassInfo> info_;
  HostCalls& calls_;
};

class RecordedProfile final : public SystemProfile {
 public:
  RecordedProfile(std::unique_ptr<SystemProfile> profile, HostCalls& calls)
      : profile_(std::move(profile)), calls_(calls) {}
  Value GetProfile(std::string_view sDsn, std::string_view category,
                   std::string_view key) override {
    calls_.Add(Cat("setting ", category, ".", key));
    return profile_->GetProfile(sDsn, category, key);
  }

 private:
  std::unique_ptr<SystemProfile> profile_;
  HostCalls& calls_;
};

class RecordedReader final : public ProfileReader {
 public:
  RecordedReader(std::shared_ptr<ProfileReader> reader, HostCalls& calls)
      : reader_(std::move(reader)), calls_(calls) {}
  Value GetSystemProfile(std::string_view category, std::string_view key,
                         const Value& fallback) override {
    calls_.Add(Cat("cached ", category, ".", key));
    return reader_->GetSystemProfile(category, key, fallback);
  }

 private:
  std::shared_ptr<ProfileReader> reader_;
  HostCalls& calls_;
};

class RecordedLedger final : public GLData {
 public:
  RecordedLedger(std::shared_ptr<GLData> ledger, HostCalls& calls)
      : ledger_(std::move(ledger)), calls_(calls) {}
  std::shared_ptr<ProfileReader> SystemProfile() override {
    return std::make_shared<RecordedReader>(ledger_->SystemProfile(), calls_);
  }

 private:
  std::shared_ptr<GLData> ledger_;
  HostCalls& calls_;
};

class RecordedErrorChecker final : public ErrorChecker {
 public:
  RecordedErrorChecker(std::unique_ptr<ErrorChecker> checker, HostCalls& calls)
      : checker_(std::move(checker)), calls_(calls) {}
  bool IsError(const ConnectionError& error) override {
    calls_.Add("is error");
    return checker_->IsError(error);
  }

 private:
  std::unique_ptr<ErrorChecker> checker_;
  HostCalls& calls_;
};

class RecordedDataService final : public DataService {
 public:
  RecordedDataService(std::unique_ptr<DataService> service, HostCalls& calls)
      : service_(std::move(service)), calls_(calls) {}
  void SetClassTypeID(int32_t class_type_id) override {
    class_type_id_ = class_type_id;
    service_->SetClassTypeID(class_type_id);
  }
  Value CheckBillHaveRight(const Value& argument) override {
    calls_.Add(Cat("rights ", class_type_id_, " ", ToText(argument)));
    return service_->CheckBillHaveRight(argument);
  }

 private:
  std::unique_ptr<DataService> service_;
  HostCalls& calls_;
  int32_t class_type_id_ = 0;
};

class RecordedLoader final : public ResourceLoader {
 public:
  RecordedLoader(std::shared_ptr<ResourceLoader> loader, HostCalls& calls)
      : loader_(std::move(loader)), calls_(calls) {}
  std::string LanguageID() override { return loader_->LanguageID(); }
  void SetLanguageID(std::string_view language) override { loader_->SetLanguageID(language); }
  void SetResFileBaseName(std::string_view name) override { loader_->SetResFileBaseName(name); }
  void Unload() override { loader_->Unload(); }
  std::string LoadString(std::string_view key) override {
    calls_.Add("text");
    return loader_->LoadString(key);
  }

 private:
  std::shared_ptr<ResourceLoader> loader_;
  HostCalls& calls_;
};

class RecordedDictionary final : public Dictionary {
 public:
  RecordedDictionary(DictionaryPtr dictionary, HostCalls& calls)
      : dictionary_(std::move(dictionary)), calls_(calls) {}
  Value Item(std::string_view key) const override {
    calls_.Add(Cat("read ", key));
    return dictionary_->Item(key);
  }
  void SetItem(std::string_view key, Value value) override {
    calls_.Add(Cat("store ", key));
    dictionary_->SetItem(key, std::move(value));
  }
  Value ItemOr(std::string_view key, Value fallback) const override {
    calls_.Add(Cat("read ", key));
    return dictionary_->ItemOr(key, std::move(fallback));
  }
  bool Lookup(std::string_view key) const override { return dictionary_->Lookup(key); }

 private:
  DictionaryPtr dictionary_;
  HostCalls& calls_;
};

}  // namespace

std::shared_ptr<DbContext> RecordingHost::NewDbContext() {
  calls_.Add("context");
  return std::make_shared<RecordedContext>(host_.NewDbContext(), calls_);
}

std::unique_ptr<ApplicationConnection> RecordingHost::NewApplicationConnection() {
  return std::make_unique<RecordedApplicationConnection>(host_.NewApplicationConnection(), calls_);
}

std::unique_ptr<ClassInfo> RecordingHost::NewClassInfo() {
  return std::make_unique<RecordedClassInfo>(host_.NewClassInfo(), calls_);
}

std::unique_ptr<SystemProfile> RecordingHost::NewSystemProfile() {
  return std::make_unique<RecordedProfile>(host_.NewSystemProfile(), calls_);
}

std::unique_ptr<ErrorChecker> RecordingHost::NewErrorChecker() {
  return std::make_unique<RecordedErrorChecker>(host_.NewErrorChecker(), calls_);
}

std::unique_ptr<DataService> RecordingHost::NewDataService() {
  return std::make_unique<RecordedDataService>(host_.NewDataService(), calls_);
}

std::shared_ptr<GLData> RecordingHost::NewGLData() {
  return std::make_shared<RecordedLedger>(host_.NewGLData(), calls_);
}

std::shared_ptr<ResourceLoader> RecordingHost::NewResourceLoader() {
  return std::make_shared<RecordedLoader>(host_.NewResourceLoader(), calls_);
}

Dictionary* RecordingHost::PublishedValues() {
  calls_.Add("published");
  return host_.PublishedValues();
}

ConnectionPtr RecordCalls(ConnectionPtr connection, HostCalls& calls) {
  return std::make_shared<RecordedConnection>(std::move(connection), calls);
}

DictionaryPtr RecordCalls(DictionaryPtr dictionary, HostCalls& calls) {
  return std::make_shared<RecordedDictionary>(std::move(dictionary), calls);
}

}  // namespace tavcc::testing
