// The session that calls the classes through COM: late-bound calls of the registered automation
// server, host components and ADO-shaped objects served from this process, the embedded database
// beneath.
#pragma once

#include <memory>
#include <string_view>

#include "automation/border/platform.h"
#include "scenario/backend.h"

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

// How often this process has made the component with this ProgID, over all threads.
int TimesMade(std::wstring_view prog_id);

// Calls a method late-bound, as a script would: in/out arguments by reference to a VARIANT.
// Arguments, result and errors as those of Invoke in the class registry.
Value CallLateBound(IDispatch& object, const Method& method, std::vector<Value>& arguments);

// Whether the loaded server holds nothing any more: its DllCanUnloadNow answers yes. To ask makes
// it let go of what it keeps for this thread.
bool ServerIsIdle();

// A session lets the server forget what it keeps for the thread when it ends.
std::unique_ptr<Backend> MakeComBackend();

}  // namespace tavcc
