#include "tavcc/sql/shell.h"

#include <fmt/core.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "embedded/syntax/keywords.h"
#include "embedded/syntax/scanner.h"
#include "foundation/error.h"
#include "foundation/text.h"
#include "language/language.h"
#include "scenario/json.h"
#include "scenario/scenario.h"
#include "tavcc/output.h"
#include "tavcc/platform/interrupts.h"
#include "tavcc/platform/line_editor.h"
#include "tavcc/sql/name_completion.h"
#include "tavcc/sql/script_text.h"
#include "tavcc/table.h"

namespace tavcc {
namespace {

class Shell {
 public:
  Shell(BatchRunner& runner, ScriptVariables variables)
      : runner_(runner),
        variables_(std::move(variables)),
        script_(variables_,
                {[this](const Batch& batch) { return Run(batch), !IsLost(); }, [](bool) {}}),
        names_(runner.session(), CommandNames()),
        editor_(HistoryFile(), [this](std::string_view before) {
          return names_.Complete(script_.pending().Text(), before);
        }) {}

  Exit Loop();

 private:
  struct Command {
    const char* name;
    const char* argument;
    const char* what;
    // False to leave the shell.
    bool (Shell::*run)(const std::string& argument);
  };
  static const std::vector<Command>& Commands();
  static std::vector<std::string> CommandNames();

  bool IsLost() const { return runner_.session().State() != Connection::kStateOpen; }
  BatchRunner::Outcome Run(const Batch& batch);
  bool ReadLine(const std::string& line);
  bool RunCommand(const std::string& line);

  bool Help(const std::string&);
  bool Mode(const std::string& mode);
  bool Quit(const std::string&) { return false; }
  bool ReadScriptFile(const std::string& file);
  bool Schema(const std::string& name);
  bool Tables(const std::string& part);
  bool Timer(const std::string& on);

  BatchRunner& runner_;
  const ScriptVariables variables_;
  Script script_;
  NameCompletion names_;
  LineEditor editor_;
};

const std::vector<Shell::Command>& Shell::Commands() {
  static const std::vector<Command> commands = {
      {".help", "", Translatable("This list"), &Shell::Help},
      {".mode", "[MODE]", Translatable("How rows are shown: table, box, csv, line or json"),
       &Shell::Mode},
      {".quit", "", Translatable("Leave, as Ctrl-D does"), &Shell::Quit},
      {".read", "FILE", Translatable("Run a script"), &Shell::ReadScriptFile},
      {".schema", "NAME", Translatable("The statement that makes a table, view or procedure"),
       &Shell::Schema},
      {".tables", "[PART]", Translatable("The tables and views, or those with this in their name"),
       &Shell::Tables},
      {".timer", "on|off", Translatable("Whether to show how long each batch takes"),
       &Shell::Timer},
  };
  return commands;
}

std::vector<std::string> Shell::CommandNames() {
  std::vector<std::string> names;
  for (const Command& command : Commands()) names.emplace_back(command.name);
  return names;
}

Exit Shell::Loop() {
  Print(Say("A batch ends at a line that ends with \";\", or at GO. .help lists the commands.\n"));
  for (;;) {
    const std::string prompt = fmt::format("{}> ", script_.pending().lines.size() + 1);
    std::string line;
    const auto read = editor_.ReadLine(prompt, line);
    if (read == LineEditor::Read::kEnd) {
      Print("\n");
      return Exit::kPassed;
    }
    if (read == LineEditor::Read::kInterrupted) {
      Print("^C\n");
      script_.Reset();
      continue;
    }
    if (line.find_first_not_of(" \t") != std::string::npos) editor_.Remember(line);
    try {
      if (!ReadLine(line)) return IsLost() ? Exit::kFailed : Exit::kPassed;
    } catch (const CommandError& error) {
      PrintAside(fmt::format("{}\n", error.what()));
      script_.Reset();
    } catch (const JsonError& error) {
      PrintAside(fmt::format("{}\n", error.what()));
    } catch (const AutomationError& error) {
      PrintAside(fmt::format("{}\n", error.description()));
    }
  }
}

// False to leave the shell.
bool Shell::ReadLine(const std::string& line) {
  const Batch& pending = script_.pending();
  if (pending.lines.empty() && line.starts_with('.')) return RunCommand(line);
  if (pending.lines.empty() && line.find_first_not_of(" \t") == std::string::npos) return true;
  if (!script_.Read(line, {nullptr, static_cast<int>(pending.lines.size()) + 1})) return false;
  return script_.IsInside() || !IsWholeBatch(pending.Text()) || script_.Finish();
}

BatchRunner::Outcome Shell::Run(const Batch& batch) {
  const auto outcome = runner_.Run(batch);
  runner_.Finish();
  names_.Forget();
  return outcome;
}

bool Shell::RunCommand(const std::string& line) {
  const size_t blank = std::min(line.find_first_of(" \t"), line.size());
  const std::string name = line.substr(0, blank);
  const std::string argument(Trim(line.substr(blank)));
  const auto found = std::ranges::find_if(
      Commands(), [&](const Command& command) { return EqualsIgnoringCase(command.name, name); });
  if (found == Commands().end()) {
    throw CommandError(Say("there is no command \"{}\"{}", name, DidYouMean(name, CommandNames())));
  }
  return (this->*found->run)(argument);
}

bool Shell::Help(const std::string&) {
  std::string text;
  for (const Command& command : Commands()) {
    text += fmt::format("{:<9}{:<8}{}\n", command.name, command.argument, Translated(command.what));
  }
  Print(text + Say("GO [N]           Run the batch, or run it N times\n"
                   ":r FILE          Read lines from a file, as if they were typed\n"
                   ":setvar N VALUE  Set $(N); without a value it is removed\n"
                   ":reset           Forget the batch, as Ctrl-C does\n"
                   "Tab completes words, tables and columns; Ctrl-C ends a batch that runs.\n"));
  return true;
}

bool Shell::Mode(const std::string& mode) {
  const auto& names = OutputModeNames();
  if (mode.empty()) {
    return Print(names[static_cast<size_t>(runner_.options().mode)] + "\n"), true;
  }
  const auto found = std::ranges::find(names, mode);
  if (found == names.end()) {
    throw CommandError(Say("there is no mode \"{}\"{}", mode, DidYouMean(mode, names)));
  }
  runner_.options().mode = static_cast<OutputMode>(found - names.begin());
  return true;
}

bool Shell::ReadScriptFile(const std::string& file) {
  if (file.empty()) throw CommandError(Say(".read needs the name of a file"));
  Script script(variables_, {[this](const Batch& batch) {
                               return Run(batch) == BatchRunner::Outcome::kDone && !IsLost();
                             },
                             [](bool) {}});
  if (script.ReadText(ReadScript(file), file)) script.Finish();
  return !IsLost();
}

bool Shell::Schema(const std::string& name) {
  if (name.empty()) throw CommandError(Say(".schema needs the name of a table, view or procedure"));
  const std::string definition = runner_.session().Definition(name);
  if (definition.empty()) {
    std::vector<std::string> names;
    for (const SchemaObject& object : runner_.session().Objects()) names.push_back(object.name);
    throw CommandError(Say("there is no \"{}\"{}", name, DidYouMean(name, names)));
  }
  return Print(definition + "\n"), true;
}

bool Shell::Tables(const std::string& part) {
  Table table({Translated("name"), Translated("kind")});
  bool any = false;
  for (const SchemaObject& object : runner_.session().Objects()) {
    if (object.kind == SchemaObject::Kind::kProcedure) continue;
    if (LowerCase(object.name).find(LowerCase(part)) == std::string::npos) continue;
    table.Add({object.name, object.kind == SchemaObject::Kind::kView ? Translated("view")
                                                                     : Translated("table")});
    any = true;
  }
  return Print(any ? table.ToText() : Say("There is none.\n")), true;
}

bool Shell::Timer(const std::string& on) {
  if (on != "on" && on != "off") throw CommandError(Say("it is .timer on, or .timer off"));
  runner_.options().timer = on == "on";
  return true;
}

using sql::Keyword;

bool IsOneOf(Keyword keyword, std::initializer_list<Keyword> keywords) {
  return std::ranges::find(keywords, keyword) != keywords.end();
}

}  // namespace

bool IsWholeBatch(std::string_view text) {
  sql::Scanner scanner(text);
  int depth = 0;
  bool module = false;                             // the text of a procedure or its like
  Keyword first = Keyword::kNone, before = first;  // of the statement; the word before this one
  Keyword ended = first;                           // the first word of the statement that ended
  bool at_start = true, at_end = false;
  for (sql::RawToken token = scanner.Next(); token.kind != sql::TokenKind::kEnd;
       token = scanner.Next()) {
    const std::string_view word = text.substr(token.begin, token.end - token.begin);
    at_end = word == ";";
    if (at_end) {
      ended = std::exchange(first, Keyword::kNone);
      at_start = true;
      continue;
    }
    const bool is_word = token.kind == sql::TokenKind::kWord;
    const Keyword keyword = is_word ? sql::FindKeyword(word) : Keyword::kNone;
    if (std::exchange(at_start, false)) first = keyword;
    if (IsOneOf(keyword, {Keyword::kBEGIN, Keyword::kCASE})) ++depth;
    if (IsOneOf(keyword, {Keyword::kTRAN, Keyword::kTRANSACTION}) && before == Keyword::kBEGIN) {
      --depth;
    }
    if (keyword == Keyword::kEND) --depth;
    const bool makes = IsOneOf(before, {Keyword::kCREATE, Keyword::kALTER});
    module =
        module || (makes && IsOneOf(keyword, {Keyword::kPROC, Keyword::kPROCEDURE, Keyword::kVIEW,
                                              Keyword::kFUNCTION, Keyword::kTRIGGER}));
    before = keyword;
  }
  return at_end && depth <= 0 && !module && ended != Keyword::kDECLARE;
}

Exit RunShell(BatchRunner& runner, ScriptVariables variables) {
  OutliveInterrupts();
  return Shell(runner, std::move(variables)).Loop();
}

}  // namespace tavcc
