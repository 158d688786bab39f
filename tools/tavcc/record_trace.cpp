// tavcc record: calls that the automation server traced, as a tape.
#include <fmt/core.h>

#include <utility>

#include "foundation/conversions.h"
#include "host/host_dictionary.h"
#include "language/language.h"
#include "scenario/masking.h"
#include "scenario/recording.h"
#include "scenario/scenario.h"
#include "scenario/values.h"
#include "tavcc/command.h"
#include "tavcc/file.h"
#include "tavcc/output.h"
#include "tavcc/record.h"
#include "tavcc/trace_file.h"

namespace tavcc {
namespace {

// One traced call on its way onto a tape. What the trace lacks is refused by name.
class TracedStep {
 public:
  TracedStep(const std::string& file, Recording& recording)
      : file_(file), trace_(ReadTrace(file)), recording_(recording) {}

  void Add() {
    if (!trace_.end) Refuse(Translated("the process ended before the call did"));
    if (trace_.left_out > 0) {
      Refuse(Say("{} lines were too many for it and are missing", trace_.left_out));
    }
    if (recording_.name.empty()) {
      recording_.name = fmt::format("{} of {}", trace_.call, trace_.started);
    }
    Tape tape;
    for (const TracedLadder& ladder : trace_.ladders) {
      for (const LoggedStatement& statement : ladder.statements)
        tape.push_back(Answered(statement));
      for (const HostAnswer& answer : ladder.host_answers) TakeHostAnswer(answer);
    }
    recording_.steps.push_back(Step());
    recording_.tapes.push_back(std::move(tape));
  }

 private:
  [[noreturn]] void Refuse(const std::string& text) const {
    throw CommandError(Say("{}: is no whole tape: {}", file_, text));
  }

  // The rows that the rule saw are those that it will ask for again.
  LoggedStatement Answered(LoggedStatement statement) const {
    if (statement.error && statement.errors.empty()) {
      const AutomationError& error = *statement.error;
      statement.errors = {{error.number(), error.source(), error.description(), ""}};
    }
    if (statement.seen == nullptr) return statement;
    const SeenRows& seen = *statement.seen;
    if (static_cast<size_t>(seen.count) > seen.rows.size()) {
      Refuse(Say("statement {}: it keeps {} of the {} rows that were seen", statement.number,
                 seen.rows.size(), seen.count));
    }
    auto answer = std::make_shared<AnswerRows>();
    answer->columns = seen.columns;
    answer->rows = seen.rows;
    statement.answer = std::move(answer);
    return statement;
  }

  void TakeHostAnswer(const HostAnswer& answer) {
    HostSettings& host = recording_.host;
    switch (answer.question) {
      case HostQuestion::kSetting:
        recording_.answers.push_back(answer);
        return;
      case HostQuestion::kPublished:
        if (answer.value.IsEmpty()) return;
        if (host.published == nullptr) host.published = std::make_shared<HostDictionary>();
        host.published->SetItem(answer.key, answer.value);
        return;
      case HostQuestion::kRight:
        if (!ToBoolean(answer.value)) host.denied_class_types.insert(ToLong(Value(answer.key)));
        return;
      case HostQuestion::kText:
        if (ToText(answer.value) != answer.key) {
          host.resources[answer.category][answer.key] = ToText(answer.value);
        }
        return;
      case HostQuestion::kUser:
        host.user_id = ToInteger(answer.value);
        return;
    }
  }

  // What the runner supplies, or a trace does not tell, is not told.
  static bool IsTold(const Parameter& parameter) {
    return !IsConnectionString(parameter) && parameter.type != ArgumentType::kConnection &&
           parameter.type != ArgumentType::kRecordset && parameter.type != ArgumentType::kObject;
  }

  Json Step() const {
    const Method* method = nullptr;
    try {
      method = FindMethodByName(trace_.call).method;
    } catch (const std::invalid_argument& error) {
      Refuse(error.what());
    }
    const Json arguments = JsonFromValue(trace_.arguments);
    Json step = Json::object();
    step["call"] = trace_.call;
    for (const Parameter& parameter : method->parameters) {
      const Json* const given = arguments.find(parameter.name);
      if (given != nullptr && IsTold(parameter)) step["args"][parameter.name] = *given;
    }
    const TracedCall::End& end = *trace_.end;
    const Json after = JsonFromValue(end.arguments);
    if (!end.error) step["expect"]["result"] = JsonFromValue(end.result);
    for (const Parameter& parameter : method->parameters) {
      const Json* const left = after.find(parameter.name);
      if (left != nullptr && IsTold(parameter)) step["expect"][parameter.name] = *left;
    }
    if (end.error) step["error"] = ErrorJson(*end.error);
    return step;
  }

  const std::string& file_;
  const TracedCall trace_;
  Recording& recording_;
};

Json Masked(const Json& scenario, const std::vector<std::string>& columns) {
  if (columns.empty()) return scenario;
  Masks masks(columns);
  return WithMasks(masks, scenario, scenario);
}

}  // namespace

Exit RecordCommand(const RecordTraceOptions& options) {
  RequireNewFile(options.file);
  Recording recording;
  for (const std::string& trace : options.traces) TracedStep(trace, recording).Add();
  try {
    WriteRecorded(options.file, Masked(TapeScenario(recording), options.masked_columns));
  } catch (const JsonError& error) {
    throw CommandError(fmt::format("{}: {}", options.traces.front(), error.what()));
  }
  return Exit::kPassed;
}

}  // namespace tavcc
