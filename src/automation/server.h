// The in-process server's own state: its module, its counts, its type library.
#pragma once

#include "automation/platform.h"

namespace tavcc::automation {

// The module handle, set when the library is loaded.
HINSTANCE Module();
void SetModule(HINSTANCE module);

// Living objects and server locks, over all threads: while there are any, the library stays loaded.
// When a thread's last object goes, the host objects that the thread kept go with it.
void ObjectCreated();
void ObjectReleased();
void LockServer(bool lock);
bool CanUnload();

// The type library embedded in the module. The caller releases it.
HRESULT LoadOwnTypeLibrary(ITypeLib** library);

}  // namespace tavcc::automation
