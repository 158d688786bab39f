#include "host/host_vector.h"

#include <gtest/gtest.h>

#include "foundation/error.h"

namespace tavcc {
namespace {

int32_t ErrorOfItem(const HostVector& vector, int index) {
  try {
    vector.Item(index);
  } catch (const AutomationError& error) {
    return error.number();
  }
  return 0;
}

TEST(HostVector, CountsFromOne) {
  HostVector vector;
  vector.Add("first");
  vector.Add(int32_t{2});
  EXPECT_EQ(vector.Size(), 2);
  EXPECT_EQ(vector.LBound(), 1);
  EXPECT_EQ(vector.UBound(), 2);
  EXPECT_EQ(vector.Item(1), Value("first"));
  EXPECT_EQ(vector.Item(2), Value(int32_t{2}));
}

TEST(HostVector, AnIndexOutsideIsError9) {
  const HostVector vector({Value("only")});
  EXPECT_EQ(ErrorOfItem(vector, 1), 0);
  EXPECT_EQ(ErrorOfItem(vector, 0), 9);
  EXPECT_EQ(ErrorOfItem(vector, 2), 9);
  EXPECT_EQ(ErrorOfItem(vector, -1), 9);
}

TEST(HostVector, AnEmptyOnesUpperBoundLiesBelowItsLowerBound) {
  const HostVector vector;
  EXPECT_EQ(vector.LBound(), 1);
  EXPECT_EQ(vector.UBound(), 0);
}

}  // namespace
}  // namespace tavcc
