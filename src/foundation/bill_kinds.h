// The ids that name the kinds of bill, their states and the tracking methods: the host's own
// numbers, given words once.
#pragma once

#include <cstdint>

namespace tavcc {

// Class type ids: which kind of bill.
namespace class_type {
inline constexpr int32_t kPurchaseOrder = 1020001;
inline constexpr int32_t kPurchaseBill = 1020002;
inline constexpr int32_t kPurchaseEstimate = 1020003;
inline constexpr int32_t kPurchaseRebate = 1020004;
inline constexpr int32_t kPurchaseSettlement = 1020005;
inline constexpr int32_t kSalesOrder = 1030001;
inline constexpr int32_t kSalesBill = 1030002;
inline constexpr int32_t kConsignment = 1030003;
inline constexpr int32_t kSalesRebate = 1030004;
inline constexpr int32_t kConsignmentSettlement = 1030005;
inline constexpr int32_t kOtherReceipt = 1040001;
inline constexpr int32_t kOtherIssue = 1040002;
inline constexpr int32_t kCheckGain = 1040003;
inline constexpr int32_t kCheckLoss = 1040004;
inline constexpr int32_t kAssembly = 1040005;
inline constexpr int32_t kDisassembly = 1040006;
inline constexpr int32_t kTransfer = 1040007;
inline constexpr int32_t kPriceAdjustment = 1040008;
inline constexpr int32_t kSettlement = 1050003;
inline constexpr int32_t kStockBill1080001 = 1080001;
inline constexpr int32_t kStockBill1080002 = 1080002;
inline constexpr int32_t kDayEnd = 1090001;
}  // namespace class_type

// Bill type ids refine a class. The host's documentation gives most of them no word of their own,
// so the rules' lists of bill types stay lists of numbers, laid out beside the rule that uses them;
// here stands what several rules mean alike.
namespace bill_types {
// Amounts without quantities.
inline constexpr int32_t kValueOnly[] = {2040, 2041, 3020, 3021};
// A purchase of goods that were booked at an estimate.
inline constexpr int32_t kPurchaseOfEstimated = 2013;
// Goods that a customer gives back.
inline constexpr int32_t kSalesReturns[] = {3002, 3004, 3011};
}  // namespace bill_types

// FStatus of a bill's head.
namespace bill_status {
inline constexpr double kNotAudited = 0;
inline constexpr double kAudited = 1;
inline constexpr double kLinked = 2;  // audited and used by other bills; elsewhere called closed
}  // namespace bill_status

// The direction of an operation: audit or un-audit. Rules state what any other value means.
inline constexpr int32_t kAudit = 1;
inline constexpr int32_t kUnAudit = -1;

}  // namespace tavcc
