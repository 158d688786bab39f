// The reference ERP host: the components it hands out, and its text functions.
#include "host/reference_host.h"

#include "foundation/conversions.h"
#include "host/bill_services.h"
#include "host/data_access.h"
#include "host/db_context.h"
#include "host/host_dictionary.h"
#include "host/host_vector.h"
#include "host/profile_readers.h"
#include "host/resource_loader.h"

namespace tavcc {

ReferenceHost::ReferenceHost(ConnectionOpener open, ConnectionReopener reopen, StatementLog* log)
    : state_(std::make_shared<HostState>(std::move(open), std::move(reopen), log)) {}

std::shared_ptr<DbContext> ReferenceHost::NewDbContext() {
  state_->RequireComponent("DbContext");
  return std::make_shared<HostDbContext>(state_);
}

std::unique_ptr<ApplicationConnection> ReferenceHost::NewApplicationConnection() {
  state_->RequireComponent("TavMAPPConnection.APPConnection");
  return std::make_unique<HostApplicationConnection>(state_);
}

std::unique_ptr<ClassInfo> ReferenceHost::NewClassInfo() {
  state_->RequireComponent("TavMClass.ClassInfo");
  return std::make_unique<HostClassInfo>(state_);
}

std::unique_ptr<SystemProfile> ReferenceHost::NewSystemProfile() {
  state_->RequireComponent("TavEBSBase.SystemProfile");
  return std::make_unique<HostSystemProfile>(state_);
}

std::unique_ptr<ErrorChecker> ReferenceHost::NewErrorChecker() {
  state_->RequireComponent("TavErrorHandle.CheckADOError");
  return std::make_unique<HostErrorChecker>();
}

std::unique_ptr<DataService> ReferenceHost::NewDataService() {
  state_->RequireComponent("TavClassTpl.DataSrv");
  return std::make_unique<HostDataService>(state_);
}

std::shared_ptr<GLData> ReferenceHost::NewGLData() {
  state_->RequireComponent("TavEBCGLView.GLData");
  return std::make_shared<HostGLData>(state_);
}

std::shared_ptr<ResourceLoader> ReferenceHost::NewResourceLoader() {
  state_->RequireComponent(kResourceLoader);
  return std::make_shared<HostResourceLoader>(state_);
}

DictionaryPtr ReferenceHost::NewDictionary() {
  state_->RequireComponent("Bzo.Dictionary");
  return std::make_shared<HostDictionary>();
}

VectorPtr ReferenceHost::NewVector() {
  state_->RequireComponent("Bzo.Vector");
  return std::make_shared<HostVector>();
}

std::string ReferenceHost::FieldText(const Value& value) {
  return value.IsNull() || value.IsMissing() ? "" : ToText(value);
}

std::string ReferenceHost::FormatPlaceholders(std::string_view text,
                                              std::span<const Value> values) {
  std::string out;
  for (size_t i = 0; i < text.size(); ++i) {
    const char next = text[i] == '%' && i + 1 < text.size() ? text[i + 1] : '\0';
    const auto position = static_cast<size_t>(next - '1');  // of "%1": 0
    if (next == '%') {
      out += '%';
      ++i;
    } else if (next >= '1' && next <= '9' && position < values.size()) {
      out += FieldText(values[position]);
      ++i;
    } else {
      out += text[i];
    }
  }
  return out;
}

}  // namespace tavcc
