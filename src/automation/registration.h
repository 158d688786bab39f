// What the server writes into the registry, and takes out again.
#pragma once

#include "automation/border/platform.h"

namespace tavcc::automation {

// For each class its keys (class_keys.h), and the type library with its help file.
HRESULT Register();

// Removes all of that, but what the server of the other bitness needs while it is registered. Keys
// that are not there are no error.
HRESULT Unregister();

}  // namespace tavcc::automation
