// What the reference host's components share.
#include "host/host_state.h"

#include <algorithm>
#include <utility>

#include "foundation/error.h"
#include "foundation/text.h"

namespace tavcc {

bool CaselessLess::operator()(std::string_view a, std::string_view b) const {
  return UpperCase(a) < UpperCase(b);
}

HostState::HostState(ConnectionOpener open, ConnectionReopener reopen, StatementLog* log)
    : open_(std::move(open)), reopen_(std::move(reopen)), log_(log) {}

HostState::Session& HostState::OpenSession(std::string_view sDsn) try {
  if (only_dsn_) sDsn = *only_dsn_;
  auto found = sessions_.find(sDsn);
  if (found == sessions_.end()) found = sessions_.emplace(sDsn, Session()).first;
  Session& session = found->second;
  if (session.raw != nullptr && session.raw->State() == Connection::kStateOpen) return session;
  if (session.raw != nullptr && reopen_) {
    reopen_(*session.raw);
    return session;
  }
  session.raw = open_(sDsn);
  session.handed_out = log_ == nullptr ? session.raw : LogStatements(session.raw, *log_);
  return session;
} catch (const AutomationError& error) {
  if (log_ != nullptr) log_->NoteFailure("connecting", error);
  throw;
}

ConnectionPtr HostState::GetConnection(std::string_view sDsn) {
  return OpenSession(sDsn).handed_out;
}

ConnectionPtr HostState::GetUnloggedConnection(std::string_view sDsn) {
  return OpenSession(sDsn).raw;
}

namespace {

// The text as a literal of the dialect.
std::string Quoted(std::string_view text) {
  std::string literal = "N'";
  for (const char c : text) {
    literal += c;
    if (c == '\'') literal += c;
  }
  return literal += '\'';
}

Value FirstField(const Recordset& rows) {
  return rows.AtEnd() ? Value() : rows.Field(0);
}

}  // namespace

Value HostState::ReadProfile(std::string_view sDsn, std::string_view category,
                             std::string_view key) {
  const std::string sql =
      Cat("select FValue from t_SystemProfile where FCategory=", Quoted(category),
          " and FKey=", Quoted(key));
  try {
    Value value = settings.read_setting ? settings.read_setting(category, key)
                                        : FirstField(*GetUnloggedConnection(sDsn)->Execute(sql));
    if (log_ != nullptr) log_->AddHostAnswer(HostQuestion::kSetting, category, key, value);
    return value;
  } catch (const AutomationError& error) {
    if (log_ != nullptr) log_->NoteFailure(sql, error);
    throw;
  }
}

void HostState::RequireComponent(std::string_view name) const {
  if (!settings.missing_components.contains(name)) return;
  const AutomationError error(RuntimeError::kCannotCreateObject);
  if (log_ != nullptr && name != kResourceLoader) log_->NoteFailure(name, error);
  throw error;
}

void HostState::CountReadyCall(ReadyCall::Member member, int context) {
  if (log_ != nullptr) log_->AddReadyCall(member, context);
}

}  // namespace tavcc
