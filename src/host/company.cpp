#include "host/company.h"

#include <memory>
#include <string>
#include <utility>

#include "embedded/embedded.h"
#include "host/schema.h"

namespace tavcc {

sql::OpenOptions CompanyOptions(std::function<DateTime()> clock) {
  static const auto image = [] {
    const auto database = sql::Database::Open({});
    database->RunScript(SchemaScript());
    database->RunScript(BaseScript());
    return std::make_shared<const std::string>(database->Image());
  }();
  sql::OpenOptions options;
  options.image = image;
  options.clock = std::move(clock);
  return options;
}

}  // namespace tavcc
