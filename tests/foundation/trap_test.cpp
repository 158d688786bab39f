#include "foundation/trap.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

namespace tavcc {
namespace {

TEST(Trap, GivesTheBodysResultWhenNothingIsRaised) {
  EXPECT_EQ(Trap([] { return 1; }, [](const AutomationError&) { return -1; }), 1);
  EXPECT_EQ(PendingError(), nullptr);
}

TEST(Trap, KeepsTheErrorPendingForTheFailurePartOnly) {
  const int result = Trap([]() -> int { throw AutomationError(208, "s", "d"); },
                          [](const AutomationError& error) {
                            EXPECT_EQ(PendingError()->number(), 208);
                            EXPECT_EQ(error.description(), "d");
                            return -1;
                          });
  EXPECT_EQ(result, -1);
  EXPECT_EQ(PendingError(), nullptr);
}

TEST(Trap, TranslatesOtherExceptions) {
  const auto number_of = [](auto&& raise) {
    return Trap(
        [&]() -> int32_t {
          raise();
          return 0;
        },
        [](const AutomationError& error) { return error.number(); });
  };
  EXPECT_EQ(number_of([] { throw std::bad_alloc(); }), 7);
  EXPECT_EQ(number_of([] { throw std::runtime_error("x"); }), 51);
  EXPECT_EQ(number_of([] { throw 1; }), 51);
}

TEST(Trap, InsideAFailurePartPutsTheOuterErrorBack) {
  Trap([]() -> int { throw AutomationError(1, "", "outer"); },
       [](const AutomationError&) {
         Trap([]() -> int { throw AutomationError(2, "", "inner"); },
              [](const AutomationError&) {
                EXPECT_EQ(PendingError()->number(), 2);
                return 0;
              });
         EXPECT_EQ(PendingError()->number(), 1);
         return 0;
       });
}

TEST(Trap, LetsAnErrorOfTheFailurePartThrough) {
  EXPECT_THROW(Trap([]() -> int { throw AutomationError(1, "", "a"); },
                    [](const AutomationError&) -> int { throw AutomationError(2, "", "b"); }),
               AutomationError);
  EXPECT_EQ(PendingError(), nullptr);
}

}  // namespace
}  // namespace tavcc
