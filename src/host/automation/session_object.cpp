#include "host/automation/session_object.h"

#include <memory>

#include "foundation/conversions.h"
#include "foundation/error.h"
#include "foundation/text.h"
#include "host/automation/component_objects.h"
#include "host/automation/dispatch_object.h"
#include "host/erp.h"
#include "host/schema.h"

namespace tavcc::host_automation {

namespace {

class Session {
 public:
  ~Session() { SetThreadHost(nullptr); }

  void Open(const std::string& path, bool create) {
    sql::OpenOptions options;
    options.path = path;
    options.create = create;
    SetThreadHost(nullptr);
    erp_ = std::make_unique<Erp>(options);
    erp_->log().KeepNothing();
    SetThreadHost(&erp_->host());
  }
  Erp& Require() {
    if (erp_ == nullptr) {
      throw AutomationError(RuntimeError::kObjectNotSet, "No database is open: call Open first.");
    }
    return *erp_;
  }

 private:
  std::unique_ptr<Erp> erp_;
};

void WriteLine(const std::string& text) {
  const std::string line = text + "\r\n";
  DWORD written = 0;
  WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), line.data(), static_cast<DWORD>(line.size()), &written,
            nullptr);
}

}  // namespace

IDispatch* NewSession() {
  const auto session = std::make_shared<Session>();
  return NewDispatchObject(
      {
          {"Open",
           [=](const Arguments& a) -> Value {
             return session->Open(ToText(a[0]), false), Empty{};
           }},
          {"OpenSample",
           [=](const Arguments& a) -> Value {
             session->Open(ToText(a[0]), true);
             session->Require().RunScript(SchemaScript());
             session->Require().RunScript(BaseScript());
             session->Require().RunScript(SampleScript());
             return Empty{};
           }},
          {"Dsn", [=](const Arguments&) -> Value { return session->Require().dsn(); }},
          {"Connection",
           [=](const Arguments&) -> Value { return session->Require().connection(); }},
          {"UserID",
           [=](const Arguments&) -> Value { return session->Require().host().settings().user_id; },
           [=](const Arguments& a) -> Value {
             session->Require().host().settings().user_id = ToInteger(a.last());
             return Empty{};
           }},
          {"Query",
           [=](const Arguments& a) -> Value {
             return session->Require().connection()->Execute(ToText(a[0]));
           }},
          {"BeginTransaction",
           [=](const Arguments&) -> Value {
             return session->Require().BeginTransaction(), Empty{};
           }},
          {"Commit",
           [=](const Arguments&) -> Value { return session->Require().Commit(), Empty{}; }},
          {"Rollback",
           [=](const Arguments&) -> Value { return session->Require().Rollback(), Empty{}; }},
      },
      nullptr);
}

IDispatch* NewOutput() {
  return NewDispatchObject(
      {{"Write", [](const Arguments& a) -> Value { return WriteLine(ToText(a[0])), Empty{}; }}},
      nullptr);
}

}  // namespace tavcc::host_automation
