// A session over ODBC: the port's implementation.
#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "foundation/batch_session.h"
#include "foundation/error.h"
#include "odbc/api.h"
#include "odbc/diagnostics.h"
#include "odbc/odbc.h"
#include "odbc/rows.h"
#include "odbc/statement_calls.h"
#include "odbc/text.h"

namespace tavcc::odbc {

class Session final : public BatchSession {
 public:
  explicit Session(OdbcOptions options);
  ~Session() override;
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  // Connects. Errors: those of OpenOdbc.
  void Open();

  RecordsetPtr Execute(const SqlText& sql) override;
  RecordsetPtr OpenClientRecordset(const SqlText& sql) override { return Execute(sql); }
  void CallProcedure(const SqlText& name, std::span<ProcedureParameter> parameters) override;
  bool RunBatch(std::string_view batch, BatchReader& reader) override;
  void Interrupt() override;
  std::vector<SchemaObject> Objects() override;
  std::vector<std::string> Columns(std::string_view name) override;
  std::string Definition(std::string_view name) override;
  std::vector<ConnectionError> Errors() const override { return errors_; }
  int State() const override { return open_ ? kStateOpen : kStateClosed; }
  void Close() override;

 private:
  // Which result of a batch is kept.
  enum class Keep { kFirst, kLast };

  // Who is told of a batch.
  struct Listener {
    BatchReader& reader;
    std::function<bool()> wants_rows;  // of the result at hand
    bool wants_messages = false;
  };
  class Running;

  Rows Run(std::string_view sql, Keep keep);
  // Sends a batch and goes through its results to their end. A value that the port has no form for
  // is answered; the rest of its result was not read then.
  std::optional<AutomationError> Walk(std::string_view sql, const Listener& listener);
  void Prepare(Statement& statement);
  SQLRETURN Send(const Statement& statement, std::string_view sql);
  // Whether wide text comes through the driver unharmed.
  Encoding ProbeEncoding() const;
  // What was said of the last call.
  struct Said {
    bool more = true;        // false: nothing more can come of the batch
    bool by_server = false;  // behind an error of the server there may be more results
  };
  // Reads, notes and tells it.
  Said Hear(const StatementCalls& calls, const Statement& statement, const Listener& listener);
  void Tell(const Diagnostic& diagnostic, const ServerDetails& details, BatchReader& reader) const;
  // False when nothing more can come of the batch.
  bool Note(const std::vector<Diagnostic>& diagnostics);
  // The first of errors_ that is one, null where there is none. Where the connection is gone, it
  // says so, and the session is closed.
  const ConnectionError* FirstFailure();
  void RequireOpen() const;
  bool IsDead() const;
  [[noreturn]] void FailToConnect(const std::vector<Diagnostic>& diagnostics);
  std::string WithoutSecrets(std::string text) const;

  const OdbcOptions options_;
  Environment environment_;
  Link link_;
  Encoding encoding_ = Encoding::kWide;
  bool open_ = false;
  bool lost_ = false;  // the batch under way met the end of the connection
  std::atomic<bool> interrupted_ = false;
  std::mutex running_mutex_;
  const StatementCalls* running_ = nullptr;  // while a batch is under way
  std::vector<ConnectionError> errors_;
};

}  // namespace tavcc::odbc
