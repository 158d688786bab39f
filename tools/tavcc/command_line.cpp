// The one source that knows the parser of options: its headers are the dearest of all to compile.
#include "tavcc/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <initializer_list>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "language/language.h"
#include "registry/class_registry.h"
#include "scenario/scenario.h"
#include "tavcc/option_table.h"
#include "tavcc/output.h"
#include "tavcc/platform/process.h"
#include "tavcc/sql/row_format.h"

namespace tavcc {
namespace {

// Where one of them has no effect beside the other, they are not taken together.
void Exclude(CLI::App& app, const std::string& name,
             std::initializer_list<const char*> without_effect) {
  CLI::Option* const option = app.get_option(name);
  for (const char* const other : without_effect) option->excludes(app.get_option(other));
}

// The host that a command makes its calls on.
void DescribeHost(CLI::App& app, HostOptions& host) {
  app.add_option("--user", host.user, "The current user's id")->capture_default_str();
  app.add_option("--deny", host.denied,
                 "The user has no right on bills of this class type; may be given again")
      ->type_name("CLASSTYPE")
      ->allow_extra_args(false);
  app.add_option("--publish", host.published,
                 "What the host publishes for its process, e.g. IndustryType=1; may be given again")
      ->type_name("NAME=VALUE")
      ->allow_extra_args(false);
}

// A page of what the command does.
void DescribeHtml(CLI::App& app, std::string& file) {
  app.add_option("--html", file, "Also write a page to look at: one file, for any browser")
      ->type_name("FILE")
      ->check([](const std::string& name) {
        return name.empty() ? Translated("the name of the file to write is empty") : "";
      });
}

void DescribeDemo(CLI::App& app, CommandLine& line) {
  DescribeHtml(app, line.demo.html_file);
}

void DescribeInit(CLI::App& app, CommandLine& line) {
  app.add_flag("--sample", line.init.sample, "With the sample company and its bills");
}

void DescribeMask(CLI::App& app, std::vector<std::string>& columns) {
  app.add_option("--mask", columns,
                 "Columns of texts whose values are replaced in what is recorded, everywhere")
      ->type_name("COLUMN,…")
      ->delimiter(',');
}

void DescribeRecord(CLI::App& app, RecordOptions& record) {
  app.add_option("--record", record.tape_file,
                 "Write what is called as a tape: a scenario with every answer in it, which runs "
                 "without a database")
      ->type_name("FILE");
  app.add_option("--record-state", record.state_file,
                 "Write it as a scenario with the rows that it touches as its start, which runs on "
                 "the embedded database and can be changed")
      ->type_name("FILE");
  DescribeMask(app, record.masked_columns);
}

void DescribeCall(CLI::App& app, CommandLine& line) {
  app.add_option("CLASS.METHOD", line.call.method, "What is called, e.g. cls_CX.AuditBill")
      ->required();
  app.add_option("NAME=VALUE", line.call.words,
                 "Arguments; in/out ones start empty where not given");
  app.add_option("--args", line.call.json_file,
                 "Arguments from a JSON file (\"-\": standard input); \"--json FILE\" behind the "
                 "method's name does the same and prints JSON")
      ->type_name("FILE");
  DescribeHost(app, line.call.host);
  Exclude(app, "--rows", {"--json"});  // which has them all
  app.add_flag("--unsafe-names", line.call.unsafe_names,
               "Send names of tables that hold more than a name, as a host would");
  app.add_flag("--unchecked", line.call.unchecked,
               "Send dictionaries with keys that are unknown or missing, and directions that are "
               "none");
  app.add_option("--then", line.call.then,
                 "A further call on the same object: METHOD NAME=VALUE…; may be given again")
      ->type_name("METHOD");
  app.add_flag("--rollback", line.call.rollback, "Keep nothing of what the calls do");
  DescribeRecord(app, line.call.record);
}

void DescribeAudit(CLI::App& app, CommandLine& line) {
  app.add_option("BILLNO", line.audit.numbers, "Numbers of bills, in the order in which they go");
  app.add_flag("--all", line.audit.all, "All bills that are still to be done");
  app.add_option("--class", line.audit.class_type, "Only bills of this class type, e.g. 1030002")
      ->type_name("CLASSTYPE");
  app.add_flag("--each", line.audit.each, "Every bill in a transaction of its own");
  app.add_flag("--dry-run", line.audit.dry_run, "Keep nothing");
  Exclude(app, "--rows", {"--json"});  // which has them all
  DescribeHtml(app, line.audit.html_file);
  DescribeHost(app, line.audit.host);
  DescribeRecord(app, line.audit.record);
}

void DescribeRecordTrace(CLI::App& app, CommandLine& line) {
  app.add_option("FILE", line.record.file, "The tape to write")->required();
  app.add_option("--from", line.record.traces,
                 "A call that the automation server traced; may be given again for the calls of "
                 "one object")
      ->type_name("TRACE")
      ->required();
  DescribeMask(app, line.record.masked_columns);
}

constexpr int kMostJobs = 256;

void DescribeRun(CLI::App& app, CommandLine& line) {
  app.add_option("SCENARIO", line.run.paths, "Scenario files, or folders of them")->required();
  app.add_flag("--compare", line.run.compare,
               "Run them on the embedded database and on the server, and print what differs");
  app.add_option("--known", line.run.known_file, "Differences that the server is known for")
      ->type_name("FILE");
  app.add_flag("--own-database", line.run.own_database,
               "Where an error of the server ends the transaction in which a scenario runs: run "
               "it once more, in a database of its own");
  app.add_option("--filter", line.run.filter, "Only those with this text in their path or name")
      ->type_name("TEXT");
  app.add_flag("--list", line.run.list, "Print the files and names, and run nothing");
  app.add_option("-j,--jobs", line.run.jobs, "How many run at a time")
      ->type_name("N")
      ->check(CLI::Range(1, kMostJobs))
      ->capture_default_str();
  app.add_option("--junit", line.run.junit_file, "Write the outcome as JUnit's XML, too")
      ->type_name("FILE");
  DescribeHtml(app, line.run.html_file);
  app.add_flag("--update", line.run.update,
               "Take what came for what is expected, in the files of failing scenarios");
  app.add_flag("--review", line.run.review, "The same, showing each change and asking");
  app.get_option("--known")->needs(app.get_option("--compare"));
  Exclude(app, "--review", {"--update"});
  Exclude(app, "--list",
          {"--compare", "--known", "--own-database", "--jobs", "--junit", "--html", "--update",
           "--review", "--trace", "--rows"});
}

void DescribeSql(CLI::App& app, CommandLine& line) {
  app.add_option("BATCH", line.sql.batch,
                 "The batch; \"-\" reads it from standard input. Without one, a shell on a "
                 "terminal, else standard input");
  app.add_option("--file", line.sql.files, "A script; may be given again")
      ->type_name("FILE")
      ->allow_extra_args(false);
  app.add_option("-v", line.sql.variables, "$(NAME) in scripts is VALUE; may be given again")
      ->type_name("NAME=VALUE")
      ->allow_extra_args(false);
  app.add_option("--mode", line.sql.mode, "How rows are shown: table, box, csv, line or json")
      ->type_name("MODE")
      ->check(CLI::IsMember(OutputModeNames()))
      ->capture_default_str();
  app.add_option("--on-error", line.sql.on_error,
                 "Whether a batch that fails is the last: exit, or ignore")
      ->type_name("WHAT")
      ->check(CLI::IsMember({"exit", "ignore"}))
      ->capture_default_str();
  Exclude(app, "--mode", {"--json"});
  app.add_flag("--timer", line.sql.timer, "Show how long each batch takes");
  app.add_flag("--no-pager", line.sql.no_pager, "Show long output on a terminal without a pager");
}

void DescribeExplain(CLI::App& app, CommandLine& line) {
  app.add_option("BILLNO", line.explain.numbers, "Numbers of bills");
  app.add_option("--class", line.explain.class_type, "Only a bill of this class")->type_name("ID");
  app.add_option("--id", line.explain.id, "Only the bill with this id")->type_name("ID");
  app.add_flag("--un-audit", line.explain.un_audit, "Why it may or may not be un-audited");
  app.add_flag("--full", line.explain.full, "Statement and rows of every gate");
  DescribeHtml(app, line.explain.html_file);
  app.add_option("--trace", line.explain.trace_file,
                 "In place of bills: a call that the automation server traced")
      ->type_name("FILE");
  DescribeHost(app, line.explain.host);
  DescribeRecord(app, line.explain.record);
  Exclude(app, "--full", {"--json"});  // which has everything
  // All of it stands in the trace.
  Exclude(app, "--trace",
          {"BILLNO", "--class", "--id", "--un-audit", "--user", "--deny", "--publish", "--record",
           "--record-state", "--mask", "--db", "--dsn", "--dsn-file", "--login-timeout",
           "--query-timeout", "--busy-timeout"});
}

void DescribeRefusals(CLI::App& app, CommandLine& line) {
  app.add_option("NAME|MESSAGE", line.refusals.text, "Only the one with this name or message");
}

void DescribeClasses(CLI::App& app, CommandLine& line) {
  app.add_option("CLASS", line.classes.name,
                 "Only this class; CLASS.METHOD prints the keys of its dictionaries too");
}

void DescribeNothing(CLI::App&, CommandLine&) {}

void DescribeHelp(CLI::App& app, CommandLine& line) {
  app.add_option("COMMAND", line.help_for, "Only of this command");
}

void DescribeCompletion(CLI::App& app, CommandLine& line) {
  app.add_option("SHELL", line.shell, "The shell that is to complete")
      ->required()
      ->check(CLI::IsMember({"bash", "zsh", "fish"}));
}

Exit HelpCommand(const CommandLine& line);
Exit CompletionCommand(const CommandLine& line);
Exit ManCommand(const CommandLine& line);

// What a command shows of the statements that it sends, where --trace asks for it.
enum class Traces { kNothing, kStatements, kRowsToo };
// The options that commands share.
enum class Takes { kNothing, kJson, kDatabaseToo };

struct Entry {
  const char* name;
  const char* summary;
  void (*describe)(CLI::App& app, CommandLine& line);
  Exit (*run)(const CommandLine& line);
  Takes takes = Takes::kDatabaseToo;
  Traces traces = Traces::kNothing;
};

constexpr Entry kCommands[] = {
    {"demo", "Audit a sample company's bills and show what happens", DescribeDemo,
     [](const CommandLine& line) { return DemoCommand(line.common, line.demo); },
     Takes::kDatabaseToo, Traces::kRowsToo},
    {"init", "Make a database with the ERP schema", DescribeInit,
     [](const CommandLine& line) { return InitCommand(line.common, line.init); }},
    {"call", "Call one method of one class", DescribeCall,
     [](const CommandLine& line) { return CallCommand(line.common, line.call); },
     Takes::kDatabaseToo, Traces::kRowsToo},
    {"audit", "Audit bills in a batch, as a host does", DescribeAudit,
     [](const CommandLine& line) { return AuditCommand(line.common, line.audit); },
     Takes::kDatabaseToo, Traces::kRowsToo},
    {"unaudit", "Un-audit bills in a batch", DescribeAudit,
     [](const CommandLine& line) {
       AuditOptions options = line.audit;
       options.un_audit = true;
       return AuditCommand(line.common, options);
     },
     Takes::kDatabaseToo, Traces::kRowsToo},
    {"record", "Write calls that the automation server traced as a tape", DescribeRecordTrace,
     [](const CommandLine& line) { return RecordCommand(line.record); }, Takes::kNothing},
    {"run", "Run scenario files", DescribeRun,
     [](const CommandLine& line) { return RunCommand(line.common, line.run); }, Takes::kDatabaseToo,
     Traces::kRowsToo},
    {"sql", "Run batches and scripts, or a shell", DescribeSql,
     [](const CommandLine& line) { return SqlCommand(line.common, line.sql); }, Takes::kDatabaseToo,
     Traces::kStatements},
    {"check", "Compare the stock on hand with the audited bills", DescribeNothing,
     [](const CommandLine& line) { return CheckCommand(line.common); }, Takes::kDatabaseToo,
     Traces::kStatements},
    {"explain", "Why a bill is refused: ask every gate, try the audit, keep nothing",
     DescribeExplain,
     [](const CommandLine& line) { return ExplainCommand(line.common, line.explain); }},
    {"refusals", "Print the refusals of the rules: name, texts, cause, remedy", DescribeRefusals,
     [](const CommandLine& line) { return RefusalsCommand(line.common, line.refusals); },
     Takes::kJson},
    {"classes", "Print the method table", DescribeClasses,
     [](const CommandLine& line) { return ClassesCommand(line.common, line.classes); },
     Takes::kJson},
    {"help", "Print what a command takes", DescribeHelp, HelpCommand, Takes::kNothing},
    {"completion", "Print the script by which a shell completes", DescribeCompletion,
     CompletionCommand, Takes::kNothing},
    {"man", "Print the manual page: tavcc man | man -l -", DescribeNothing, ManCommand,
     Takes::kNothing},
};

std::vector<std::string> CommandNames() {
  std::vector<std::string> names;
  for (const Entry& entry : kCommands) names.emplace_back(entry.name);
  return names;
}

// Where the command stands: only the language may be named before it.
size_t CommandPlace(const std::vector<std::string>& words) {
  size_t place = 0;
  while (place < words.size() && words[place].starts_with(kLanguageOption)) {
    place += words[place] == kLanguageOption ? 2 : 1;
  }
  return place;
}

// `--json FILE` behind the method's name gives a call its arguments; `--json` alone asks for JSON
// output. An option cannot be both, so the first form is told apart here.
std::vector<std::string> SplitJson(const std::vector<std::string>& words) {
  std::vector<std::string> arguments;
  bool method_seen = false;
  const size_t command = CommandPlace(words);
  const bool is_call = command < words.size() && words[command] == "call";
  for (size_t i = 0; i < words.size(); ++i) {
    arguments.push_back(words[i]);
    method_seen = method_seen || (is_call && i > command && !words[i].starts_with('-'));
    if (!method_seen || words[i] != "--json" || i + 1 == words.size()) continue;
    const std::string& next = words[i + 1];
    const bool option = next.size() > 1 && next.front() == '-';
    if (option || next.find('=') != std::string::npos) continue;
    arguments.emplace_back("--args");
  }
  return arguments;
}

// A month; no one waits longer on purpose.
constexpr int kMostSeconds = 31 * 24 * 60 * 60;

constexpr int kMostRows = 1'000'000;

void AddSeconds(CLI::App& app, const char* name, int& seconds, const char* what) {
  app.add_option(name, seconds, what)
      ->type_name("SECONDS")
      ->check(CLI::Range(0, kMostSeconds))
      ->capture_default_str();
}

void DescribeDatabase(CLI::App& app, CommonOptions& common) {
  app.add_option("--db", common.db, "Database file")->type_name("FILE");
  app.add_option("--dsn", common.dsn, "ODBC connection string of a database on a server")
      ->type_name("STRING");
  app.add_option("--dsn-file", common.dsn_file,
                 "File that holds the connection string; where none is given, the environment's "
                 "TAVCC_DSN counts")
      ->type_name("FILE");
  AddSeconds(app, "--login-timeout", common.login_seconds,
             "How long connecting to a server may take; 0 waits for ever");
  AddSeconds(app, "--query-timeout", common.query_seconds,
             "How long a batch may take on a server; 0 waits for ever");
  AddSeconds(app, "--busy-timeout", common.busy_seconds,
             "How long a file is waited for that another process has locked; 0 does not wait");
  Exclude(app, "--db", {"--login-timeout", "--query-timeout"});
  Exclude(app, "--busy-timeout", {"--dsn", "--dsn-file"});
}

void DescribeTrace(CLI::App& app, CommonOptions& common) {
  app.add_flag("--trace", common.trace,
               "Show each statement, its rows, its time, the source line that sent it and the gate "
               "that was asked");
}

void DescribeRows(CLI::App& app, CommonOptions& common) {
  app.add_option("--rows", common.rows, "How many rows of each statement --trace shows")
      ->type_name("N")
      ->check(CLI::Range(0, kMostRows))
      ->capture_default_str()
      ->needs(app.get_option("--trace"));
}

void DescribeCommon(CLI::App& app, CommonOptions& common, const Entry& entry) {
  if (entry.takes == Takes::kDatabaseToo) DescribeDatabase(app, common);
  if (entry.takes != Takes::kNothing) app.add_flag("--json", common.json, "Print JSON");
  if (entry.traces != Traces::kNothing) DescribeTrace(app, common);
  if (entry.traces == Traces::kRowsToo) DescribeRows(app, common);
}

std::vector<std::string> AllMethods() {
  std::vector<std::string> names;
  for (const ClassDescription& cls : Classes()) {
    for (const Method& method : cls.methods) {
      names.push_back(std::string(cls.name) + "." + std::string(method.name));
    }
  }
  return names;
}

void DescribeLanguage(CLI::App& app, CommandLine& line) {
  app.add_option(
         std::string(kLanguageOption), line.language,
         "The language of messages and help, en or zh; by default the environment's, or else "
         "Windows'. JSON is English in each")
      ->type_name("LANGUAGE")
      ->check(CLI::IsMember({"en", "zh"}));
}

// Every description in the language of the process, and the words of the parser's own.
void Translate(CLI::App& app) {
  for (const char* const word : {"Usage", "OPTIONS", "Positionals", "SUBCOMMAND", "REQUIRED"}) {
    app.get_formatter()->label(word, Translated(word));
  }
  app.description(Translated(app.get_description()));
  for (CLI::Option* const option : app.get_options()) {
    option->description(Translated(option->get_description()));
    option->group(Translated(option->get_group()));
  }
  for (CLI::App* const sub : app.get_subcommands({})) {
    sub->group(Translated(sub->get_group()));
    Translate(*sub);
  }
}

// The parser with all commands; what is given goes to `line`.
void DescribeAll(CLI::App& app, CommandLine& line) {
  app.name("tavcc");
  app.description("Business rules of an ERP's inventory module, on an embedded database.");
  app.require_subcommand(1);
  app.allow_windows_style_options(false);  // a word that begins with a slash is a path
  app.set_version_flag("--version", "tavcc " TAVCC_VERSION);
  DescribeLanguage(app, line);
  for (const Entry& entry : kCommands) {
    CLI::App* const sub = app.add_subcommand(entry.name, entry.summary);
    DescribeCommon(*sub, line.common, entry);
    DescribeLanguage(*sub, line);
    entry.describe(*sub, line);
    sub->callback([&line, run = entry.run] { line.command = run; });
  }
  Translate(app);
}

// "FILE:{table,box}" as the parser shows a value and the words that it may be.
OptionText TextOf(const CLI::Option& option) {
  OptionText text;
  for (const std::string& name : option.get_snames()) text.names.push_back("-" + name);
  for (const std::string& name : option.get_lnames()) text.names.push_back("--" + name);
  if (option.get_positional()) text.names = {option.get_name(true)};
  text.what = option.get_description();
  if (option.get_items_expected_max() == 0) return text;
  const std::string type = option.get_type_name();
  const size_t open = type.find('{'), close = type.find('}');
  if (open != std::string::npos && close != std::string::npos) {
    std::istringstream words(type.substr(open + 1, close - open - 1));
    for (std::string word; std::getline(words, word, ',');) text.choices.push_back(word);
  }
  text.value = type.substr(0, type.find_first_of(" :["));
  const std::string& name = text.names.front();
  text.is_file = text.value == "FILE" || name == "SCENARIO";
  if (name == "CLASS.METHOD") text.choices = AllMethods();
  if (name == "COMMAND") text.choices = CommandNames();
  return text;
}

std::vector<CommandText> CommandTable() {
  CLI::App app;
  CommandLine line;
  DescribeAll(app, line);
  std::vector<CommandText> commands;
  for (const Entry& entry : kCommands) {
    const CLI::App& sub = *app.get_subcommand(entry.name);
    CommandText& command =
        commands.emplace_back(CommandText{entry.name, sub.get_description(), {}, {}});
    for (const CLI::Option* option : sub.get_options()) {
      auto& list = option->get_positional() ? command.arguments : command.options;
      list.push_back(TextOf(*option));
    }
  }
  return commands;
}

void RequireCommand(const std::string& name) {
  const std::vector<std::string> names = CommandNames();
  if (std::ranges::find(names, name) != names.end()) return;
  throw CommandError(
      Say("there is no command \"{}\"{} (see tavcc --help)", name, DidYouMean(name, names)));
}

Exit HelpCommand(const CommandLine& line) {
  CLI::App app;
  CommandLine described;
  DescribeAll(app, described);
  if (!line.help_for.empty()) RequireCommand(line.help_for);
  Print(line.help_for.empty() ? app.help() : app.get_subcommand(line.help_for)->help("tavcc"));
  return Exit::kPassed;
}

Exit CompletionCommand(const CommandLine& line) {
  Print(CompletionScript(line.shell, CommandTable()));
  return Exit::kPassed;
}

Exit ManCommand(const CommandLine&) {
  Print(ManualPage(CommandTable()));
  return Exit::kPassed;
}

// What the parser says of a line that it does not take.
constexpr const char* kParserTexts[] = {
    "A subcommand is required",
    "{} is required",
    "{} requires {}",
    "{} excludes {}",
    "{}: Value {} not in range {} to {}",
    "{}: {} not in {}",
    "{}: 1 required {} missing",
    "{}: At Most {} required but received {}",
    "{}: At least {} required but received {}",
    "Could not convert: {} = {}",
    "The following argument was not expected: {}",
    "The following arguments were not expected: {}",
};

}  // namespace

std::optional<CommandLine> ReadCommandLine(const std::vector<std::string>& words) {
  ChooseLanguage(words, UserLanguages());
  CLI::App app;
  CommandLine line;
  DescribeAll(app, line);
  try {
    std::vector<std::string> arguments = SplitJson(words);
    const size_t command = CommandPlace(words);
    if (command < words.size() && !words[command].starts_with('-')) RequireCommand(words[command]);
    std::reverse(arguments.begin(), arguments.end());  // the parser takes them from the end
    app.parse(std::move(arguments));
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() != 0) {
      throw CommandError(Say("{} (see tavcc --help)", TranslatedLike(error.what(), kParserTexts)));
    }
    std::ostringstream help;
    app.exit(error, help, help);
    Print(help.str());
    return std::nullopt;
  }
  if (line.common.json) SetLanguage(Language::kEnglish);
  return line;
}

}  // namespace tavcc
