// Making a store's file whole or not at all.
#pragma once

#include <string>
#include <string_view>

namespace tavcc::sql {

// Writes a new file: under a name of its own until all of it is on the disk, then under `path`.
// Nobody opens it before the journals of an earlier file of that name are gone. Errors: SqlError
// kStoreFailure naming the file: there is one already (left as it is), or it cannot be made. Then
// there is none; or where the disk does not let it be removed again, the text says so, and beside a
// journal of an earlier file nobody can open it.
void MakeFile(const std::string& path, std::string_view bytes);

}  // namespace tavcc::sql
