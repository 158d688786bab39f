// The way from a scenario to the rules: how a database is opened and how a class is called.
//
// The runner knows neither; it is given a Backend and works through this interface, so that the
// same scenarios run on each database and through each way in.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "foundation/host.h"
#include "host/statement_log.h"
#include "registry/class_registry.h"
#include "scenario/scenario.h"

namespace tavcc {

// One database in a scenario's start state, with a host over it.
class BackendSession {
 public:
  virtual ~BackendSession() = default;

  // The host of the database; it makes dictionaries and vectors for arguments.
  virtual Host& host() = 0;
  // What names the database to the rules, as `sDsn` and `strConString`.
  virtual std::string dsn() = 0;
  // The open connection to it, as `cn` and `oConn`. One that was closed is open again.
  virtual ConnectionPtr connection() = 0;

  // Calls a method of the one object of the class that belongs to this session. Arguments, results
  // and errors are those of Invoke in the class registry.
  virtual Value Call(const ClassDescription& cls, const Method& method,
                     std::vector<Value>& arguments) = 0;

  // Puts in the tape that the next call is answered from, with `failure` among its statements. Only
  // a session of tapes has a use for it.
  virtual void Play(const Tape&, const std::optional<InjectedFailure>&) {}
  // What the call asked that is not on its tape, or left unasked, a line each.
  virtual std::vector<std::string> TakeComplaints() { return {}; }

  // Why the scenario cannot be told to its end here; empty while it can.
  virtual std::string SkipReason() const { return ""; }

  // Forgets the statements sent so far. With a failure, the statement at its position, counted from
  // here, raises its error instead of running.
  virtual void StartLog(const std::optional<InjectedFailure>& failure) = 0;
  // The statements sent since StartLog, in order; none are recorded after this.
  virtual std::vector<LoggedStatement> TakeLog() = 0;
};

// A way of opening databases.
class Backend {
 public:
  virtual ~Backend() = default;
  // A fresh database in the start state. Errors: AutomationError where its SQL fails.
  virtual std::unique_ptr<BackendSession> Open(const StartState& start) = 0;
  // Whether the clock stands still at the scenario's `now`.
  virtual bool FixesClock() const { return true; }
  // Whether a session stays as it is while another one is used. Where not, opening one ends the
  // last.
  virtual bool KeepsSessionsApart() const { return true; }
  // Who watches what the calls send.
  virtual StatementObserver observer() const { return {}; }
};

}  // namespace tavcc
