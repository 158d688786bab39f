// The entry that libFuzzer calls. In the ordinary tests nothing calls it.
#include <cstddef>
#include <cstdint>

#include "embedded/fuzz/fuzz_batch.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  tavcc::sql::FuzzBatch({reinterpret_cast<const char*>(data), size});
  return 0;
}
