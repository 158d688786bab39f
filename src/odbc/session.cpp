#include "odbc/session.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "foundation/connection_string.h"
#include "foundation/error.h"
#include "foundation/text.h"
#include "odbc/driver_statement.h"
#include "odbc/fetch.h"
#include "odbc/procedure_batch.h"
#include "odbc/text.h"

namespace tavcc {
namespace odbc {
namespace {

constexpr std::string_view kErrorSource = "ODBC";

int32_t NumberOf(const Diagnostic& diagnostic) {
  if (diagnostic.IsMessage()) return 0;
  return diagnostic.number == 0 ? kDriverError : diagnostic.number;
}

// The first diagnostic that is an error; some drivers tell of a failed call by messages alone.
const Diagnostic* FirstError(const std::vector<Diagnostic>& diagnostics) {
  const auto found =
      std::ranges::find_if(diagnostics, [](const Diagnostic& d) { return !d.IsMessage(); });
  if (found != diagnostics.end()) return &*found;
  return diagnostics.empty() ? nullptr : &diagnostics.front();
}

// Behind an error of the server there may be more results, behind one of the driver there is
// nothing.
bool ServerSpoke(const std::vector<Diagnostic>& diagnostics) {
  return std::ranges::any_of(diagnostics, [](const Diagnostic& d) { return d.number != 0; });
}

}  // namespace

Session::Session(OdbcOptions options) : options_(std::move(options)) {}

Session::~Session() {
  Close();
}

void Session::Open() {
  Close();
  errors_.clear();
  encoding_ = Encoding::kWide;
  if (!environment_.Allocate(SQL_NULL_HANDLE)) FailToConnect({});
  SQLSetEnvAttr(environment_.get(), SQL_ATTR_ODBC_VERSION, NumberAttribute(SQL_OV_ODBC3), 0);
  if (!link_.Allocate(environment_.get())) FailToConnect(ReadDiagnostics(environment_, encoding_));
  // A driver without such a timeout refuses it, which changes nothing.
  const auto seconds = NumberAttribute(static_cast<SQLULEN>(options_.login_seconds));
  SQLSetConnectAttr(link_.get(), SQL_ATTR_LOGIN_TIMEOUT, seconds, 0);
  std::vector<SQLWCHAR> text = ToWide(options_.connection_string);
  const SQLRETURN result =
      SQLDriverConnectW(link_.get(), nullptr, text.data(), static_cast<SQLSMALLINT>(text.size()),
                        nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT);
  if (!SQL_SUCCEEDED(result)) FailToConnect(ReadDiagnostics(link_, encoding_));
  encoding_ = ProbeEncoding();
  open_ = true;
  lost_ = false;
}

Encoding Session::ProbeEncoding() const {
  std::vector<SQLWCHAR> text = ToWide("select N'单😀'");
  std::array<SQLWCHAR, 64> back{};
  SQLINTEGER length = 0;
  const SQLRETURN result =
      SQLNativeSqlW(link_.get(), text.data(), static_cast<SQLINTEGER>(text.size()), back.data(),
                    static_cast<SQLINTEGER>(back.size()), &length);
  if (!SQL_SUCCEEDED(result)) return Encoding::kWide;
  const bool same = std::equal(text.begin(), text.end(), back.begin());
  return same ? Encoding::kWide : Encoding::kBytes;
}

void Session::FailToConnect(const std::vector<Diagnostic>& diagnostics) {
  link_.Free();
  environment_.Free();
  Note(diagnostics);
  const Diagnostic* first = FirstError(diagnostics);
  const std::string reason =
      first == nullptr ? "the driver manager gives no reason" : WithoutSecrets(first->text);
  // The driver manager tells of a missing driver as of a warning.
  const int32_t number = first == nullptr ? 0 : NumberOf(*first);
  throw AutomationError(
      number == 0 ? kDriverError : number, std::string(kErrorSource),
      Cat("cannot connect to \"", MaskPassword(options_.connection_string), "\": ", reason));
}

void Session::Close() {
  open_ = false;
  if (link_.get() != SQL_NULL_HANDLE) {
    // A driver does not disconnect while a transaction of its own is open; the session's was opened
    // by a statement, and ends with it.
    if (!SQL_SUCCEEDED(SQLDisconnect(link_.get()))) {
      SQLEndTran(SQL_HANDLE_DBC, link_.get(), SQL_ROLLBACK);
      SQLDisconnect(link_.get());
    }
  }
  link_.Free();
  environment_.Free();
}

void Session::RequireOpen() const {
  if (!open_) throw AutomationError(RuntimeError::kObjectClosed);
}

bool Session::IsDead() const {
  SQLULEN dead = SQL_CD_FALSE;
  const SQLRETURN result =
      SQLGetConnectAttr(link_.get(), SQL_ATTR_CONNECTION_DEAD, &dead, sizeof(dead), nullptr);
  return SQL_SUCCEEDED(result) && static_cast<SQLUINTEGER>(dead) == SQL_CD_TRUE;
}

std::string Session::WithoutSecrets(std::string text) const {
  return WithoutPasswords(std::move(text), options_.connection_string);
}

bool Session::Note(const std::vector<Diagnostic>& diagnostics) {
  bool more = true;
  for (const Diagnostic& diagnostic : diagnostics) {
    errors_.push_back({NumberOf(diagnostic), std::string(kErrorSource),
                       WithoutSecrets(diagnostic.text), diagnostic.state});
    lost_ = lost_ || diagnostic.IsLoss();
    more = more && !diagnostic.IsLoss() && !diagnostic.IsTimeout();
  }
  return more;
}

void Session::Prepare(Statement& statement) {
  if (!statement.Allocate(link_.get())) {
    Note(ReadDiagnostics(link_, encoding_));
    throw AutomationError(
        kDriverError, std::string(kErrorSource),
        errors_.empty() ? "no statement could be made" : errors_.front().description);
  }
  // Drivers without a timeout refuse it, which changes nothing.
  SQLSetStmtAttr(statement.get(), SQL_ATTR_QUERY_TIMEOUT,
                 NumberAttribute(static_cast<SQLULEN>(options_.query_seconds)), 0);
}

SQLRETURN Session::Send(const Statement& statement, std::string_view sql) {
  // The terminator gives an empty batch an address, too.
  if (encoding_ == Encoding::kBytes) {
    std::vector<SQLCHAR> bytes(sql.begin(), sql.end());
    bytes.push_back(0);
    return SQLExecDirect(statement.get(), bytes.data(), static_cast<SQLINTEGER>(sql.size()));
  }
  std::vector<SQLWCHAR> wide = ToWide(sql);
  const auto length = static_cast<SQLINTEGER>(wide.size());
  wide.push_back(0);
  return SQLExecDirectW(statement.get(), wide.data(), length);
}

Session::Outcome Session::Walk(const Statement& statement, SQLRETURN result, Keep keep) {
  Outcome outcome;
  for (bool first = true;; first = false, result = SQLMoreResults(statement.get())) {
    const auto said =
        result == SQL_SUCCESS ? std::vector<Diagnostic>() : ReadDiagnostics(statement, encoding_);
    if (!Note(said)) break;
    // An update of no rows begins with "no data"; later it is the end.
    if (result == SQL_NO_DATA && !first) break;
    if (result != SQL_NO_DATA && !SQL_SUCCEEDED(result) && !ServerSpoke(said)) break;
    if (first && result == SQL_ERROR && WalkBehindError(statement)) break;
    const bool wanted = keep == Keep::kLast || !outcome.rows.IsResult();
    if (!SQL_SUCCEEDED(result) || !wanted) continue;
    Fetched fetched = FetchRows(statement, encoding_);
    if (fetched.refusal) outcome.refusal = fetched.refusal;
    if (fetched.rows.IsResult()) outcome.rows = std::move(fetched.rows);
    if (!Note(fetched.diagnostics)) break;
  }
  return outcome;
}

bool Session::WalkBehindError(const Statement& statement) {
  const auto driver = DriverStatement::Find(link_, statement);
  if (!driver) return false;
  for (;;) {
    const SQLRETURN result = driver->MoreResults();
    const auto said = driver->Diagnostics();
    if (!Note(said) || result == SQL_NO_DATA) return true;
    if (!SQL_SUCCEEDED(result) && !ServerSpoke(said)) return true;
  }
}

Rows Session::Run(std::string_view sql, Keep keep) {
  RequireOpen();
  errors_.clear();
  Outcome outcome;
  {
    Statement statement;
    Prepare(statement);
    outcome = Walk(statement, Send(statement, sql), keep);
  }
  RaiseFirstError();
  if (outcome.refusal) throw AutomationError(*outcome.refusal);
  return std::move(outcome.rows);
}

void Session::RaiseFirstError() {
  auto first =
      std::ranges::find_if(errors_, [](const ConnectionError& e) { return e.number != 0; });
  // A driver may tell of the loss by a message alone, or not at all.
  const bool gone = lost_ || IsDead();
  if (first == errors_.end() && !gone) return;
  if (first == errors_.end()) {
    const std::string text = errors_.empty() ? "no reason given" : errors_.back().description;
    first = errors_.insert(errors_.end(), {kDriverError, std::string(kErrorSource), text, "08S01"});
  }
  if (gone) {
    first->description = Cat("the connection to the database was lost: ", first->description);
    Close();
  }
  throw AutomationError(first->number, first->source, first->description);
}

RecordsetPtr Session::Execute(const SqlText& sql) {
  return MakeRecordset(Run(sql.text, Keep::kFirst));
}

void Session::CallProcedure(const SqlText& name, std::span<ProcedureParameter> parameters) {
  RequireOpen();
  const auto is_output = [](const ProcedureParameter& parameter) { return parameter.output; };
  const auto outputs = static_cast<size_t>(std::ranges::count_if(parameters, is_output));
  const Rows rows = Run(ProcedureBatch(name.text, parameters), Keep::kLast);
  if (outputs == 0 || rows.cells.size() != outputs) return;
  auto value = rows.cells.begin();
  for (ProcedureParameter& parameter : parameters) {
    if (parameter.output) parameter.value = *value++;
  }
}

}  // namespace odbc

ConnectionPtr OpenOdbc(const OdbcOptions& options) {
  auto session = std::make_shared<odbc::Session>(options);
  session->Open();
  return session;
}

void ReopenOdbc(Connection& session) {
  dynamic_cast<odbc::Session&>(session).Open();
}

}  // namespace tavcc
