#include "odbc/diagnostics.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>

#include "odbc/text.h"

namespace tavcc::odbc {
namespace {

constexpr int kMostPrefixes = 3;
constexpr std::string_view kServerPrefix = "[SQL Server]";
constexpr size_t kUsualLength = 1024;

// The fields of drivers of SQL Server (SQL_DIAG_SS_MSGSTATE and those after it).
constexpr SQLSMALLINT kStateField = -1150;
constexpr SQLSMALLINT kSeverityField = -1151;
constexpr SQLSMALLINT kProcedureField = -1153;
constexpr SQLSMALLINT kLineField = -1154;
constexpr size_t kLongestProcedure = 512;

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
  return encoding == Encoding::kWide ? ReadAll<SQLWCHAR>(kind, handle, SQLGetDiagRecW)
                                     : ReadAll<SQLCHAR>(kind, handle, SQLGetDiagRec);
}

std::vector<Diagnostic> ReadDiagnostics(const StatementCalls& calls, Encoding encoding) {
  return encoding == Encoding::kWide
             ? ReadAll<SQLWCHAR>(SQL_HANDLE_STMT, calls.handle, calls.record_wide)
             : ReadAll<SQLCHAR>(SQL_HANDLE_STMT, calls.handle, calls.record_bytes);
}

ServerDetails ReadDetails(const StatementCalls& calls, SQLSMALLINT record) {
  const auto read_as = [&](SQLSMALLINT field, auto& value, SQLSMALLINT size, SQLSMALLINT* length) {
    return SQL_SUCCEEDED(
        calls.field(SQL_HANDLE_STMT, calls.handle, record, field, &value, size, length));
  };
  // Some drivers want to know of a number what it is, some take that for a negative length.
  const auto read = [&](SQLSMALLINT field, auto& value, SQLSMALLINT kind) {
    return read_as(field, value, kind, nullptr) ||
           read_as(field, value, static_cast<SQLSMALLINT>(sizeof(value)), nullptr);
  };
  ServerDetails details;
  SQLINTEGER severity = 0, state = 0;
  const bool both = read(kSeverityField, severity, SQL_IS_INTEGER);
  const bool one = read(kStateField, state, SQL_IS_INTEGER);
  // FreeTDS has one of the two fields, and gives the severity in it.
  details.severity = both ? severity : one ? state : 0;
  details.state = both && one ? state : 0;
  SQLUSMALLINT line = 0;
  if (read(kLineField, line, SQL_IS_USMALLINT)) details.line = line;
  std::array<SQLWCHAR, kLongestProcedure> name{};
  SQLSMALLINT bytes = 0;
  if (read_as(kProcedureField, name, static_cast<SQLSMALLINT>(sizeof(name)), &bytes) && bytes > 0) {
    const size_t units = static_cast<size_t>(bytes) / sizeof(SQLWCHAR);
    details.procedure = FromWide(std::span(name).first(std::min(units, name.size() - 1)));
  }
  return details;
}

}  // namespace tavcc::odbc
