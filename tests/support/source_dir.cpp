#include "support/source_dir.h"

namespace tavcc {

std::filesystem::path SourceDir() {
  return TAVCC_SOURCE_DIR;
}

}  // namespace tavcc
