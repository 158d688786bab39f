// The names of tokens and types are those of [MS-TDS], "Token Data Stream Definition".
#include "odbc/tds_answer.h"

#include "odbc/text.h"

namespace tavcc::testing {
namespace {

constexpr char kColMetadata = '\x81';
constexpr char kError = '\xAA';
constexpr char kInfo = '\xAB';
constexpr char kLoginAck = '\xAD';
constexpr char kRow = '\xD1';
constexpr char kDone = '\xFD';

constexpr char kDecimalN = '\x6A';
constexpr char kDateTimeN = '\x6F';

constexpr char kDoneMore = 0x01;
constexpr char kDoneError = 0x02;
constexpr char kDoneCount = 0x10;

constexpr std::string_view kCollation("\x09\x04\xD0\x00\x34", 5);
constexpr std::string_view kVersion("\x74\x00\x00\x04", 4);

// The length in characters before the text, in as many bytes.
std::string Counted(std::string_view text, int bytes) {
  const std::string wide = WideBytes(text);
  return LittleEndian(wide.size() / 2, bytes) + wide;
}

std::string TypeInfo(const TdsColumn& column) {
  switch (column.type) {
    case TdsType::kInt:
      return {static_cast<char>(kIntN), 4};
    case TdsType::kDecimal:
      return {kDecimalN, 17, 38, static_cast<char>(column.scale)};
    case TdsType::kDateTime:
      return {kDateTimeN, 8};
    case TdsType::kText:
      return static_cast<char>(kNVarChar) + LittleEndian(8000, 2) + std::string(kCollation);
    case TdsType::kLongText:
      return static_cast<char>(kNVarChar) + LittleEndian(0xFFFF, 2) + std::string(kCollation);
  }
  return "";
}

}  // namespace

std::string LittleEndian(uint64_t number, int bytes) {
  std::string text;
  for (int i = 0; i < bytes; ++i) text += static_cast<char>(number >> (8 * i) & 0xFF);
  return text;
}

std::string WideBytes(std::string_view text) {
  std::string bytes;
  for (const SQLWCHAR unit : odbc::ToWide(text)) bytes += LittleEndian(unit, 2);
  return bytes;
}

std::string TdsInt(int32_t number) {
  return '\x04' + LittleEndian(static_cast<uint32_t>(number), 4);
}

std::string TdsText(std::string_view text) {
  const std::string wide = WideBytes(text);
  return LittleEndian(wide.size(), 2) + wide;
}

std::string TdsLongText(std::string_view text) {
  const std::string wide = WideBytes(text);
  std::string cell = LittleEndian(wide.size(), 8);
  if (!wide.empty()) cell += LittleEndian(wide.size(), 4) + wide;
  return cell + LittleEndian(0, 4);
}

std::string TdsDecimal(bool negative, uint64_t high, uint64_t low) {
  return std::string{'\x11', negative ? '\0' : '\x01'} + LittleEndian(low, 8) +
         LittleEndian(high, 8);
}

std::string TdsDateTime(int32_t days, uint32_t ticks) {
  return '\x08' + LittleEndian(static_cast<uint32_t>(days), 4) + LittleEndian(ticks, 4);
}

std::string TdsNull(TdsType type) {
  if (type == TdsType::kText) return LittleEndian(0xFFFF, 2);
  if (type == TdsType::kLongText) return LittleEndian(~uint64_t{0}, 8);
  return std::string(1, '\0');
}

TdsAnswer& TdsAnswer::Columns(const std::vector<TdsColumn>& columns) {
  constexpr uint64_t kNullable = 1;
  bytes_ += kColMetadata + LittleEndian(columns.size(), 2);
  for (const TdsColumn& column : columns) {
    bytes_ += LittleEndian(0, 4) + LittleEndian(kNullable, 2) + TypeInfo(column);
    bytes_ += Counted(column.name, 1);
  }
  return *this;
}

TdsAnswer& TdsAnswer::Row(const std::vector<std::string>& cells) {
  bytes_ += kRow;
  for (const std::string& cell : cells) bytes_ += cell;
  return *this;
}

TdsAnswer& TdsAnswer::Error(int32_t number, std::string_view text, int state, int line) {
  failed_ = true;
  return Tell(kError, number, 16, text, state, line);
}

TdsAnswer& TdsAnswer::Message(std::string_view text) {
  return Tell(kInfo, 0, 0, text, 1, 1);
}

TdsAnswer& TdsAnswer::Tell(char token, int32_t number, char severity, std::string_view text,
                           int state, int line) {
  const std::string body = LittleEndian(static_cast<uint32_t>(number), 4) +
                           static_cast<char>(state) + severity + Counted(text, 2) +
                           Counted("responder", 1) + Counted("", 1) +
                           LittleEndian(static_cast<uint32_t>(line), 4);
  bytes_ += token + LittleEndian(body.size(), 2) + body;
  return *this;
}

TdsAnswer& TdsAnswer::Statement(int64_t rows) {
  return Done(failed_ ? kDoneError : kDoneCount, rows);
}

TdsAnswer& TdsAnswer::StatementWithoutCount() {
  return Done(failed_ ? kDoneError : '\0', 0);
}

TdsAnswer& TdsAnswer::Done(char status, int64_t rows) {
  bytes_ += kDone;
  last_status_ = bytes_.size();
  bytes_ += std::string{static_cast<char>(status | kDoneMore), '\0', '\0', '\0'};
  bytes_ += LittleEndian(static_cast<uint64_t>(rows), 8);
  failed_ = false;
  return *this;
}

TdsAnswer& TdsAnswer::LoginAccepted() {
  const std::string body =
      '\x01' + std::string(kVersion) + Counted("responder", 1) + std::string(4, '\0');
  bytes_ += kLoginAck + LittleEndian(body.size(), 2) + body;
  return *this;
}

std::string TdsAnswer::Bytes() const {
  std::string bytes = bytes_;
  if (last_status_ != std::string::npos) bytes[last_status_] &= static_cast<char>(~kDoneMore);
  return bytes;
}

}  // namespace tavcc::testing
