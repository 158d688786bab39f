// What every test through COM needs: an apartment, the host's classes, and a look at what is left.
#pragma once

#include <gtest/gtest.h>

#include "automation/border/platform.h"
#include "automation/com_road.h"

namespace tavcc {

// A single-threaded apartment for the lifetime of the object.
class Apartment {
 public:
  Apartment();
  ~Apartment();
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;
};

// Whether the loaded server holds nothing any more: its DllCanUnloadNow answers yes.
bool ServerIsIdle();

// Host objects alive beyond the class factories: what the server or a test still holds.
long HostObjectsAlive();

class AutomationTest : public ::testing::Test {
 protected:
  void TearDown() override;

  Apartment apartment_;
  HostClassHome home_;
};

}  // namespace tavcc
