// A call as its trace tells it: the lines that only the automation server knows to write; the
// others are those of host/trace_lines.h. No line holds a connection string's password.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "automation/border/platform.h"
#include "foundation/dictionary.h"
#include "foundation/vector.h"
#include "host/trace_lines.h"
#include "registry/dictionary_keys.h"

namespace tavcc::automation {

class TraceText {
 public:
  // `arguments` are the call's, and must outlive this; its in/out ones are told again at its end.
  TraceText(const ClassDescription& cls, const Method& method, const std::vector<Value>& arguments);

  // "PublicSysInfo.AuditBill"
  std::string CallName() const;

  std::string BeginLine(const SYSTEMTIME& time) const;
  std::string ResultLine(const Value& result, const std::optional<Failure>& failure,
                         double milliseconds) const;
  std::string ErrorLine(const AutomationError& error, const std::optional<Failure>& failure,
                        double milliseconds) const;

  // The lines of host/trace_lines.h.
  std::string Statement(LoggedStatement statement) const;
  std::string Rows(const LoggedStatement& statement) const;
  std::string Errors(int statement, std::vector<ConnectionError> errors) const;
  std::string Host(HostAnswer answer) const;
  std::string Gate(GateAnswer answer) const;

 private:
  std::string Masked(std::string_view text) const;
  AutomationError Masked(const AutomationError& error) const;
  Value MaskedValue(const Value& value) const;

  std::string Tail(const std::optional<Failure>& failure, double milliseconds) const;
  std::string ArgumentsText(bool in_out_only) const;
  std::string KeyedText(const Value& value, std::span<const DictionaryKey> keys) const;
  std::string KeysText(const Dictionary& dictionary, std::span<const DictionaryKey> keys) const;
  std::string ElementsText(const Vector& vector, std::span<const DictionaryKey> keys) const;

  const ClassDescription& cls_;
  const Method& method_;
  const std::vector<Value>& arguments_;
  std::vector<std::string> connection_strings_;  // that the call was given
};

}  // namespace tavcc::automation
