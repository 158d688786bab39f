// What the library keeps for an apartment, that is for the thread that its objects live on.
//
// - The host's global object, created when the thread's objects first need it and released when the
//   last of them goes. Each apartment has its own: a reference lent to another apartment would send
//   every call back to the thread that made it, which must then answer or all others wait.
// - The cached host objects (foundation/host_services.h). A host makes one component for each use,
//   so these stay when a thread's last object goes. They go when COM is uninitialized on the
//   thread, of which an initialize spy tells, and before the module may be unloaded.
// - Which classes the components' ProgIDs name: the registry is asked once, as long as what it said
//   holds. These go with the cached objects.
#pragma once

#include "automation/late_bound.h"
#include "automation/roles.h"

namespace tavcc::automation {

// An object of the library begins and ends on this thread. Errors: what COM says when it takes no
// spy.
void ObjectBegins();
void ObjectEnds();

// A new component of the host's or of ADO's; one of the thread's objects must live. Errors: 429
// with the ProgID in the text when it cannot be created.
LateBound NewComponent(Role role);

// The thread's global object; one of its objects must live. Errors: 429 when it cannot be created.
const LateBound& GlobalObject();

// Lets go of all that this thread keeps without an object of its own.
void LeaveApartment();

// Whether the module may be unloaded: no object, factory or lock is left, and after letting go of
// what this thread keeps, no thread keeps anything.
bool LeaveAndCanUnload();

}  // namespace tavcc::automation
