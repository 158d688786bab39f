#include "tavcc/sql/batch_runner.h"

#include <chrono>
#include <optional>
#include <string>
#include <utility>

#include "foundation/error.h"
#include "host/erp.h"
#include "language/language.h"
#include "tavcc/command.h"
#include "tavcc/output.h"
#include "tavcc/platform/interrupts.h"

namespace tavcc {

// Hands everything on, and notes the first error.
class BatchRunner::Watched final : public BatchReader {
 public:
  explicit Watched(BatchReader& reader) : reader_(reader) {}

  const std::optional<BatchMessage>& error() const { return error_; }

  void BeginRows(const std::vector<std::string>& columns) override { reader_.BeginRows(columns); }
  void Row(std::span<Value> values) override { reader_.Row(values); }
  void EndRows() override { reader_.EndRows(); }
  void RowCount(int64_t rows) override { reader_.RowCount(rows); }
  void Message(const BatchMessage& message) override {
    if (message.is_error && !error_) error_ = message;
    reader_.Message(message);
  }

 private:
  BatchReader& reader_;
  std::optional<BatchMessage> error_;
};

BatchRunner::BatchRunner(BatchSessionPtr session, RunnerOptions options)
    : session_(std::move(session)), options_(std::move(options)) {}

BatchRunner::~BatchRunner() = default;

BatchRunner::Outcome BatchRunner::Run(const Batch& batch) {
  if (writer_ == nullptr) {
    outlet_ = std::make_unique<Outlet>(options_.pages);
    writer_ = MakeBatchWriter(options_.mode, *outlet_);
  }
  writer_->BeginBatch(batch);
  Watched watched(*writer_);
  const std::string text = batch.Text();
  const auto start = std::chrono::steady_clock::now();
  bool whole = false;
  try {
    const InterruptWatch interrupts([this] { session_->Interrupt(); });
    whole = session_->RunBatch(text, watched);
  } catch (const CommandError& error) {
    throw CommandError(
        Say("{}; the batch ended there: what it did before is kept, but for an open transaction",
            error.what()));
  }
  const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
  if (options_.trace.sent) {
    LoggedStatement sent{.text = text, .milliseconds = took.count()};
    if (watched.error()) sent.error = {watched.error()->number, "", watched.error()->text};
    outlet_->Flush();
    options_.trace.sent(sent);
  }
  if (options_.timer) writer_->Time(took.count());
  if (!whole) {
    RollBack();
    return Outcome::kInterrupted;
  }
  return watched.error() ? Outcome::kFailed : Outcome::kDone;
}

void BatchRunner::RollBack() {
  if (session_->State() == Connection::kStateOpen) session_->Execute(kRollback);
  outlet_->WriteAside(Say("Interrupted: what the batch had not committed is rolled back.\n"));
}

void BatchRunner::Finish() {
  if (writer_ == nullptr) return;
  // While somebody reads in a pager, Ctrl-C is meant for that.
  std::optional<InterruptWatch> unheeded;
  if (options_.pages) unheeded.emplace([] {});
  writer_->Finish();
  writer_.reset();
  outlet_.reset();
}

}  // namespace tavcc
