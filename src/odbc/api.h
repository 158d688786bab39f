// The driver manager's functions, and handles that free themselves.
#pragma once

#ifdef _WIN32
#include <windows.h>  // which the driver manager's headers need there
#endif

#include <sql.h>
#include <sqlext.h>

namespace tavcc::odbc {

static_assert(sizeof(SQLWCHAR) == 2, "the driver manager speaks UTF-16");

// An environment, connection or statement; null while not allocated.
template <SQLSMALLINT kKind>
class Handle {
 public:
  Handle() = default;
  ~Handle() { Free(); }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;

  // False where the driver manager refuses; the parent's diagnostics then say why.
  bool Allocate(SQLHANDLE parent) {
    Free();
    return SQL_SUCCEEDED(SQLAllocHandle(kKind, parent, &handle_));
  }
  void Free() {
    if (handle_ == SQL_NULL_HANDLE) return;
    SQLFreeHandle(kKind, handle_);
    handle_ = SQL_NULL_HANDLE;
  }

  SQLHANDLE get() const { return handle_; }
  static constexpr SQLSMALLINT kind() { return kKind; }

 private:
  SQLHANDLE handle_ = SQL_NULL_HANDLE;
};

using Environment = Handle<SQL_HANDLE_ENV>;
using Link = Handle<SQL_HANDLE_DBC>;
using Statement = Handle<SQL_HANDLE_STMT>;

// The value of an attribute that is a number, in the pointer that the functions take it in.
inline SQLPOINTER NumberAttribute(SQLULEN number) {
  return reinterpret_cast<SQLPOINTER>(number);
}

}  // namespace tavcc::odbc
