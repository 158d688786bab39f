// A module's own state: its handle, and the counts that tell whether it may be unloaded.
#pragma once

#include "automation/border/platform.h"

namespace tavcc::automation {

// The module handle, set when the library is loaded.
HINSTANCE Module();
void SetModule(HINSTANCE module);

// Living objects and server locks, over all threads: while there are any, the library stays loaded.
void ObjectCreated();
void ObjectReleased();
long LivingObjects();
void LockServer(bool lock);
bool CanUnload();

}  // namespace tavcc::automation
