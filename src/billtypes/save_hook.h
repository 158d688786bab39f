// AfterSave: the hook that the host calls after it saved a bill. What the bill classes share of it.
#pragma once

#include <functional>
#include <string_view>

#include "foundation/plug_in.h"

namespace tavcc {

// Whether a save hook readies the context before or after it takes the connection.
enum class SaveOrder { kReadyThenConnection, kConnectionThenReady };

// What the save hooks of the classes deliberately differ in, their work apart.
struct SaveHook {
  SaveOrder order;
  std::string_view failure_source;  // "TavM_CC_PlugIns.<class>.AfterSave"
  std::string_view failure_text;    // stands before the description of an error
};

// Runs `work` on the context's connection and readies the context for the second time. The result
// is Empty.
// Errors: any, under its own number, with the hook's source and its text before the description.
Value RunAfterSave(PlugIn& self, std::string_view sDsn, const SaveHook& hook,
                   const std::function<void(Connection& cn)>& work);

}  // namespace tavcc
