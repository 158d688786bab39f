// A session over ODBC: the port's implementation.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "foundation/error.h"
#include "odbc/api.h"
#include "odbc/diagnostics.h"
#include "odbc/odbc.h"
#include "odbc/rows.h"
#include "odbc/text.h"

namespace tavcc::odbc {

class Session final : public Connection {
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
  std::vector<ConnectionError> Errors() const override { return errors_; }
  int State() const override { return open_ ? kStateOpen : kStateClosed; }
  void Close() override;

 private:
  // Which result of a batch is kept.
  enum class Keep { kFirst, kLast };

  struct Outcome {
    Rows rows;
    std::optional<AutomationError> refusal;  // a value that the port has no form for
  };

  Rows Run(std::string_view sql, Keep keep);
  // Goes through the results of a statement, from that of its execution on.
  Outcome Walk(const Statement& statement, SQLRETURN result, Keep keep);
  // Goes through what is left of a batch whose first result was an error; its rows are nobody's.
  // False where the driver cannot be asked.
  bool WalkBehindError(const Statement& statement);
  void Prepare(Statement& statement);
  SQLRETURN Send(const Statement& statement, std::string_view sql);
  // Whether wide text comes through the driver unharmed.
  Encoding ProbeEncoding() const;
  // Notes what was said; false when nothing more can come of the batch.
  bool Note(const std::vector<Diagnostic>& diagnostics);
  // Raises the first of errors_ that is one; closes a session whose connection is gone.
  void RaiseFirstError();
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
  std::vector<ConnectionError> errors_;
};

}  // namespace tavcc::odbc
