#include "odbc/driver_statement.h"

#ifndef _WIN32
#include <dlfcn.h>
#include <link.h>
#endif

#include <array>
#include <string>
#include <string_view>

namespace tavcc::odbc {

#ifdef _WIN32

// What this gets round is unixODBC's way.
std::optional<DriverStatement> DriverStatement::Find(const Link&, const Statement&) {
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

template <class Function>
void FindFunction(void* library, const char* name, Function& function) {
  function = reinterpret_cast<Function>(dlsym(library, name));
}

}  // namespace

std::optional<DriverStatement> DriverStatement::Find(const Link& link, const Statement& statement) {
  SQLHANDLE handle = statement.get();
  if (!SQL_SUCCEEDED(SQLGetInfo(link.get(), SQL_DRIVER_HSTMT, &handle, sizeof(handle), nullptr))) {
    return std::nullopt;
  }
  void* const library = LoadedLibrary(DriverName(link));
  if (library == nullptr) return std::nullopt;
  DriverStatement driver;
  driver.handle_ = handle;
  FindFunction(library, "SQLMoreResults", driver.more_results_);
  FindFunction(library, "SQLGetDiagRecW", driver.read_record_);
  dlclose(library);  // the driver manager keeps it
  if (driver.more_results_ == nullptr || driver.read_record_ == nullptr) return std::nullopt;
  return driver;
}

#endif

std::vector<Diagnostic> DriverStatement::Diagnostics() const {
  return ReadDiagnostics(SQL_HANDLE_STMT, handle_, read_record_);
}

}  // namespace tavcc::odbc
