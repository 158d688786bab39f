// Where the project's files lie, for tests that read them.
#pragma once

#include <filesystem>

namespace tavcc {

// The project's top folder.
std::filesystem::path SourceDir();

}  // namespace tavcc
