#include "odbc/statement_calls.h"

#ifndef _WIN32
#include <dlfcn.h>
#include <link.h>
#endif

#include <array>
#include <string>
#include <string_view>

namespace tavcc::odbc {

StatementCalls ManagerCalls(const Statement& statement) {
  StatementCalls calls;
  calls.handle = statement.get();
  return calls;
}

#ifdef _WIN32

// What this gets round is unixODBC's way.
std::optional<StatementCalls> DriverCalls(const Link&, const Statement&) {
  return std::nullopt;
}

#else

namespace {

// The driver's file, as the driver calls it: without a folder.
std::string DriverName(const Link& link) {
  std::array<char, 256> name{};
  SQLSMALLINT length = 0;
  SQLGetInfo(link.get(), SQL_DRIVER_NAME, name.data(), static_cast<SQLSMALLINT>(name.size()),
             &length);
  return name.data();
}

struct LoadedFile {
  std::string name;
  std::string path;
};

int CompareNames(dl_phdr_info* info, size_t, void* data) {
  auto& file = *static_cast<LoadedFile*>(data);
  const std::string_view path = info->dlpi_name;
  if (path.substr(path.rfind('/') + 1) != file.name) return 0;
  file.path = path;
  return 1;  // no need to look further
}

// The library that the driver manager has loaded; null where none has the name. What SQLGetInfo
// gives as the library's handle is one of the driver manager's own kind.
void* LoadedLibrary(const std::string& name) {
  LoadedFile file{name, ""};
  if (name.empty() || dl_iterate_phdr(CompareNames, &file) == 0) return nullptr;
  return dlopen(file.path.c_str(), RTLD_LAZY | RTLD_NOLOAD);
}

// False where the driver has no function of the name.
template <class Function>
bool FindFunction(void* library, const char* name, Function& function) {
  function = reinterpret_cast<Function>(dlsym(library, name));
  return function != nullptr;
}

bool FindFunctions(void* library, StatementCalls& calls) {
  return FindFunction(library, "SQLNumResultCols", calls.column_count) &&
         FindFunction(library, "SQLDescribeColW", calls.describe_wide) &&
         FindFunction(library, "SQLFetch", calls.fetch) &&
         FindFunction(library, "SQLGetData", calls.get_data) &&
         FindFunction(library, "SQLRowCount", calls.row_count) &&
         FindFunction(library, "SQLMoreResults", calls.more_results) &&
         FindFunction(library, "SQLGetDiagRecW", calls.record_wide) &&
         FindFunction(library, "SQLGetDiagFieldW", calls.field) &&
         FindFunction(library, "SQLCancel", calls.cancel);
}

}  // namespace

std::optional<StatementCalls> DriverCalls(const Link& link, const Statement& statement) {
  StatementCalls calls;
  calls.handle = statement.get();
  if (!SQL_SUCCEEDED(
          SQLGetInfo(link.get(), SQL_DRIVER_HSTMT, &calls.handle, sizeof(calls.handle), nullptr))) {
    return std::nullopt;
  }
  void* const library = LoadedLibrary(DriverName(link));
  if (library == nullptr) return std::nullopt;
  const bool found = FindFunctions(library, calls);
  dlclose(library);  // the driver manager keeps it
  return found ? std::optional(calls) : std::nullopt;
}

#endif

}  // namespace tavcc::odbc
