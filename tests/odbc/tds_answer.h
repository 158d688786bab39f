// What a server says in TDS 7.4, token by token: the answers of the tests' responder.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tavcc::testing {

// Types of [MS-TDS], "Token Data Stream Definition", that answers and requests have.
inline constexpr uint8_t kIntN = 0x26;
inline constexpr uint8_t kNVarChar = 0xE7;

enum class TdsType { kInt, kText, kLongText, kDecimal, kDateTime };

struct TdsColumn {
  std::string name;
  TdsType type = TdsType::kInt;
  uint8_t scale = 0;  // of a decimal; its precision is 38
};

// A cell as a row holds it; its column's type must be the one it is made for.
std::string TdsInt(int32_t number);
std::string TdsText(std::string_view text);
std::string TdsLongText(std::string_view text);
// The digits without sign and point, as two halves of 128 bits.
std::string TdsDecimal(bool negative, uint64_t high, uint64_t low);
// Days since 1900-01-01 and 1/300 seconds of the day.
std::string TdsDateTime(int32_t days, uint32_t ticks);
std::string TdsNull(TdsType type);

class TdsAnswer {
 public:
  TdsAnswer& Columns(const std::vector<TdsColumn>& columns);
  TdsAnswer& Row(const std::vector<std::string>& cells);
  TdsAnswer& Error(int32_t number, std::string_view text, int state = 1, int line = 1);
  TdsAnswer& Message(std::string_view text);
  // A statement ends: with an error where it said one, else with this many rows.
  TdsAnswer& Statement(int64_t rows);
  // As one that counts no rows.
  TdsAnswer& StatementWithoutCount();
  TdsAnswer& LoginAccepted();

  // All of it; the last statement is the end of the batch.
  std::string Bytes() const;

 private:
  TdsAnswer& Tell(char token, int32_t number, char severity, std::string_view text, int state,
                  int line);
  TdsAnswer& Done(char status, int64_t rows);

  std::string bytes_;
  size_t last_status_ = std::string::npos;  // where the last statement's status stands
  bool failed_ = false;
};

// The bytes of a number, the least one first.
std::string LittleEndian(uint64_t number, int bytes);
// UTF-16 without a length.
std::string WideBytes(std::string_view text);

}  // namespace tavcc::testing
