// The session on which tapes are played: calls go straight to the classes, the answers come from
// the tape, and there is no database.
//
// A statement is answered when it is the next one on the tape, byte for byte. Any other one is
// refused with an error, and the session keeps a line that says which was expected; so it does for
// a setting that the recording did not read, and for statements that were not sent. Where a
// statement is made to fail, the tape goes on behind it: what a rule sends only then is on no tape.
#pragma once

#include <memory>

#include "scenario/backend.h"

namespace tavcc {

// `observer` sees each statement that a call sends.
std::unique_ptr<BackendSession> MakeTapeSession(const StartState& start,
                                                StatementObserver observer);

}  // namespace tavcc
