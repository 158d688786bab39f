// Runs batches on a session, and shows what they give.
#pragma once

#include <memory>

#include "foundation/batch_session.h"
#include "host/statement_log.h"
#include "tavcc/sql/batch_writer.h"
#include "tavcc/sql/outlet.h"
#include "tavcc/sql/script.h"

namespace tavcc {

struct RunnerOptions {
  OutputMode mode = OutputMode::kTable;
  bool timer = false;
  bool pages = false;            // on a terminal, through a pager
  StatementObserver trace = {};  // of --trace
};

class BatchRunner {
 public:
  enum class Outcome { kDone, kFailed, kInterrupted };

  BatchRunner(BatchSessionPtr session, RunnerOptions options);
  ~BatchRunner();

  RunnerOptions& options() { return options_; }
  BatchSession& session() { return *session_; }

  // Runs a batch to its end, or until Ctrl-C: its transaction is then rolled back, and a person is
  // told. Errors: CommandError when the output cannot be written.
  Outcome Run(const Batch& batch);
  // Ends the output of the batches since the last time.
  void Finish();

 private:
  class Watched;

  void RollBack();

  const BatchSessionPtr session_;
  RunnerOptions options_;
  std::unique_ptr<Outlet> outlet_;
  std::unique_ptr<BatchWriter> writer_;
};

}  // namespace tavcc
