// Opening and making database files.
#pragma once

#include <memory>
#include <string>

#include "host/erp.h"
#include "tavcc/command.h"

namespace tavcc {

// The database of --db. Errors: CommandError when none was given; those of opening it.
std::unique_ptr<Erp> OpenDatabase(const CommonOptions& options);

// The ERP schema and its base rows, and the sample company where asked for.
void FillDatabase(Erp& erp, bool sample);

// Makes a database file, whole or not at all: it gets its name when it is complete. Errors:
// CommandError when there is a file of that name, which is left as it is, or none can be made.
void MakeDatabase(const std::string& file, bool sample);

}  // namespace tavcc
