// Traces of calls in production: where somebody asks for them, each call of a class writes a file
// of its own (trace_folder.h), with its arguments, the gates that were asked, the statements that
// it sent, the rows that its rule saw, what the host answered, and its own answer.
// host/trace_lines.h has the form; `tavcc explain --trace` reads it.
//
// Whether somebody asks is looked at when an object is made, which where nobody does costs no call
// of the system. A call without a trace costs a look at one pointer. Nothing that goes wrong in
// tracing reaches a call, and no statement changes by it.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "foundation/plug_in.h"
#include "host/statement_log.h"
#include "host/tracing_host.h"
#include "registry/class_registry.h"

namespace tavcc::automation {

// What one object writes of its calls.
class CallTracer {
 public:
  // Null where nobody asks. `host` must outlive the tracer.
  static std::unique_ptr<CallTracer> IfAsked(Host& host);

  CallTracer(Host& host, std::wstring folder);
  CallTracer(const CallTracer&) = delete;
  CallTracer& operator=(const CallTracer&) = delete;

  // The host that the object is to work on.
  Host& host() { return host_; }

  // As Invoke of the class registry, with a trace of it.
  Value Invoke(const ClassDescription& cls, const Method& method, PlugIn& object,
               std::vector<Value>& arguments);

 private:
  Value Traced(const ClassDescription& cls, const Method& method, PlugIn& object,
               std::vector<Value>& arguments);

  const std::wstring folder_;
  StatementLog log_;
  TracingHost host_;
  bool busy_ = false;
};

}  // namespace tavcc::automation
