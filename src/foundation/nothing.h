// References to nothing: what a rule gets where the caller passed a null object.
//
// As in automation, the call itself goes through and every use of the object is error 91 ("Object
// variable or With block variable not set"), raised inside the rule, where its trap is.
#pragma once

#include "foundation/connection.h"
#include "foundation/dictionary.h"
#include "foundation/vector.h"

namespace tavcc {

Dictionary& NoDictionary();
Vector& NoVector();
Connection& NoConnection();

}  // namespace tavcc
