// The sweep as a test, and as the tool that updates its contracts.
#include <gtest/gtest.h>

#include <iostream>
#include <utility>

#include "faults/updating.h"
#include "scenario/json_edit.h"
#include "support/source_dir.h"
#include "tavcc/file.h"
#include "tavcc/review.h"

namespace tavcc::faults {
namespace {

std::string contracts_file = (SourceDir() / "tests/faults/contracts.json").string();
bool updates = false;
bool asks = false;
std::vector<Observation> observations;

constexpr const char* kUsage =
    "faults_tests [--update | --review] [--contracts FILE] [options of the test library]\n";

bool ReadOptions(int argc, char** argv) {
  for (int i = 1; i < argc; ++i) {
    const std::string option = argv[i];
    if (option == "--contracts" && i + 1 < argc) {
      contracts_file = argv[++i];
    } else if (option == "--update" || option == "--review") {
      updates = true;
      asks = option == "--review";
    } else {
      std::cerr << "unknown option " << option << "\n" << kUsage;
      return false;
    }
  }
  return true;
}

// 0, or 1 where something is left to a person.
int Update() {
  const std::string before = ReadTextFile(contracts_file);
  const ContractUpdate update = Updated(ReadContracts(contracts_file), observations);
  for (const std::string& note : update.notes) std::cerr << note << "\n";
  const std::string after = Rewritten(before, update.contracts);
  const bool take =
      after != before && (!asks || AskForChange(contracts_file, before, after) == Decision::kTake);
  if (take) ReplaceFile(contracts_file, after);
  std::cout << observations.size() << " faults; " << contracts_file << " is "
            << (take ? "changed" : "as it was") << "\n";
  return update.notes.empty() && (take || after == before) ? 0 : 1;
}

}  // namespace

const std::string& ContractsFile() {
  return contracts_file;
}

bool UpdatesContracts() {
  return updates;
}

void Note(Observation observation) {
  observations.push_back(std::move(observation));
}

}  // namespace tavcc::faults

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (!tavcc::faults::ReadOptions(argc, argv)) return 2;
  const int status = RUN_ALL_TESTS();
  try {
    return status != 0 || !tavcc::faults::UpdatesContracts() ? status : tavcc::faults::Update();
  } catch (const std::exception& error) {
    std::cerr << error.what() << "\n";
    return 2;
  }
}
