// The arguments of `tavcc call`: words of the command line and a file of rich ones.
#pragma once

#include <string>
#include <vector>

#include "registry/class_registry.h"
#include "scenario/json.h"
#include "tavcc/command.h"

namespace tavcc {

// One JSON object of arguments by name, from "name=value" words and, where one is named, from a
// JSON file ("-" is standard input). Words are read by the parameter's type: whole
// numbers within its range, numbers, true and false, dates as YYYY-MM-DD[ HH:MM:SS], texts as they
// are; a dictionary or a vector as JSON.
// Errors: CommandError naming the argument: unknown, given twice, not of its type, out of range,
// not UTF-8, a table's name with more than a name in it (unless that is wanted); or the file:
// unreadable, no JSON, no object.
Json ReadArguments(const Method& method, const CallOptions& options);

// Errors: CommandError naming the first argument that the method needs and nobody gives. Texts and
// objects need not be given: they start empty.
void RequireArguments(const Method& method, const Json& arguments);

}  // namespace tavcc
