// What the posting says of bills that the batch audit never hands to it.
#include "audit/inventory_posting.h"

#include <gtest/gtest.h>

#include "support/instant_host.h"

namespace tavcc::testing {
namespace {

// Rebates in money and other bills of value only: no quantity, whoever asks.
TEST(InventoryPosting, BillsOfValueOnlyHaveNoLines) {
  InstantHost host;
  for (const int32_t class_type : {1020004, 1030004, 1040001, 1040002}) {
    for (const int32_t bill_type : {2040, 2041, 3020, 3021}) {
      for (const int32_t direction : {1, -1}) {
        std::string message = "earlier";
        host.connection().sent = 0;
        EXPECT_TRUE(
            FillTempBill(host, host.connection(), class_type, 1, bill_type, direction, message));
        EXPECT_EQ(host.connection().sent, 0) << class_type << " " << bill_type;
        EXPECT_EQ(message, "earlier");
      }
    }
    std::string message;
    host.connection().sent = 0;
    EXPECT_TRUE(FillTempBill(host, host.connection(), class_type, 1, 0, 1, message));
    EXPECT_EQ(host.connection().sent, 1) << class_type;
  }
}

// Classes that are in no table have no lines either.
TEST(InventoryPosting, OtherClassesHaveNoLines) {
  InstantHost host;
  for (const int32_t class_type :
       {1020001, 1030001, 1020005, 1030005, 1040008, 1050003, 1080001, 1080002, 1090001, 7}) {
    std::string message;
    EXPECT_TRUE(FillTempBill(host, host.connection(), class_type, 1, 0, 1, message));
    EXPECT_EQ(host.connection().sent, 0) << class_type;
  }
}

}  // namespace
}  // namespace tavcc::testing
