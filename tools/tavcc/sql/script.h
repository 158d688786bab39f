// Scripts as sqlcmd reads them: batches that end at GO, commands that begin with a colon, and
// variables. Line by line, so that a person at a terminal is served as a file is.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/script.h"

namespace tavcc {

// Where a line stands.
struct ScriptPlace {
  std::shared_ptr<const std::string> source;  // the file's name; empty text for what was typed
  int line = 0;                               // from 1

  // "setup.sql:7", or "line 7" where there is no file.
  std::string ToText() const;
};

// Lines on their way to the database, each with its place.
struct Batch {
  std::vector<std::string> lines;
  std::vector<ScriptPlace> places;

  bool IsBlank() const;
  std::string Text() const;  // the lines with line feeds between them
};

// $(name): what -v and :setvar set, then the environment.
class ScriptVariables {
 public:
  static bool IsName(std::string_view name);
  void Set(const std::string& name, std::string value);
  void Remove(const std::string& name);
  std::optional<std::string> Find(const std::string& name) const;
  const std::map<std::string, std::string>& own() const { return values_; }

 private:
  std::map<std::string, std::string> values_;  // by the name in lower case
};

class Script {
 public:
  struct Events {
    // A batch is complete. False when no more is to be run.
    std::function<bool(const Batch& batch)> run;
    // Whether to go on after an error, as ":on error" asks for.
    std::function<void(bool ignore)> on_error;
  };

  Script(ScriptVariables variables, Events events)
      : variables_(std::move(variables)), events_(std::move(events)) {}

  // Reads one line, without its end. False when no more is to be read: after :exit, or where an
  // event said so. Errors: CommandError for a colon command or a variable that is wrong, naming the
  // place.
  bool Read(std::string_view line, const ScriptPlace& place);
  // Reads all lines of a text. False as Read.
  bool ReadText(std::string_view text, const std::string& source);
  // Runs what no GO has ended. False where the event says so.
  bool Finish();
  // Forgets what no GO has ended.
  void Reset();

  // The lines that no GO has ended.
  const Batch& pending() const { return pending_; }
  // Whether the next line stands in a quotation or a comment.
  bool IsInside() const { return !lines_.IsOutside(); }

 private:
  bool RunTimes(int times);
  bool Command(std::string_view line, const ScriptPlace& place);
  bool ReadFile(std::string_view rest, const ScriptPlace& place);
  void SetVariable(std::string_view rest, const ScriptPlace& place);
  void SetOnError(std::string_view rest, const ScriptPlace& place);
  std::string Replaced(std::string_view line, const std::vector<size_t>& variables,
                       const ScriptPlace& place) const;

  ScriptVariables variables_;
  const Events events_;
  sql::ScriptLines lines_;
  Batch pending_;
  int depth_ = 0;  // of files that read files
};

}  // namespace tavcc
