// What the columns of a result are.
#pragma once

#include <string>
#include <vector>

#include "embedded/types/sql_type.h"

namespace tavcc::sql {

// The columns of a result, shared by its plan and the recordsets that came of it.
struct ResultShape {
  std::vector<std::string> names;
  std::vector<SqlType> types;
};

}  // namespace tavcc::sql
