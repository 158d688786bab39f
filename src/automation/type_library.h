// The type library embedded in the module.
#pragma once

#include "automation/border/platform.h"

namespace tavcc::automation {

// The caller releases it.
HRESULT LoadOwnTypeLibrary(ITypeLib** library);

}  // namespace tavcc::automation
