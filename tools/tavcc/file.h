// Files that a command writes: whole or not at all.
#pragma once

#include <string>
#include <string_view>

namespace tavcc {

// Writes the file in place of the one that may be there, which keeps its name until the new one is
// complete. A device is written to as it is. Errors: CommandError "FILE cannot be written: …".
void ReplaceFile(const std::string& file, std::string_view text);

// Errors: CommandError where there is a file of that name already, or one that is no file's.
void RequireNewFile(const std::string& file);

// Writes a file that must not be there yet. Errors: both of the above.
void WriteNewFile(const std::string& file, std::string_view text);

}  // namespace tavcc
