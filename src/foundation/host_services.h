// The free functions through which every rule reaches the host: statements by connection string,
// settings, rights, database errors, values published for the process.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "foundation/host.h"

namespace tavcc {

// Runs one statement through the host's application connection. Errors reach the caller.
RecordsetPtr ExecuteSQL(Host& host, std::string_view sDsn, const SqlText& strSQL);

// The first field of the first row as text, the empty text when there is no row. Any error gives
// the empty text.
std::string GetFirstValue(Host& host, std::string_view sDsn, const SqlText& strSQL);

// A system setting, unchanged; note that the key comes before the category. Errors reach the
// caller.
Value GetProfile(Host& host, std::string_view sDsn, std::string_view key,
                 std::string_view category);

// Walks the connection's errors. Returns whether a real one was found; with `bRaise` a found one is
// raised instead: the first real error's number, and the descriptions of all, each followed by CR
// LF.
bool CheckADOError(Host& host, const Connection& cn, bool bRaise);

// An array as automation has it: elements from `lower_bound` on.
struct VariantArray {
  std::span<const Value> elements;
  int lower_bound = 0;
};

// Whether an element equals the value (VariantEquals), looked at from the lower bound on.
bool IsInArray(const Value& value, const VariantArray& array);

// The same for the id lists of the rules.
template <size_t N>
constexpr bool IsInArray(int32_t value, const int32_t (&array)[N]) {
  for (const int32_t element : array) {
    if (element == value) return true;
  }
  return false;
}

// Whether the current user has the right on the bill class; any error is "no".
bool CheckBillRight(Host& host, int32_t class_type_id, const Value& argument);

// The cached general-ledger object, and the profile reader obtained from it: each created on the
// thread's first use and kept until ReleaseHostObjects. Errors reach the caller.
std::shared_ptr<GLData> GetGLData(Host& host);
std::shared_ptr<ProfileReader> GetSysProfile(Host& host);

// GetSysProfile's "IC" setting, the usual question.
Value GetICProfile(Host& host, std::string_view key, const Value& fallback);

// A value that the host publishes for the process. `fallback` when nothing is published or the key
// is absent; Empty on an error.
Value GetHostValue(Host& host, std::string_view key, const Value& fallback = Empty{});

// The industry variant of the ERP: 1 is steel, 0 when nothing is published.
int32_t GetIndustryType(Host& host);

// The thread's place for the resource loader, which the localized texts fill and replace; null
// until then.
std::shared_ptr<ResourceLoader>& CachedResourceLoader();

// Lets go of every host object that this thread keeps.
void ReleaseHostObjects();

}  // namespace tavcc
