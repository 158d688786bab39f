// tavcc sql: runs a batch, a script, or a shell.

#include <algorithm>
#include <iostream>
#include <iterator>
#include <utility>

#include "foundation/utf8.h"
#include "language/language.h"
#include "tavcc/command.h"
#include "tavcc/database.h"
#include "tavcc/output.h"
#include "tavcc/platform/streams.h"
#include "tavcc/sql/batch_runner.h"
#include "tavcc/sql/script.h"
#include "tavcc/sql/script_text.h"
#include "tavcc/sql/shell.h"
#include "tavcc/trace.h"

namespace tavcc {
namespace {

constexpr std::string_view kStandardInput = "-";

ScriptVariables VariablesOf(const SqlOptions& options) {
  ScriptVariables variables;
  for (const std::string& word : options.variables) {
    const size_t equals = std::min(word.find('='), word.size());
    const std::string name = word.substr(0, equals);
    if (equals == word.size() || !ScriptVariables::IsName(name)) {
      throw CommandError(Say("-v {}: must have the form NAME=VALUE", word));
    }
    variables.Set(name, word.substr(equals + 1));
  }
  return variables;
}

RunnerOptions RunnerOptionsOf(const CommonOptions& common, const SqlOptions& options) {
  const auto& names = OutputModeNames();
  const std::string mode = common.json ? "json" : options.mode;
  const auto at = std::ranges::find(names, mode) - names.begin();
  return {.mode = static_cast<OutputMode>(at),
          .timer = options.timer,
          .pages = !options.no_pager && IsTerminal(Stream::kOutput),
          .trace = TraceWithoutRows(common)};
}

// Runs scripts, whichever way they come in, as far as errors let it.
class ScriptRun {
 public:
  ScriptRun(BatchRunner& runner, const SqlOptions& options)
      : runner_(runner),
        ignore_(options.on_error == "ignore"),
        script_(VariablesOf(options), {[this](const Batch& batch) { return RunBatch(batch); },
                                       [this](bool ignore) { ignore_ = ignore; }}) {}

  // False when no more is to be run.
  bool Run(const std::string& text, const std::string& source) {
    return script_.ReadText(text, source) && script_.Finish();
  }
  bool failed() const { return failed_; }

 private:
  bool RunBatch(const Batch& batch) {
    const auto outcome = runner_.Run(batch);
    failed_ = failed_ || outcome != BatchRunner::Outcome::kDone;
    if (runner_.session().State() != Connection::kStateOpen) return false;
    return outcome == BatchRunner::Outcome::kDone ||
           (outcome == BatchRunner::Outcome::kFailed && ignore_);
  }

  BatchRunner& runner_;
  bool ignore_;
  bool failed_ = false;
  Script script_;
};

std::string ReadStandardInput() {
  return DecodeScript(std::string(std::istreambuf_iterator<char>(std::cin), {}),
                      Translated("standard input"));
}

void RunAll(ScriptRun& run, const SqlOptions& options) {
  for (const std::string& file : options.files) {
    const bool input = file == kStandardInput;
    if (!run.Run(input ? ReadStandardInput() : ReadScript(file), input ? "" : file)) return;
  }
  if (options.batch.empty() && !options.files.empty()) return;
  if (options.batch.empty() || options.batch == kStandardInput) {
    run.Run(ReadStandardInput(), "");
  } else {
    run.Run(options.batch, "");
  }
}

}  // namespace

Exit SqlCommand(const CommonOptions& common, const SqlOptions& options) {
  if (!IsUtf8(options.batch)) throw CommandError(Say("the batch is not UTF-8"));
  BatchRunner runner(OpenSession(common), RunnerOptionsOf(common, options));
  const bool asked = !options.batch.empty() || !options.files.empty();
  if (!asked && IsTerminal(Stream::kInput)) {
    return RunShell(runner, VariablesOf(options));
  }
  ScriptRun run(runner, options);
  try {
    RunAll(run, options);
  } catch (const CommandError&) {
    runner.Finish();
    throw;
  }
  runner.Finish();
  return run.failed() ? Exit::kFailed : Exit::kPassed;
}

}  // namespace tavcc
