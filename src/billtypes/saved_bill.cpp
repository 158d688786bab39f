#include "billtypes/saved_bill.h"

#include "foundation/conversions.h"

namespace tavcc {

int32_t FieldNumber(const Value& field) {
  if (field.IsText() && field.text().empty()) return 0;
  return ToLong(field);
}

int32_t SavedBill::HeadNumber(std::string_view column) const {
  return FieldNumber(NestedItem(data_, "Page1", KeyOf(column), "FFLD"));
}

VectorPtr SavedBill::Page(std::string_view name) const {
  return ToObject<Vector>(data_.Item(name));
}

Value SavedBill::RowField(const Vector& page, int row, std::string_view column) const {
  return NestedItem(*ToObject<Dictionary>(page.Item(row)), KeyOf(column), "FFLD");
}

std::string SavedBill::KeyOf(std::string_view column) const {
  return ToText(NestedItem(table_info_, "Map", column));
}

}  // namespace tavcc
