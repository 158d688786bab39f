// Files that a command writes: whole or not at all.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tavcc {

// Writes the file in place of the one that may be there, which keeps its name until the new one is
// complete. A device is written to as it is. Errors: CommandError "FILE cannot be written: …".
void ReplaceFile(const std::string& file, std::string_view text);

// Errors: CommandError where `file`, which is to be written, is one of the others, which the
// command reads or writes besides. Empty names are those of no file.
void RequireOwnFile(const std::string& file, const std::vector<std::string>& others);

// Errors: CommandError where there is a file of that name already, or one that is no file's.
void RequireNewFile(const std::string& file);

// Writes a file that must not be there yet. Errors: both of the above.
void WriteNewFile(const std::string& file, std::string_view text);

}  // namespace tavcc
