#include "audit/audited_bill.h"

#include "foundation/conversions.h"

namespace tavcc {

AuditedBill ReadBill(Dictionary& dictionary, int16_t check_type) {
  return {.dictionary = dictionary,
          .class_type = ToLong(dictionary.Item("ClassTypeID")),
          .bill_id = ToLong(dictionary.Item("BillInterID")),
          .bill_type = ToLong(dictionary.Item("BillType")),
          .head_table = ToText(dictionary.Item("HeadTableName")),
          .bill_no = ToText(dictionary.Item("BillNo")),
          .check_type = check_type};
}

int32_t PartnerID(const AuditedBill& bill) {
  return ToLong(bill.dictionary.Item("CustOrSupplyID"));
}

}  // namespace tavcc
