#include "automation/trace_text.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <utility>

#include "automation/trace_folder.h"
#include "foundation/connection_string.h"
#include "foundation/text.h"

namespace tavcc::automation {

namespace {

// Of a vector that is longer, the first elements are told.
constexpr int kMostElements = 1000;

std::vector<std::string> ConnectionStringsOf(const Method& method,
                                             const std::vector<Value>& arguments) {
  std::vector<std::string> strings;
  for (size_t i = 0; i < std::min(arguments.size(), method.parameters.size()); ++i) {
    if (IsConnectionString(method.parameters[i]) && arguments[i].IsText()) {
      strings.push_back(arguments[i].text());
    }
  }
  return strings;
}

}  // namespace

TraceText::TraceText(const ClassDescription& cls, const Method& method,
                     const std::vector<Value>& arguments)
    : cls_(cls),
      method_(method),
      arguments_(arguments),
      connection_strings_(ConnectionStringsOf(method, arguments)) {}

std::string TraceText::CallName() const {
  return Cat(cls_.name, ".", method_.name);
}

// ---- Lines -------------------------------------------------------------------------------------

std::string TraceText::BeginLine(const SYSTEMTIME& time) const {
  return Cat("{\"call\":", JsonQuoted(CallName()), ",\"started\":", JsonQuoted(TimeText(time)),
             ",\"process\":", static_cast<int32_t>(GetCurrentProcessId()),
             ",\"thread\":", static_cast<int32_t>(GetCurrentThreadId()),
             ",\"arguments\":", ArgumentsText(false), "}");
}

std::string TraceText::ResultLine(const Value& result, const std::optional<Failure>& failure,
                                  double milliseconds) const {
  return Cat("{\"result\":", JsonText(MaskedValue(result)), Tail(failure, milliseconds));
}

std::string TraceText::ErrorLine(const AutomationError& error,
                                 const std::optional<Failure>& failure, double milliseconds) const {
  return Cat("{\"error\":", ErrorJsonText(Masked(error)), Tail(failure, milliseconds));
}

std::string TraceText::Tail(const std::optional<Failure>& failure, double milliseconds) const {
  char time[40];
  std::snprintf(time, sizeof(time), "%.3f", milliseconds);
  return Cat(",\"arguments\":", ArgumentsText(true),
             failure ? Cat(",\"failure\":", ErrorJsonText(Masked(failure->error))) : "",
             ",\"milliseconds\":", std::string_view(time), "}");
}

std::string TraceText::Statement(LoggedStatement statement) const {
  if (statement.error) statement.error = Masked(*statement.error);
  for (auto* parameters : {&statement.parameters, &statement.outputs}) {
    for (ProcedureParameter& parameter : *parameters)
      parameter.value = MaskedValue(parameter.value);
  }
  return StatementLine(statement);
}

std::string TraceText::Rows(const LoggedStatement& statement) const {
  const auto seen = std::make_shared<SeenRows>(*statement.seen);
  for (std::vector<Value>& row : seen->rows) {
    for (Value& field : row) field = MaskedValue(field);
  }
  return RowsLine({.number = statement.number, .seen = seen});
}

std::string TraceText::Errors(int statement, std::vector<ConnectionError> errors) const {
  for (ConnectionError& error : errors) error.description = Masked(error.description);
  return ErrorsLine(statement, errors);
}

std::string TraceText::Host(HostAnswer answer) const {
  answer.value = MaskedValue(answer.value);
  return HostLine(answer);
}

std::string TraceText::Gate(GateAnswer answer) const {
  if (answer.verdict) answer.verdict->message = Masked(answer.verdict->message);
  return GateLine(answer);
}

// ---- Passwords ---------------------------------------------------------------------------------

std::string TraceText::Masked(std::string_view text) const {
  std::string masked = MaskPassword(text);
  for (const std::string& secret : connection_strings_) {
    masked = WithoutPasswords(std::move(masked), secret);
  }
  return masked;
}

AutomationError TraceText::Masked(const AutomationError& error) const {
  return {error.number(), error.source(), Masked(error.description())};
}

Value TraceText::MaskedValue(const Value& value) const {
  return value.IsText() ? Value(Masked(value.text())) : value;
}

// ---- Arguments ---------------------------------------------------------------------------------

std::string TraceText::ArgumentsText(bool in_out_only) const {
  std::string text;
  for (size_t i = 0; i < std::min(arguments_.size(), method_.parameters.size()); ++i) {
    const Parameter& parameter = method_.parameters[i];
    if (arguments_[i].IsMissing() || (in_out_only && !parameter.in_out)) continue;
    CatTo(text, text.empty() ? "" : ",", JsonQuoted(parameter.name), ":",
          KeyedText(arguments_[i], KeysOf(cls_, method_, parameter)));
  }
  return Cat("{", text, "}");
}

std::string TraceText::KeyedText(const Value& value, std::span<const DictionaryKey> keys) const {
  const Object* const object = value.IsObject() ? value.object().get() : nullptr;
  if (const auto* dictionary = dynamic_cast<const Dictionary*>(object)) {
    return KeysText(*dictionary, keys);
  }
  if (const auto* vector = dynamic_cast<const Vector*>(object)) return ElementsText(*vector, keys);
  return JsonText(MaskedValue(value));
}

// A host's dictionary tells nobody its keys: those that the method reads and writes are asked for,
// each whether it is there at all.
std::string TraceText::KeysText(const Dictionary& dictionary,
                                std::span<const DictionaryKey> keys) const {
  std::string text;
  for (const DictionaryKey& key : keys) {
    if (key.name == kAnyKey || !dictionary.Lookup(key.name)) continue;
    CatTo(text, text.empty() ? "" : ",", JsonQuoted(key.name), ":",
          KeyedText(dictionary.Item(key.name), key.keys));
  }
  return Cat("{", text, "}");
}

std::string TraceText::ElementsText(const Vector& vector,
                                    std::span<const DictionaryKey> keys) const {
  const int first = vector.LBound();
  const int last = vector.UBound();
  const int told = std::min(last, first + kMostElements - 1);
  std::string text;
  for (int i = first; i <= told; ++i) {
    CatTo(text, text.empty() ? "" : ",", KeyedText(vector.Item(i), keys));
  }
  if (told < last) CatTo(text, ",", JsonQuoted(Cat("and ", int32_t{last - told}, " more")));
  return Cat("[", text, "]");
}

}  // namespace tavcc::automation
