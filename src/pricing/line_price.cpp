// The values of a line that is being entered, each converted when a query asks for it.
#include "foundation/conversions.h"
#include "foundation/text.h"
#include "pricing/price_queries.h"

namespace tavcc {

std::string LinePrice::index() const {
  const Value value = oDict_.Item("Index");
  if (const auto decimal = ToDecimalIfItFits(value)) return Cat(*decimal);
  return NumberText(ToDouble(value));
}

int32_t LinePrice::item_id() const {
  return ToLong(oDict_.Item("ItemID"));
}

int32_t LinePrice::unit_id() const {
  return ToLong(oDict_.Item("UnitID"));
}

double LinePrice::coefficient() const {
  return NumberOrZero(oDict_.Item("Coefficient"));
}

}  // namespace tavcc
