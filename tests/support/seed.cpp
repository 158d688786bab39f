#include "support/seed.h"

#include <cstdlib>
#include <string>

namespace tavcc::testing {

uint32_t Seed() {
  const char* const given = std::getenv("TAVCC_SEED");
  return given == nullptr ? 20260315 : static_cast<uint32_t>(std::strtoul(given, nullptr, 10));
}

bool TryAll() {
  const char* const attacks = std::getenv("TAVCC_ATTACKS");
  return attacks != nullptr && std::string(attacks) == "all";
}

}  // namespace tavcc::testing
