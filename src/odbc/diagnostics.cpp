#include "odbc/diagnostics.h"

#include <algorithm>
#include <string_view>

#include "odbc/text.h"

namespace tavcc::odbc {
namespace {

constexpr int kMostPrefixes = 3;
constexpr std::string_view kServerPrefix = "[SQL Server]";
constexpr size_t kUsualLength = 1024;

std::string ToText(std::span<const SQLWCHAR> text) {
  return FromWide(text);
}
std::string ToText(std::span<const SQLCHAR> text) {
  return {text.begin(), text.end()};
}

template <class Char, class ReadRecord>
std::vector<Diagnostic> ReadAll(SQLSMALLINT kind, SQLHANDLE handle, ReadRecord read_record) {
  std::vector<Diagnostic> diagnostics;
  std::vector<Char> text(kUsualLength);
  for (SQLSMALLINT record = 1;; ++record) {
    Char state[6] = {};
    SQLINTEGER number = 0;
    SQLSMALLINT length = 0;
    const auto read = [&] {
      return read_record(kind, handle, record, state, &number, text.data(),
                         static_cast<SQLSMALLINT>(text.size()), &length);
    };
    SQLRETURN result = read();
    if (result == SQL_SUCCESS_WITH_INFO && static_cast<size_t>(length) >= text.size()) {
      text.resize(static_cast<size_t>(length) + 1);
      result = read();
    }
    if (!SQL_SUCCEEDED(result)) return diagnostics;
    const size_t end = std::min(static_cast<size_t>(std::max<SQLSMALLINT>(length, 0)), text.size());
    diagnostics.push_back({ToText(std::span<const Char>(state, 5)), static_cast<int32_t>(number),
                           WithoutPrefixes(ToText(std::span<const Char>(text.data(), end)))});
  }
}

}  // namespace

std::string WithoutPrefixes(std::string text) {
  for (int i = 0; i < kMostPrefixes && text.starts_with('['); ++i) {
    const size_t end = text.find(']');
    if (end == std::string::npos) break;
    const bool last = text.starts_with(kServerPrefix);
    text.erase(0, end + 1);
    if (last) break;
  }
  return text;
}

std::vector<Diagnostic> ReadDiagnostics(SQLSMALLINT kind, SQLHANDLE handle, Encoding encoding) {
  return encoding == Encoding::kWide ? ReadDiagnostics(kind, handle, &SQLGetDiagRecW)
                                     : ReadAll<SQLCHAR>(kind, handle, SQLGetDiagRec);
}

std::vector<Diagnostic> ReadDiagnostics(SQLSMALLINT kind, SQLHANDLE handle,
                                        decltype(&SQLGetDiagRecW) read_record) {
  return ReadAll<SQLWCHAR>(kind, handle, read_record);
}

}  // namespace tavcc::odbc
