// The commands of tavcc: what they share and how main finds them.
#pragma once

#include <CLI/CLI.hpp>
#include <memory>
#include <stdexcept>
#include <string>

#include "odbc/odbc.h"

namespace tavcc {

// Exit statuses.
enum class Exit { kPassed = 0, kRefused = 1, kFailed = 2 };

// What any command may be given.
struct CommonOptions {
  std::string db;        // a database file; empty when none was given
  std::string dsn;       // an ODBC connection string; likewise
  std::string dsn_file;  // a file that holds one; likewise
  // How long a server is waited for; 0 waits for ever.
  int login_seconds = OdbcOptions().login_seconds;
  int query_seconds = OdbcOptions().query_seconds;
  bool json = false;   // machine-readable output
  bool trace = false;  // show the statements
};

// Anything that ends a command with exit status 2; what() is the one line for standard error.
class CommandError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// A command describes its arguments to the parser and then runs. Errors of Run: CommandError,
// AutomationError, JsonError, ScenarioError; main shows each as one line.
class Command {
 public:
  virtual ~Command() = default;
  virtual void Describe(CLI::App& app) = 0;
  virtual Exit Run(const CommonOptions& options) = 0;
};

std::unique_ptr<Command> MakeDemo();
std::unique_ptr<Command> MakeInit();
std::unique_ptr<Command> MakeCall();
std::unique_ptr<Command> MakeRun();
std::unique_ptr<Command> MakeSql();
std::unique_ptr<Command> MakeClasses();
std::unique_ptr<Command> MakeCheck();

}  // namespace tavcc
