// tavcc call: calls of one object's methods on a database.
#include <fmt/core.h>

#include <algorithm>

#include "language/language.h"
#include "scenario/runner.h"
#include "scenario/scenario.h"
#include "tavcc/answer.h"
#include "tavcc/answer_text.h"
#include "tavcc/argument_check.h"
#include "tavcc/arguments.h"
#include "tavcc/command.h"
#include "tavcc/database.h"
#include "tavcc/output.h"
#include "tavcc/record.h"
#include "tavcc/trace.h"

namespace tavcc {
namespace {

MethodName FindMethodOrFail(const std::string& dotted) {
  try {
    return FindMethodByName(dotted);
  } catch (const std::invalid_argument& error) {
    throw CommandError(error.what());
  }
}

// What is called, and with what.
struct PlannedCall {
  const Method* method;
  Json arguments;
};

PlannedCall Plan(const MethodName& name, const CallOptions& options) {
  Json given = ReadArguments(*name.method, options);
  RequireArguments(*name.method, given);
  if (!options.unchecked) CheckMeaning(*name.cls, *name.method, given);
  return {name.method, std::move(given)};
}

// The calls behind the first one, of the same object: each begins with its method.
std::vector<PlannedCall> PlanThen(const ClassDescription& cls, const CallOptions& options) {
  std::vector<PlannedCall> calls;
  for (size_t i = 0; i < options.then.size();) {
    std::string dotted = options.then[i];
    if (dotted.find('.') == std::string::npos) dotted = std::string(cls.name) + "." + dotted;
    const MethodName name = FindMethodOrFail(dotted);
    if (name.cls != &cls) {
      throw CommandError(
          Say("--then {}: the calls are those of one object, a {}", options.then[i], cls.name));
    }
    CallOptions one = options;
    one.json_file.clear();
    one.words.clear();
    for (++i; i < options.then.size() && options.then[i].find('=') != std::string::npos; ++i) {
      one.words.push_back(options.then[i]);
    }
    calls.push_back(Plan(name, one));
  }
  return calls;
}

// The database is named by --db or --dsn, and the call has its one session. Takes out what the
// arguments name it.
void DropDatabaseNames(Json& given, const std::string& dsn) {
  for (const char* name : {"sDsn", "strConString"}) {
    const Json* const value = given.find(name);
    if (value == nullptr || *value == Json(dsn)) continue;
    PrintAside(Say("tavcc: note: {} is not used: the call works on {}\n", name, dsn));
    given[name] = dsn;
  }
}

std::vector<Value> ArgumentsOf(Erp& erp, const PlannedCall& call) {
  return MakeArguments({erp.host(), erp.dsn(), erp.connection()}, *call.method, call.arguments);
}

// What the calls are, as they were typed.
std::string SubjectOf(const CallOptions& options) {
  std::string text = options.method;
  for (const std::string& word : options.words) text += " " + word;
  for (const std::string& word : options.then) text += " " + word;
  return text;
}

// One run of the command.
class Calls {
 public:
  Calls(Erp& erp, const CommonOptions& common, const CallOptions& options,
        const ClassDescription& cls, const std::vector<PlannedCall>& planned)
      : erp_(erp),
        common_(common),
        options_(options),
        cls_(cls),
        planned_(planned),
        recorder_(erp, options.record, SubjectOf(options)) {}

  Exit Run();

 private:
  void Make();
  void Finish();
  // What the calls are called.
  std::string What() const {
    return planned_.size() == 1 ? Translated("the call") : Translated("the calls");
  }

  Erp& erp_;
  const CommonOptions& common_;
  const CallOptions& options_;
  const ClassDescription& cls_;
  const std::vector<PlannedCall>& planned_;
  Recorder recorder_;
  Exit verdict_ = Exit::kPassed;
  Json answers_ = Json::array();
};

Exit Calls::Run() {
  // What is no argument is known before the first call.
  for (const PlannedCall& call : planned_) ArgumentsOf(erp_, call);
  const bool writes =
      std::ranges::any_of(planned_, [](const PlannedCall& call) { return call.method->writes; });
  HostTransaction transaction(erp_, !writes);
  try {
    Make();
    Finish();
    recorder_.Write();
  } catch (const CommandError& error) {
    throw CommandError(Say("{}; what {} did was undone", error.what(), What()));
  }
  if (verdict_ != Exit::kFailed && !options_.rollback) transaction.Keep();
  return verdict_;
}

// Until the first call that fails: what it did may be half of what the next one stands on.
void Calls::Make() {
  CalledObject object(erp_, cls_, &recorder_);
  for (const PlannedCall& call : planned_) {
    const Answer answer = object.Call(*call.method, ArgumentsOf(erp_, call),
                                      common_.json ? TraceForJson(common_) : TraceOf(common_));
    verdict_ = std::max(verdict_, answer.verdict);
    if (common_.json) {
      answers_.push_back(AnswerJson(*call.method, answer, common_.trace));
    } else {
      Print(AnswerText(cls_, *call.method, answer));
    }
    if (verdict_ == Exit::kFailed) return;
  }
}

void Calls::Finish() {
  if (common_.json) {
    Print(Show(planned_.size() == 1 ? *answers_.begin() : answers_, 2) + "\n");
  } else if (verdict_ == Exit::kFailed) {
    Print(Say("What {} did was undone.\n", What()));
  } else if (options_.rollback) {
    Print(Say("What {} did was rolled back.\n", What()));
  }
}

}  // namespace

Exit CallCommand(const CommonOptions& common, const CallOptions& options) {
  const MethodName name = FindMethodOrFail(options.method);
  std::vector<PlannedCall> calls{Plan(name, options)};
  for (PlannedCall& call : PlanThen(*name.cls, options)) calls.push_back(std::move(call));
  const auto erp = OpenDatabase(common, options.host);
  for (PlannedCall& call : calls) DropDatabaseNames(call.arguments, erp->dsn());
  return Calls(*erp, common, options, *name.cls, calls).Run();
}

}  // namespace tavcc
