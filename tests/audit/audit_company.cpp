#include "audit/audit_company.h"

#include <utility>

#include "audit/batch_audit.h"
#include "foundation/bill_kinds.h"
#include "foundation/conversions.h"
#include "foundation/host_services.h"
#include "foundation/text.h"
#include "host/company.h"
#include "host/host_dictionary.h"
#include "host/host_vector.h"
#include "host/schema.h"

namespace tavcc::testing {

namespace {

std::string_view HeadTable(int32_t class_type) {
  switch (class_type) {
    case class_type::kSalesOrder:
      return "t_XS_Order";
    case class_type::kPurchaseOrder:
      return "t_CG_Order";
    case class_type::kAssembly:
    case class_type::kDisassembly:
      return "T_CC_ZZCX";
    default:
      return "T_CC_StockBill";
  }
}

DictionaryPtr DictionaryOf(const BillKey& key) {
  auto bill = std::make_shared<HostDictionary>();
  bill->SetItem("ClassTypeID", key.class_type);
  bill->SetItem("BillInterID", key.id);
  bill->SetItem("BillType", key.bill_type);
  bill->SetItem("BillTypeID", key.bill_type);
  bill->SetItem("HeadTableName", HeadTable(key.class_type));
  bill->SetItem("BillNo", Cat("B", key.id));
  bill->SetItem("CustOrSupplyID", key.partner_id);
  bill->SetItem("AllAmount", *Decimal::Parse(key.amount));
  bill->SetItem("FNeutralizeAmount", *Decimal::Parse(key.neutralized));
  return bill;
}

std::shared_ptr<sql::Database> OpenFile(const std::string& path, bool create) {
  sql::OpenOptions options;
  options.path = path;
  options.create = create;
  return sql::Database::Open(options);
}

}  // namespace

Company::Company() : Company(sql::Database::Open(CompanyOptions())) {}

Company::Company(const std::string& path, bool create) : Company(OpenFile(path, create)) {
  if (!create) return;
  database_->RunScript(SchemaScript());
  database_->RunScript(BaseScript());
}

Company::Company(std::shared_ptr<sql::Database> database)
    : database_(std::move(database)),
      host_([this](std::string_view) { return database_->NewSession(); },
            [this](Connection& session) { database_->Reopen(session); }, &log_),
      object_(host_) {
  ReleaseHostObjects();
}

Company::~Company() {
  ReleaseHostObjects();
}

std::vector<std::string> Company::Rows(std::string_view sql) {
  std::vector<std::string> lines;
  const RecordsetPtr rows = connection()->Execute(sql);
  for (; !rows->AtEnd(); rows->MoveNext()) {
    std::string line;
    for (int i = 0; i < rows->FieldCount(); ++i) {
      const Value field = rows->Field(i);
      CatTo(line, i == 0 ? "" : "|", field.IsNull() ? "null" : ToText(field));
    }
    lines.push_back(std::move(line));
  }
  return lines;
}

AuditAnswer Company::Audit(const std::vector<BillKey>& bills, int16_t check_type,
                           bool batch_check) {
  log_.Clear();
  HostVector vector;
  for (const BillKey& key : bills) vector.Add(DictionaryOf(key));
  DictionaryPtr results = std::make_shared<HostDictionary>();
  AuditAnswer answer;
  answer.result = AuditBill(object_, vector, check_type, kDsn, batch_check, results, true, false);
  answer.lines = ToText(results->Item("BillInfo"));
  answer.error = ToText(results->Item("ErrorMsg"));
  answer.passed = ToLong(results->Item("SuccessCount"));
  answer.refused = ToLong(results->Item("FailCount"));
  return answer;
}

}  // namespace tavcc::testing
