// An ERP database with its host for tests of the batch audit, and a readable way to ask it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/embedded.h"
#include "foundation/dictionary.h"
#include "foundation/plug_in.h"
#include "foundation/vector.h"
#include "host/reference_host.h"

namespace tavcc::testing {

struct BillKey {
  int32_t class_type = 0;
  int32_t bill_type = 0;
  int32_t id = 0;
  int32_t partner_id = 0;
  std::string amount = "0";       // a decimal text
  std::string neutralized = "0";  // likewise
};

struct AuditAnswer {
  int16_t result = 0;
  std::string lines;  // "BillInfo"
  std::string error;  // "ErrorMsg"
  int32_t passed = 0;
  int32_t refused = 0;
};

class Company {
 public:
  // In memory, with the schema and the base rows.
  Company();
  // A file; the schema and the base rows are made when it is new.
  explicit Company(const std::string& path, bool create);
  ~Company();
  Company(const Company&) = delete;
  Company& operator=(const Company&) = delete;

  ReferenceHost& host() { return host_; }
  ConnectionPtr connection() { return host_.GetConnection(kDsn); }
  void Run(std::string_view sql) { connection()->Execute(sql); }
  // The rows as texts, decimals without trailing zeros, columns joined by "|".
  std::vector<std::string> Rows(std::string_view sql);

  AuditAnswer Audit(const std::vector<BillKey>& bills, int16_t check_type, bool batch_check);

 private:
  static constexpr std::string_view kDsn = "company";

  explicit Company(std::shared_ptr<sql::Database> database);

  std::shared_ptr<sql::Database> database_;
  StatementLog log_;  // since the last audit
  ReferenceHost host_;
  PlugIn object_;
};

}  // namespace tavcc::testing
