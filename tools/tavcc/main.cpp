// tavcc: the rules from a shell. Parses the command line, runs one command, and turns whatever goes
// wrong into one line on standard error and exit status 2.
#include <fmt/core.h>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "foundation/error.h"
#include "tavcc/command.h"

namespace tavcc {
namespace {

struct Entry {
  const char* name;
  const char* summary;
  std::unique_ptr<Command> (*make)();
};

constexpr Entry kCommands[] = {
    {"demo", "Audit a sample company's bills and show what happens", MakeDemo},
    {"init", "Make a database with the ERP schema", MakeInit},
    {"call", "Call one method of one class", MakeCall},
    {"run", "Run scenario files", MakeRun},
    {"sql", "Run a batch and print its rows", MakeSql},
    {"check", "Compare the stock on hand with the audited bills", MakeCheck},
    {"classes", "Print the method table", MakeClasses},
};

// `--json FILE` behind the method's name gives a call its arguments; `--json` alone asks for JSON
// output. An option cannot be both, so the first form is told apart here.
std::vector<std::string> SplitJson(int argc, const char* const* argv) {
  std::vector<std::string> arguments;
  bool method_seen = false;
  const bool is_call = argc > 1 && std::string(argv[1]) == "call";
  for (int i = 1; i < argc; ++i) {
    arguments.emplace_back(argv[i]);
    method_seen = method_seen || (is_call && i > 1 && arguments.back().front() != '-');
    if (!method_seen || arguments.back() != "--json" || i + 1 == argc) continue;
    const std::string next = argv[i + 1];
    const bool option = next.size() > 1 && next.front() == '-';
    if (option || next.find('=') != std::string::npos) continue;
    arguments.emplace_back("--args");
  }
  return arguments;
}

int Fail(const std::string& text) {
  std::string line = text.substr(0, text.find_last_not_of("\r\n") + 1);
  std::replace(line.begin(), line.end(), '\r', ' ');
  std::replace(line.begin(), line.end(), '\n', ' ');
  fmt::print(stderr, "tavcc: {}\n", line);
  return static_cast<int>(Exit::kFailed);
}

// A month; no one waits longer on purpose.
constexpr int kMostSeconds = 31 * 24 * 60 * 60;

std::string DescribeError(const AutomationError& error) {
  return fmt::format("error {}: {}", error.number(), error.description());
}

void AddSeconds(CLI::App& app, const char* name, int& seconds, const char* what) {
  app.add_option(name, seconds, std::string(what) + "; 0 waits for ever")
      ->type_name("SECONDS")
      ->check(CLI::Range(0, kMostSeconds))
      ->capture_default_str();
}

int Run(int argc, const char* const* argv) {
  CLI::App app("Business rules of an ERP's inventory module, on an embedded database.", "tavcc");
  app.require_subcommand(1);
  CommonOptions options;
  std::vector<std::pair<CLI::App*, std::unique_ptr<Command>>> commands;
  for (const Entry& entry : kCommands) {
    CLI::App* sub = app.add_subcommand(entry.name, entry.summary);
    sub->add_option("--db", options.db, "Database file")->type_name("FILE");
    sub->add_option("--dsn", options.dsn, "ODBC connection string of a database on a server")
        ->type_name("STRING");
    sub->add_option("--dsn-file", options.dsn_file,
                    "File that holds the connection string; where none is given, the environment's "
                    "TAVCC_DSN counts")
        ->type_name("FILE");
    AddSeconds(*sub, "--login-timeout", options.login_seconds,
               "How long connecting to a server may take");
    AddSeconds(*sub, "--query-timeout", options.query_seconds,
               "How long a batch may take on a server");
    sub->add_flag("--json", options.json, "Print JSON");
    sub->add_flag("--trace", options.trace, "Show each statement, its rows and its time");
    commands.emplace_back(sub, entry.make());
    commands.back().second->Describe(*sub);
  }
  try {
    std::vector<std::string> arguments = SplitJson(argc, argv);
    std::reverse(arguments.begin(), arguments.end());  // the parser takes them from the end
    app.parse(std::move(arguments));
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return app.exit(error);  // --help
    return Fail(std::string(error.what()) + " (see tavcc --help)");
  }
  for (const auto& [sub, command] : commands) {
    if (sub->parsed()) return static_cast<int>(command->Run(options));
  }
  return static_cast<int>(Exit::kFailed);
}

int Main(int argc, const char* const* argv) {
  try {
    return Run(argc, argv);
  } catch (const AutomationError& error) {
    return Fail(DescribeError(error));
  } catch (const std::exception& error) {
    return Fail(error.what());
  }
}

}  // namespace
}  // namespace tavcc

int main(int argc, char** argv) {
  return tavcc::Main(argc, argv);
}
