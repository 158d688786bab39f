// The commands of tavcc: what each is told, and how each is run.
//
// A command sees plain structs; how they come from the command line is command_line.cpp's affair.
#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "embedded/embedded.h"
#include "host/host_state.h"
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
  // How long a file is waited for that another process has locked; 0 does not wait.
  int busy_seconds = sql::OpenOptions().busy_seconds;
  bool json = false;   // machine-readable output
  bool trace = false;  // show the statements
  int rows = 20;       // of each of them, that --trace shows
};

// The host that the calls are made on, beside its database.
struct HostOptions {
  int16_t user = HostSettings().user_id;
  std::vector<int32_t> denied;         // class types whose bills the user has no right on
  std::vector<std::string> published;  // "name=value", for the process
};

struct DemoOptions {
  std::string html_file;  // of the page that is written, too; empty for none
};

struct InitOptions {
  bool sample = false;  // with the sample company
};

// What is written of the calls that a command makes.
struct RecordOptions {
  std::string tape_file;   // a scenario with every answer in it; empty for none
  std::string state_file;  // a scenario with the rows that the calls touch; likewise
  std::vector<std::string> masked_columns;
};

struct RecordTraceOptions {
  std::vector<std::string> traces;  // of the automation server, in the order of the calls
  std::string file;                 // the tape
  std::vector<std::string> masked_columns;
};

struct CallOptions {
  std::string method;              // "Class.Method"
  std::vector<std::string> words;  // "name=value"
  std::string json_file;           // of rich arguments; "-" is standard input, empty is none
  HostOptions host;
  bool unsafe_names = false;  // names of tables are sent whatever is in them
  bool unchecked = false;     // keys and directions that mean nothing are sent
  // Further calls on the same object: each a method and its "name=value".
  std::vector<std::string> then;
  bool rollback = false;  // nothing is kept
  RecordOptions record;
};

struct AuditOptions {
  bool un_audit = false;
  std::vector<std::string> numbers;  // of bills
  bool all = false;                  // that are not audited; or are, for an un-audit
  int32_t class_type = 0;            // of them; 0 is any
  bool each = false;                 // every bill in a transaction of its own
  bool dry_run = false;              // nothing is kept
  std::string html_file;             // of the page that is written, too; empty for none
  HostOptions host;
  RecordOptions record;
};

struct RunOptions {
  std::vector<std::string> paths;  // of scenario files and folders of them
  bool compare = false;            // with the embedded database
  std::string known_file;          // of known differences; empty when none was given
  bool own_database = false;
  bool update = false;     // take what came for what is expected, in the files
  bool review = false;     // the same, asking for each file
  bool list = false;       // print the files and names, run nothing
  std::string filter;      // only those with this in their path or name
  std::string junit_file;  // where the outcome is written, too; empty for nowhere
  std::string html_file;   // of the page that is written, too; likewise
  int jobs = 1;            // how many run at a time
};

struct SqlOptions {
  std::string batch;                   // "-" is standard input
  std::vector<std::string> files;      // of scripts, which run one after the other
  std::vector<std::string> variables;  // "name=value"
  std::string mode = "table";
  std::string on_error = "exit";  // or "ignore": go on with the next batch
  bool timer = false;
  bool no_pager = false;
};

struct ExplainOptions {
  std::vector<std::string> numbers;  // of bills
  std::optional<int32_t> class_type;
  std::optional<int32_t> id;
  bool un_audit = false;
  bool full = false;  // statement and rows of every gate
  HostOptions host;
  std::string html_file;   // empty: none is written
  std::string trace_file;  // of the automation server; empty: bills are explained
  RecordOptions record;
};

struct RefusalsOptions {
  std::string text;  // the name of one, or a message; empty for all
};

struct ClassesOptions {
  std::string name;  // of the one class to print, or of the one method of it; empty for all
};

// Anything that ends a command with exit status 2; what() is the one line for standard error.
class CommandError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Errors of any: CommandError, AutomationError, JsonError, ScenarioError; main shows each as one
// line.
Exit DemoCommand(const CommonOptions& common, const DemoOptions& options);
Exit InitCommand(const CommonOptions& common, const InitOptions& options);
Exit CallCommand(const CommonOptions& common, const CallOptions& options);
// An audit or, as the options say, an un-audit.
Exit AuditCommand(const CommonOptions& common, const AuditOptions& options);
Exit RecordCommand(const RecordTraceOptions& options);
Exit RunCommand(const CommonOptions& common, const RunOptions& options);
Exit SqlCommand(const CommonOptions& common, const SqlOptions& options);
Exit CheckCommand(const CommonOptions& common);
Exit ExplainCommand(const CommonOptions& common, const ExplainOptions& options);
Exit RefusalsCommand(const CommonOptions& common, const RefusalsOptions& options);
Exit ClassesCommand(const CommonOptions& common, const ClassesOptions& options);

}  // namespace tavcc
