// What the server writes into the registry, and takes out again.
#pragma once

#include "automation/platform.h"

namespace tavcc::automation {

// For each class: HKCR\CLSID\{id} with InprocServer32 (threading model "Apartment"), ProgID and
// TypeLib, and HKCR\TavM_CC_PlugIns.<Class> with CLSID; and the type library with its help file.
HRESULT Register();

// Removes all of that. Keys that are not there are no error.
HRESULT Unregister();

}  // namespace tavcc::automation
