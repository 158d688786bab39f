// --record and --record-state: what a command calls, as a scenario.
#pragma once

#include <exception>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "host/erp.h"
#include "registry/class_registry.h"
#include "scenario/masking.h"
#include "scenario/recording.h"
#include "tavcc/command.h"
#include "tavcc/touched_rows.h"

namespace tavcc {

struct Answer;

// Writes a scenario to a new file, once it was run. Errors: CommandError where it does not run, or
// cannot be written.
void WriteRecorded(const std::string& file, const Json& scenario);

// The scenario with what the masks have learned, and what they learn from the tape, put in its
// place. What they could not mask is noted on standard error.
Json WithMasks(Masks& masks, const Json& scenario, const Json& tape);

// Records the calls of a command on one database, where it is asked to: as a tape, which is
// replayed without a database; as an ordinary scenario with the rows that the calls touch; or both.
class Recorder {
 public:
  // `subject` is what the scenario is named after. Errors: CommandError where a file to be written
  // is there already, or the options do not go together.
  Recorder(Erp& erp, const RecordOptions& options, std::string subject);
  ~Recorder();
  Recorder(const Recorder&) = delete;
  Recorder& operator=(const Recorder&) = delete;

  // Around a call. Errors: CommandError for an argument or an answer that no file can hold; what
  // reading the touched rows raised.
  void Begin(const ClassDescription& cls, const Method& method, std::span<const Value> arguments);
  void End(const Answer& answer);

  // Writes what was recorded; nothing where nothing was asked for. Errors: CommandError; what the
  // calls did is then still to be undone.
  void Write();

 private:
  bool IsOn() const { return !options_.tape_file.empty() || !options_.state_file.empty(); }
  void WatchRows();
  void WriteScenario(const std::string& file, const Json& scenario, const Json& tape) const;
  Json Masked(const Json& scenario, const Json& tape) const;

  Erp& erp_;
  const RecordOptions& options_;
  Recording recording_;
  std::optional<RecordedCall> call_;    // that runs
  std::optional<TouchedRows> touched_;  // where they are asked for
  size_t answered_ = 0;                 // statements of the call whose answers were looked at
  std::exception_ptr problem_;          // in reading them
};

}  // namespace tavcc
