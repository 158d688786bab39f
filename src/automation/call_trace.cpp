#include "automation/call_trace.h"

#include <chrono>
#include <utility>

#include "automation/trace_folder.h"
#include "automation/trace_text.h"
#include "foundation/text.h"
#include "foundation/trap.h"
#include "host/logged_call.h"

namespace tavcc::automation {

namespace {

constexpr int kMostRows = 100;  // of a statement

// Runs what must not disturb the call.
template <class Work>
void Quietly(const Work& work) noexcept {
  try {
    work();
  } catch (...) {
  }
}

// Writes what the log tells into the file; both must outlive the result.
StatementObserver WritingTo(TraceFile& file, const TraceText& text) {
  const auto write = [&file](const auto& line) { Quietly([&] { file.Write(line()); }); };
  return {.sent =
              [=, &text](const LoggedStatement& statement) {
                write([&] { return text.Statement(statement); });
              },
          .rows_seen =
              [=, &text](const LoggedStatement& statement) {
                write([&] { return text.Rows(statement); });
              },
          .errors_seen =
              [=, &text](int statement, const std::vector<ConnectionError>& errors) {
                write([&] { return text.Errors(statement, errors); });
              },
          .host_answered =
              [=, &text](const HostAnswer& answer) { write([&] { return text.Host(answer); }); },
          .ladder_begun =
              [=, number = 0]() mutable {
                write([&] { return Cat("{\"ladder\":", int32_t{++number}, "}"); });
              },
          .gate_answered =
              [=, &text](const GateAnswer& answer) { write([&] { return text.Gate(answer); }); },
          .rows = kMostRows};
}

// The host may hand a connection over.
void WatchConnections(std::vector<Value>& arguments, StatementLog& log) {
  for (Value& argument : arguments) {
    if (!argument.IsObject()) continue;
    const auto connection = std::dynamic_pointer_cast<Connection>(argument.object());
    if (connection != nullptr) argument = LogStatements(connection, log);
  }
}

double MillisecondsSince(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
      .count();
}

}  // namespace

std::unique_ptr<CallTracer> CallTracer::IfAsked(Host& host) {
  std::wstring folder = AskedTraceFolder();
  if (folder.empty()) return nullptr;
  return std::make_unique<CallTracer>(host, std::move(folder));
}

CallTracer::CallTracer(Host& host, std::wstring folder)
    : folder_(std::move(folder)), host_(host, log_) {
  log_.KeepNothing();
}

Value CallTracer::Invoke(const ClassDescription& cls, const Method& method, PlugIn& object,
                         std::vector<Value>& arguments) {
  if (method.is_property) return tavcc::Invoke(cls, method, object, arguments);
  // A host may call the object while it answers one of its calls: that is a part of the outer one.
  if (std::exchange(busy_, true)) {
    WatchConnections(arguments, log_);
    return tavcc::Invoke(cls, method, object, arguments);
  }
  struct Ended {
    bool& busy;
    ~Ended() { busy = false; }
  } ended{busy_};
  return Traced(cls, method, object, arguments);
}

Value CallTracer::Traced(const ClassDescription& cls, const Method& method, PlugIn& object,
                         std::vector<Value>& arguments) {
  SYSTEMTIME time;
  GetLocalTime(&time);
  const TraceText text(cls, method, arguments);
  TraceFile file(folder_, text.CallName(), time);
  if (!file.IsOpen()) return tavcc::Invoke(cls, method, object, arguments);

  Quietly([&] { file.Write(text.BeginLine(time)); });
  WatchConnections(arguments, log_);
  LoggedCall call(log_, WritingTo(file, text));
  const auto start = std::chrono::steady_clock::now();
  try {
    Value result = tavcc::Invoke(cls, method, object, arguments);
    call.End();
    Quietly([&] { file.End(text.ResultLine(result, call.failure(), MillisecondsSince(start))); });
    return result;
  } catch (...) {
    const AutomationError error = internal::CurrentError();
    call.End();
    Quietly([&] { file.End(text.ErrorLine(error, call.failure(), MillisecondsSince(start))); });
    throw;
  }
}

}  // namespace tavcc::automation
