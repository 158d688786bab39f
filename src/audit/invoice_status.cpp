#include "audit/invoice_status.h"

#include "foundation/host_services.h"
#include "foundation/text.h"

namespace tavcc {

void SetInvoiceAmount(Connection& connection, const AuditedBill& bill) {
  constexpr int32_t kInvoiced[] = {2011, 2012, 2013, 3001, 3002, 3003, 3004};
  if (!IsInArray(bill.bill_type, kInvoiced)) return;
  connection.Execute(Cat("Update  t_cc_stockbill set FNoInvoiceAmt = FAllAmount where FID=",
                         bill.bill_id, " And FBillTypeID=", bill.bill_type));
}

void ResetInvoiceStatus(Connection& connection, const AuditedBill& bill) {
  // FInvoiceSatus is the column's name.
  connection.Execute(
      Cat("Update t_cc_stockbill set FInvoiceSatus=0, FInvoiceAmt=0, FNoInvoiceAmt=0 where FID=",
          bill.bill_id, " And FBillTypeID=", bill.bill_type, "\r\n",
          "Delete from t_CC_InvoiceFlow where FID=", bill.bill_id,
          " And FBillTypeID=", bill.bill_type));
}

}  // namespace tavcc
