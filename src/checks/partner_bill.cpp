#include "checks/partner_bill.h"

#include "foundation/conversions.h"

namespace tavcc {

PartnerBill ReadPartnerBill(const Dictionary& oDict) {
  PartnerBill bill;
  if (oDict.Lookup("CustOrSupplyID")) bill.partner_id = ToLong(oDict.Item("CustOrSupplyID"));
  if (oDict.Lookup("AllAmount")) bill.amount = ToDouble(oDict.Item("AllAmount"));
  bill.bill_type = oDict.Lookup("BillTypeID") ? ToLong(oDict.Item("BillTypeID"))
                                              : LongOrZero(oDict.Item("BillType"));
  if (oDict.Lookup("ClassTypeID")) bill.class_type = ToLong(oDict.Item("ClassTypeID"));
  return bill;
}

}  // namespace tavcc
