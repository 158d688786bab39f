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

bool IsInShare(size_t number) {
  const char* const share = std::getenv("TAVCC_SHARE");
  if (share == nullptr || TryAll()) return true;
  char* end = nullptr;
  const unsigned long mine = std::strtoul(share, &end, 10);
  const unsigned long programs = *end == '/' ? std::strtoul(end + 1, nullptr, 10) : 0;
  return programs == 0 || number % programs == mine % programs;
}

}  // namespace tavcc::testing
