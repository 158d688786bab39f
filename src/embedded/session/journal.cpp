// Reading the journals as "The SQLite Database File Format" describes them, as far as their first
// transaction.
#include "embedded/session/journal.h"

#include <algorithm>
#include <bit>
#include <fstream>
#include <optional>
#include <string_view>
#include <vector>

#include "foundation/file_path.h"

namespace tavcc::sql {
namespace {

using Bytes = std::vector<unsigned char>;

constexpr size_t kUserVersionAt = 60;  // in the first page of a database
constexpr size_t kHeaderSize = 100;

// The write-ahead log: a header, then frames of a header and a page each.
constexpr size_t kLogHeaderSize = 32;
constexpr size_t kFrameHeaderSize = 24;
constexpr uint32_t kLogMagic = 0x377f0682;  // the last bit: checksums are big-endian
constexpr uint32_t kLeastPage = 512, kMostPage = 65536;

uint32_t BigEndian(const unsigned char* at) {
  return uint32_t{at[0]} << 24 | uint32_t{at[1]} << 16 | uint32_t{at[2]} << 8 | at[3];
}

uint32_t LittleEndian(const unsigned char* at) {
  return uint32_t{at[3]} << 24 | uint32_t{at[2]} << 16 | uint32_t{at[1]} << 8 | at[0];
}

std::optional<Bytes> Read(std::ifstream& file, size_t size) {
  Bytes bytes(size);
  if (!file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(size))) {
    return std::nullopt;
  }
  return bytes;
}

// The running checksum of a log.
class Checksum {
 public:
  explicit Checksum(bool big_endian) : big_endian_(big_endian) {}
  void Add(const unsigned char* bytes, size_t size) {
    for (size_t i = 0; i + 8 <= size; i += 8) {
      first_ += Word(bytes + i) + second_;
      second_ += Word(bytes + i + 4) + first_;
    }
  }
  bool IsAt(const unsigned char* stored) const {
    return BigEndian(stored) == first_ && BigEndian(stored + 4) == second_;
  }

 private:
  uint32_t Word(const unsigned char* at) const {
    return big_endian_ ? BigEndian(at) : LittleEndian(at);
  }
  const bool big_endian_;
  uint32_t first_ = 0, second_ = 0;
};

enum class FirstTransaction : uint8_t { kNone, kOfThisFile, kOfAnother };

// Follows the log to the first page or to the end of the first transaction, as SQLite would follow
// it: what does not pass its checks is not played.
FirstTransaction ReadLog(const std::string& path, uint32_t user_version) {
  std::ifstream file(PathOf(path), std::ios::binary);
  const auto header = Read(file, kLogHeaderSize);
  if (!header || (BigEndian(header->data()) & ~1U) != kLogMagic) return FirstTransaction::kNone;
  const uint32_t page_size = BigEndian(header->data() + 8);
  if (page_size < kLeastPage || page_size > kMostPage || !std::has_single_bit(page_size)) {
    return FirstTransaction::kNone;
  }
  Checksum checksum((BigEndian(header->data()) & 1U) != 0);
  checksum.Add(header->data(), 24);
  if (!checksum.IsAt(header->data() + 24)) return FirstTransaction::kNone;
  for (;;) {
    const auto frame = Read(file, kFrameHeaderSize + page_size);
    if (!frame) return FirstTransaction::kNone;
    const unsigned char* const at = frame->data();
    if (!std::equal(at + 8, at + 16, header->data() + 16)) return FirstTransaction::kNone;
    checksum.Add(at, 8);
    checksum.Add(at + kFrameHeaderSize, page_size);
    if (!checksum.IsAt(at + 16)) return FirstTransaction::kNone;
    const bool first_page = BigEndian(at) == 1;
    if (first_page && BigEndian(at + kFrameHeaderSize + kUserVersionAt) == user_version) {
      return FirstTransaction::kOfThisFile;
    }
    const bool committed = BigEndian(at + 4) != 0;
    if (committed) return FirstTransaction::kOfAnother;
  }
}

// A rollback journal that SQLite would play back: one that begins with anything but zero. A store
// never has one.
bool IsHot(const std::string& path) {
  std::ifstream file(PathOf(path), std::ios::binary);
  char first = 0;
  return file.get(first) && first != 0;
}

}  // namespace

std::string ForeignJournal(const std::string& path) {
  if (IsHot(path + "-journal")) return path + "-journal";
  std::ifstream file(PathOf(path), std::ios::binary);
  const auto header = Read(file, kHeaderSize);
  if (!header) return {};
  const uint32_t user_version = BigEndian(header->data() + kUserVersionAt);
  const std::string log = path + "-wal";
  return ReadLog(log, user_version) == FirstTransaction::kOfAnother ? log : std::string();
}

}  // namespace tavcc::sql
