// Calls a rule by name on the sample company, through the reference host.
#include <tavcc/foundation/conversions.h>
#include <tavcc/host/erp.h>
#include <tavcc/host/schema.h>
#include <tavcc/registry/class_registry.h>
#include <iostream>

int main() {
  tavcc::Erp erp{tavcc::sql::OpenOptions{}};
  erp.RunScript(tavcc::SchemaScript());
  erp.RunScript(tavcc::BaseScript());
  erp.RunScript(tavcc::SampleScript());
  const tavcc::ClassDescription& cls = *tavcc::FindClass("cls_CX");
  const tavcc::Method& method = *tavcc::FindMethod(cls, "AuditBill");
  tavcc::PlugIn object(erp.host());
  for (int time = 1; time <= 2; ++time) {
    std::vector<tavcc::Value> arguments{int32_t{121}, int32_t{7}, erp.dsn(), ""};
    const tavcc::Value passed = tavcc::Invoke(cls, method, object, arguments);
    std::cout << tavcc::ToText(passed) << " " << tavcc::ToText(arguments[3]) << "\n";
  }
}
