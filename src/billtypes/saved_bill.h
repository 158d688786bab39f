// A bill as the host hands it to a save hook: its table information and its data.
//
// A field is found in two steps: the table information's "Map" gives the key under which the pages
// keep a column, and the page's field of that key holds the value, as text, under "FFLD".
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/dictionary.h"
#include "foundation/vector.h"

namespace tavcc {

// The 32-bit integer that a field's text says, rounded half to even; 0 for an empty text. Errors:
// those of ToLong.
int32_t FieldNumber(const Value& field);

// Refers to the two dictionaries, which must outlive it. Errors of all members: those of ToObject
// where the data lacks a dictionary on the way.
class SavedBill {
 public:
  SavedBill(const Dictionary& dctTableInfo, const Dictionary& dctData)
      : table_info_(dctTableInfo), data_(dctData) {}

  // A value that stands directly in the bill's data, e.g. "FID".
  int32_t Number(std::string_view key) const { return FieldNumber(data_.Item(key)); }
  // A field of the head page.
  int32_t HeadNumber(std::string_view column) const;

  // An entry page ("Page2", "Page3"): a vector of rows.
  VectorPtr Page(std::string_view name) const;
  // A field of row `row` of an entry page, counted from 1.
  Value RowField(const Vector& page, int row, std::string_view column) const;

 private:
  std::string KeyOf(std::string_view column) const;

  const Dictionary& table_info_;
  const Dictionary& data_;
};

}  // namespace tavcc
