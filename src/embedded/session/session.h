// The port over an engine.
#pragma once

#include <memory>

#include "embedded/session/engine.h"
#include "foundation/batch_session.h"

namespace tavcc::sql {

class Session final : public BatchSession {
 public:
  // `store` is kept alive as long as the session.
  Session(std::shared_ptr<Engine> engine, std::shared_ptr<void> store)
      : store_(std::move(store)), engine_(std::move(engine)) {}
  ~Session() override;

  RecordsetPtr Execute(const SqlText& sql) override;
  RecordsetPtr OpenClientRecordset(const SqlText& sql) override;
  void CallProcedure(const SqlText& name, std::span<ProcedureParameter> parameters) override;
  bool RunBatch(std::string_view batch, BatchReader& reader) override;
  void Interrupt() override { engine_->Interrupt(); }
  std::vector<SchemaObject> Objects() override;
  std::vector<std::string> Columns(std::string_view name) override;
  std::string Definition(std::string_view name) override;
  std::vector<ConnectionError> Errors() const override;
  int State() const override { return open_ ? kStateOpen : kStateClosed; }
  void Close() override;

  void Reopen() { open_ = true; }
  Engine& engine() { return *engine_; }

 private:
  void CheckOpen() const;
  void RaiseFirst() const;

  std::shared_ptr<void> store_;
  std::shared_ptr<Engine> engine_;
  bool open_ = true;
};

// The first of the errors that is more than a message, as the caller gets it; null when there is
// none.
const SqlError* FindFirstError(const std::vector<SqlError>& errors);

inline constexpr std::string_view kErrorSource = "embedded database";

}  // namespace tavcc::sql
