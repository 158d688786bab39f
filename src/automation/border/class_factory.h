// The class factory that every class of a module uses.
#pragma once

#include "automation/border/platform.h"

namespace tavcc::automation {

// Makes an object and answers its wanted interface. Errors as HRESULT; `object` is then null.
using CreateFunction = HRESULT (*)(REFIID wanted, void** object);

// The wanted interface of a new factory for objects that `create` makes.
HRESULT MakeClassFactory(CreateFunction create, REFIID wanted, void** factory);

}  // namespace tavcc::automation
