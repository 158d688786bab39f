// The keys of the dictionaries and vectors that the methods are given and give back: one table
// beside the class table, in which a key that is in no row is read by nobody.
//
// `tavcc classes CLASS.METHOD` prints it, and `tavcc call` checks its arguments by it. What the
// rules read and write is the rules' own affair; a test holds this table against it.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "registry/bilingual.h"
#include "registry/class_registry.h"

namespace tavcc {

enum class KeyType : uint8_t {
  kLong,    // a 32-bit integer, or what converts to one
  kNumber,  // a number, with decimals
  kText,
  kDate,
  kDictionary,  // with keys of its own
  kVector,      // of dictionaries
};

// "long", "number", "text", "date", "dictionary", "vector".
std::string_view KeyTypeText(KeyType type);

enum class KeyUse : uint8_t {
  kNeeded,    // read, and without it the method does not do what it is for
  kOptional,  // read; the meaning says what counts where there is none
  kWritten,   // the method's answer
};

// Stands for any key: the one that another dictionary names.
inline constexpr std::string_view kAnyKey = "*";

struct DictionaryKey {
  std::string_view name;
  KeyType type;
  KeyUse use;
  Bilingual meaning;
  // Of the dictionary under the key, or of each dictionary in the vector.
  std::span<const DictionaryKey> keys = {};
  // The class types of the bills for which it is needed; none: for all.
  std::span<const int32_t> needed_by = {};
};

// Which parameter holds the keys.
struct DictionaryRow {
  std::string_view cls;
  std::string_view method;
  std::string_view parameter;
  std::span<const DictionaryKey> keys;
};
std::span<const DictionaryRow> DictionaryRows();

// The keys of a dictionary parameter, or of each dictionary in a vector parameter; none where the
// method looks at nothing in it.
std::span<const DictionaryKey> KeysOf(const ClassDescription& cls, const Method& method,
                                      const Parameter& parameter);

// Without regard to letter case; null when the key is in no row. A row for any key is no answer.
const DictionaryKey* FindKey(std::span<const DictionaryKey> keys, std::string_view name);
// The row for any key; null when there is none.
const DictionaryKey* AnyKey(std::span<const DictionaryKey> keys);

// Whether some method reads the key of the bill that it is given: a host hands the same dictionary
// to many methods.
bool IsKeyOfBills(std::string_view name);

}  // namespace tavcc
