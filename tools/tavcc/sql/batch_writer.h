// Writes what batches give, in one of the modes of --mode.
#pragma once

#include <memory>

#include "foundation/batch_session.h"
#include "tavcc/sql/outlet.h"
#include "tavcc/sql/row_format.h"
#include "tavcc/sql/script.h"

namespace tavcc {

class BatchWriter : public BatchReader {
 public:
  // What is told from now on is of this batch, which must live as long.
  void BeginBatch(const Batch& batch) { batch_ = &batch; }
  // How long the batch took, where that is asked for.
  virtual void Time(double milliseconds) = 0;
  // All batches have run. To be called, also after an error, unless the output itself fails.
  virtual void Finish() = 0;

 protected:
  const Batch& batch() const { return *batch_; }

 private:
  const Batch* batch_ = nullptr;
};

// `outlet` must outlive the writer.
std::unique_ptr<BatchWriter> MakeBatchWriter(OutputMode mode, Outlet& outlet);

}  // namespace tavcc
