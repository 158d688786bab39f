// faults_tests --update and --review: the sweep notes what every fault comes to, and contracts.json
// is changed to promise it; --review shows the change and asks.
#pragma once

#include <string>

#include "faults/contract_update.h"

namespace tavcc::faults {

// tests/faults/contracts.json, or the file that --contracts names.
const std::string& ContractsFile();

bool UpdatesContracts();
void Note(Observation observation);

}  // namespace tavcc::faults
