#include "host/company.h"

#include <memory>
#include <string>

#include "embedded/embedded.h"
#include "host/schema.h"

namespace tavcc {

sql::OpenOptions CompanyOptions() {
  static const auto image = [] {
    const auto database = sql::Database::Open({});
    database->RunScript(SchemaScript());
    database->RunScript(BaseScript());
    return std::make_shared<const std::string>(database->Image());
  }();
  sql::OpenOptions options;
  options.image = image;
  return options;
}

}  // namespace tavcc
