// The road that calls the classes through COM: late-bound calls of the registered automation
// server, host components and ADO-shaped objects served from this process, the embedded database
// beneath.
#pragma once

#include <memory>

#include "automation/border/platform.h"
#include "scenario/road.h"

namespace tavcc {

// Makes this process the home of the host's classes for as long as it lives: what the server then
// creates by the host's ProgIDs comes from here. Needs COM initialised on the thread and the
// reference host's module registered.
class HostClassHome {
 public:
  HostClassHome();
  ~HostClassHome();
  HostClassHome(const HostClassHome&) = delete;
  HostClassHome& operator=(const HostClassHome&) = delete;

 private:
  std::vector<DWORD> cookies_;
};

// Calls a method late-bound, as a script would: in/out arguments by reference to a VARIANT.
// Arguments, result and errors as those of Invoke in the class registry.
Value CallLateBound(IDispatch& object, const Method& method, std::vector<Value>& arguments);

std::unique_ptr<Roads> MakeComRoads();

}  // namespace tavcc
