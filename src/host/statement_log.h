// What the library asks of the host: a record of every statement and every readying call, what
// what else the host answered, what failed below the rules, and a way to make a statement fail.
//
// It serves `--trace`, the scenarios' lists of statements, fault injection, and the verdict on a
// call. One log may watch any number of connections; it keeps the order in which they were used.
// The rows that a rule saw are kept for those who ask; where nobody does, a recordset is the
// connection's own.
#pragma once

#include <chrono>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/call_site.h"
#include "foundation/connection.h"
#include "foundation/error.h"
#include "foundation/rule_watch.h"
#include "host/answer_rows.h"
#include "host/seen_rows.h"

namespace tavcc {

struct LoggedStatement {
  int number = 0;  // from 1, in the order of sending, since the log was cleared
  bool is_procedure = false;
  std::string text = {};                            // the batch as sent, or the procedure's name
  CallSite from = {};                               // the line of source that sent it
  std::string gate = {};                            // that was asked then; empty for none
  std::vector<ProcedureParameter> parameters = {};  // a procedure's input parameters, in order
  std::vector<ProcedureParameter> outputs = {};     // what it gave back in the others
  int rows = -1;            // rows of the result; -1 when it has none or the cursor does not know
  double milliseconds = 0;  // how long the database took
  std::optional<AutomationError> error = {};  // what it raised instead of a result
  // The rows of the result that the rule saw so far; null where there is no result, or rows are not
  // kept.
  std::shared_ptr<const SeenRows> seen = nullptr;
  // Where answers are kept: all rows of the result, null where there is none; and what the
  // connection's Errors() then told.
  AnswerRowsPtr answer = nullptr;
  std::vector<ConnectionError> errors = {};
};

// "src/checks/credit.cpp:113": the file as it is named in the project. Empty for nowhere.
std::string PlaceText(const CallSite& site);

// How a statement goes wrong.
struct StatementFault {
  enum class Kind {
    kRaised,  // it does not run, and raises the error
    kLeft,    // it runs; the error is left in the connection's Errors(), and nothing raises it
    kClosed,  // it runs, and its recordset comes back closed
    kNulls,   // it runs, and every field of its rows is Null
  };
  StatementFault(AutomationError raised_or_left, Kind how = Kind::kRaised)
      : error(std::move(raised_or_left)), kind(how) {}

  AutomationError error;  // without meaning for kClosed and kNulls
  Kind kind;
};

// One call of a readying member.
struct ReadyCall {
  enum class Member { kFirst, kSecond };
  Member member;
  int context;        // which of the host's contexts, counted from 1 in the order of their making
  size_t statements;  // how many statements the log held by then

  friend bool operator==(const ReadyCall&, const ReadyCall&) = default;
};

// What failed below the rules, whatever a rule made of it.
struct Failure {
  std::string what;  // the statement, or the host's component that was asked
  AutomationError error;
  CallSite from = {};  // where a statement was sent
};

// What the host answered beside statements.
struct HostAnswer {
  HostQuestion question;
  std::string category;
  std::string key;
  Value value;
  std::string gate = {};  // that was asked then; empty for none
};

// What a gate came to in the walk over its list.
struct GateAnswer {
  std::string gate;
  std::optional<Verdict> verdict;  // nothing where an error left it
};

// Who watches a log.
struct StatementObserver {
  static constexpr int kAllRows = std::numeric_limits<int>::max();

  // Called when a statement has run, while the call goes on; may be null.
  std::function<void(const LoggedStatement&)> sent = nullptr;
  // Called when the rule has let go of a statement's rows, before or after the next is sent; may be
  // null.
  std::function<void(const LoggedStatement&)> rows_seen = nullptr;
  // Called when the rule has looked at the connection's errors behind a statement, and there were
  // some; may be null, as those below.
  std::function<void(int statement, const std::vector<ConnectionError>&)> errors_seen = nullptr;
  std::function<void(const HostAnswer&)> host_answered = nullptr;
  // Called when a list of gates begins that stands within no gate, and for each gate's answer.
  std::function<void()> ladder_begun = nullptr;
  std::function<void(const GateAnswer&)> gate_answered = nullptr;
  // How many rows of each statement are kept.
  int rows = 0;
};

class StatementLog {
 public:
  // From here on statements are told to the observer only, and nothing is kept: for a process that
  // serves calls without end and whose log nobody reads.
  void KeepNothing() { keeps_ = false; }
  // From here on the whole answer of each statement is kept. Each is then read to its end before
  // the rule sees it.
  void KeepAnswers() { keeps_answers_ = true; }
  bool KeepsAnswers() const { return keeps_answers_; }

  const std::vector<LoggedStatement>& statements() const { return statements_; }
  const std::vector<ReadyCall>& ready_calls() const { return ready_calls_; }
  const std::vector<HostAnswer>& host_answers() const { return host_answers_; }
  // The first failure of a statement, or of the host or the store beside the statements. A text
  // without its translation is none: whoever asks for a translation takes the text itself where
  // there is none.
  const std::optional<Failure>& first_failure() const { return first_failure_; }
  // Forgets all of it so far, and any failure still ordered.
  void Clear();
  void ClearReadyCalls() { ready_calls_.clear(); }

  // Lets the k-th statement from now on (1 is the next one) go wrong, once. Its text counts as sent
  // also where it does not reach the database; the connection's Errors() then tell of an error that
  // was raised or left.
  void FailAt(int k, StatementFault fault);
  // Whether a failure was ordered that no statement has met yet.
  bool FailurePending() const { return fault_.has_value(); }

  // Watches from the next statement on, in place of who watched before.
  void SetObserver(StatementObserver observer) { observer_ = std::move(observer); }
  // Who is told of each statement in front of its being sent; nobody where it is null.
  using Lookout = std::function<void(const LoggedStatement&)>;
  void SetLookout(Lookout lookout) { lookout_ = std::move(lookout); }
  // For connections: a statement is about to be sent.
  void Announce(const LoggedStatement& statement) const {
    if (lookout_) lookout_(statement);
  }
  // A call has ended: what is read from here on of the recordsets that it leaves is no rule's.
  void EndRows() { row_watch_.Settle(); }

  // For connections: what is to go wrong with the statement about to be sent, if anything.
  std::optional<StatementFault> TakeFault();
  // Adds a statement when `run`, which may fill it in, has run it: with its time and what came of
  // it. Returns the rows that `run` returns, watched where rows are kept. Errors: those of `run`.
  template <class Run>
  RecordsetPtr Send(LoggedStatement statement, Run run) {
    const auto start = std::chrono::steady_clock::now();
    const auto finish = [&] {
      const std::chrono::duration<double, std::milli> took =
          std::chrono::steady_clock::now() - start;
      statement.milliseconds = took.count();
    };
    try {
      RecordsetPtr rows = run(statement);
      finish();
      return Add(std::move(statement), std::move(rows));
    } catch (const AutomationError& error) {
      finish();
      statement.error = error;
      Add(std::move(statement), nullptr);
      throw;
    }
  }
  void AddReadyCall(ReadyCall::Member member, int context);
  // How many statements were sent since the log was cleared.
  int sent() const { return sent_; }
  void AddErrorsSeen(int statement, const std::vector<ConnectionError>& errors) const {
    if (!errors.empty() && observer_.errors_seen) observer_.errors_seen(statement, errors);
  }
  void AddHostAnswer(HostQuestion question, std::string_view category, std::string_view key,
                     const Value& value);
  // For calls (LoggedCall): a list of gates begins and ends; a gate is asked and answers.
  void BeginLadder();
  void EndLadder();
  void AskGate(std::string_view name, bool by_others);
  void AnswerGate(const Verdict& verdict);
  void NoteFailure(std::string_view what, const AutomationError& error, CallSite from = {});

 private:
  // The gate that a list asks now; no name before its first and between two.
  struct AskedGate {
    std::string name;
    bool by_others = false;
  };

  RecordsetPtr Add(LoggedStatement statement, RecordsetPtr rows);
  std::string GateNow() const;
  void TellGate(std::optional<Verdict> verdict);

  bool keeps_ = true;
  bool keeps_answers_ = false;
  int sent_ = 0;
  std::vector<LoggedStatement> statements_;
  std::optional<StatementFault> fault_;
  int statements_to_fault_ = 0;
  std::vector<ReadyCall> ready_calls_;
  std::vector<HostAnswer> host_answers_;
  std::vector<AskedGate> gates_;  // of each list that is walked, the outermost first
  std::optional<Failure> first_failure_;
  StatementObserver observer_;
  Lookout lookout_;
  RowWatch row_watch_;
};

// The connection with a log before it; all else goes to `connection` unchanged. `log` must outlive
// the result.
ConnectionPtr LogStatements(ConnectionPtr connection, StatementLog& log);

}  // namespace tavcc
