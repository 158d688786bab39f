#include "odbc/session.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "foundation/connection_string.h"
#include "foundation/error.h"
#include "foundation/text.h"
#include "odbc/fetch.h"
#include "odbc/procedure_batch.h"
#include "odbc/schema.h"
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

bool IsError(const ConnectionError& error) {
  return error.number != 0;
}

bool HasColumns(const StatementCalls& calls, SQLRETURN result) {
  SQLSMALLINT columns = 0;
  return result != SQL_NO_DATA && SQL_SUCCEEDED(calls.column_count(calls.handle, &columns)) &&
         columns > 0;
}

// `fetched`: the rows that a query returned, which not every driver counts.
void TellCount(const StatementCalls& calls, std::optional<int64_t> fetched, BatchReader& reader) {
  SQLLEN rows = -1;
  const bool counted = SQL_SUCCEEDED(calls.row_count(calls.handle, &rows)) && rows >= 0;
  if (counted) reader.RowCount(fetched.value_or(rows));
}

BatchMessage MessageOf(const AutomationError& refusal) {
  return {.is_error = true, .number = refusal.number(), .text = refusal.description()};
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

// Lets others cancel a statement while it lives.
class Session::Running {
 public:
  Running(Session& session, const StatementCalls& calls) : session_(session) { Set(&calls); }
  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;
  ~Running() { Set(nullptr); }

 private:
  void Set(const StatementCalls* calls) {
    const std::lock_guard lock(session_.running_mutex_);
    session_.running_ = calls;
  }
  Session& session_;
};

void Session::Interrupt() {
  const std::lock_guard lock(running_mutex_);
  if (running_ == nullptr) return;
  interrupted_ = true;
  running_->cancel(running_->handle);
}

std::optional<AutomationError> Session::Walk(std::string_view sql, const Listener& listener) {
  Statement statement;
  Prepare(statement);
  const StatementCalls manager = ManagerCalls(statement);
  const Running running(*this, manager);
  StatementCalls calls = manager;
  std::optional<AutomationError> refusal;
  bool more = true;
  const auto hear = [&] { more = Hear(calls, statement, listener).more && more; };
  SQLRETURN result = Send(statement, sql);
  for (bool first = true;; first = false, result = calls.more_results(calls.handle)) {
    const Said said = result == SQL_SUCCESS ? Said() : Hear(calls, statement, listener);
    // An update of no rows begins with "no data"; later it is the end.
    if (!said.more || (result == SQL_NO_DATA && !first)) break;
    if (result != SQL_NO_DATA && !SQL_SUCCEEDED(result)) {
      if (!said.by_server) break;
      if (first) calls = DriverCalls(link_, statement).value_or(manager);
      continue;
    }
    std::optional<int64_t> rows;
    if (HasColumns(calls, result) && listener.wants_rows()) {
      const Fetched fetched = FetchRows(calls, encoding_, listener.reader, interrupted_, hear);
      rows = fetched.rows;
      if (fetched.refusal) refusal = fetched.refusal;
      if (fetched.refusal) listener.reader.Message(MessageOf(*fetched.refusal));
    }
    if (listener.wants_messages) TellCount(calls, rows, listener.reader);
    if (!more || interrupted_) break;
  }
  return refusal;
}

Session::Said Session::Hear(const StatementCalls& calls, const Statement& statement,
                            const Listener& listener) {
  const std::vector<Diagnostic> diagnostics = ReadDiagnostics(calls, encoding_);
  if (listener.wants_messages && !diagnostics.empty()) {
    const StatementCalls driver = DriverCalls(link_, statement).value_or(calls);
    SQLSMALLINT record = 0;
    for (const Diagnostic& diagnostic : diagnostics) {
      Tell(diagnostic, ReadDetails(driver, ++record), listener.reader);
    }
  }
  return {Note(diagnostics), ServerSpoke(diagnostics)};
}

// Of the loss of the connection the session tells when it is sure, of an interruption nobody.
void Session::Tell(const Diagnostic& diagnostic, const ServerDetails& details,
                   BatchReader& reader) const {
  if (diagnostic.IsLoss() || (interrupted_ && diagnostic.IsCancel())) return;
  reader.Message({!diagnostic.IsMessage(), diagnostic.number, details.severity, details.state,
                  details.line, details.procedure, WithoutSecrets(diagnostic.text)});
}

Rows Session::Run(std::string_view sql, Keep keep) {
  RequireOpen();
  errors_.clear();
  KeptRows kept;
  const auto wants_rows = [&] {
    const bool failed = std::ranges::any_of(errors_, IsError);
    return !failed && (keep == Keep::kLast || !kept.rows().IsResult());
  };
  const auto refusal = Walk(sql, {kept, wants_rows});
  if (const ConnectionError* error = FirstFailure()) {
    throw AutomationError(error->number, error->source, error->description);
  }
  if (refusal) throw AutomationError(*refusal);
  return std::move(kept.rows());
}

bool Session::RunBatch(std::string_view batch, BatchReader& reader) {
  RequireOpen();
  errors_.clear();
  interrupted_ = false;
  try {
    Walk(batch, {reader, [] { return true; }, true});
  } catch (...) {
    Close();
    throw;
  }
  const ConnectionError* error = FirstFailure();
  if (error != nullptr && !open_) {
    reader.Message({.is_error = true, .text = error->description});
  }
  return !interrupted_;
}

const ConnectionError* Session::FirstFailure() {
  auto first = std::ranges::find_if(errors_, IsError);
  // A driver may tell of the loss by a message alone, or not at all.
  const bool gone = lost_ || IsDead();
  if (first == errors_.end() && !gone) return nullptr;
  if (first == errors_.end()) {
    const std::string text = errors_.empty() ? "no reason given" : errors_.back().description;
    first = errors_.insert(errors_.end(), {kDriverError, std::string(kErrorSource), text, "08S01"});
  }
  if (gone) {
    first->description = Cat("the connection to the database was lost: ", first->description);
    Close();
  }
  return &*first;
}

RecordsetPtr Session::Execute(const SqlText& sql) {
  return MakeRecordset(Run(sql.text, Keep::kFirst));
}

std::vector<SchemaObject> Session::Objects() {
  RequireOpen();
  Statement statement;
  Prepare(statement);
  const auto tables = ReadTables(statement, encoding_);
  if (!tables) {
    throw AutomationError(kDriverError, std::string(kErrorSource),
                          "the driver does not tell which tables there are");
  }
  return ObjectsOf(*tables);
}

std::vector<std::string> Session::Columns(std::string_view name) {
  RequireOpen();
  Statement statement;
  Prepare(statement);
  const auto columns = ReadColumns(statement, encoding_, name);
  return columns ? NamesOf(*columns) : std::vector<std::string>();
}

std::string Session::Definition(std::string_view name) {
  RequireOpen();
  Statement statement;
  Prepare(statement);
  const auto columns = ReadColumns(statement, encoding_, name);
  return columns ? DefinitionOf(name, *columns) : "";
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

BatchSessionPtr OpenOdbc(const OdbcOptions& options) {
  auto session = std::make_shared<odbc::Session>(options);
  session->Open();
  return session;
}

void ReopenOdbc(Connection& session) {
  dynamic_cast<odbc::Session&>(session).Open();
}

}  // namespace tavcc
