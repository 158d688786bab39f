// What a person who types a call may have meant otherwise: checked in the command line only, since
// a host may send what it likes.
#pragma once

#include "registry/class_registry.h"
#include "scenario/json.h"

namespace tavcc {

// Errors: CommandError, naming the argument, for a dictionary's key that no method reads, for one
// that this method needs and that is not there, and for a direction that is neither 1 nor -1.
void CheckMeaning(const ClassDescription& cls, const Method& method, const Json& arguments);

}  // namespace tavcc
