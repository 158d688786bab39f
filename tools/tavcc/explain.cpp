// tavcc explain: asks every gate of a bill by itself, and tries the audit. Nothing is kept.
#include "tavcc/explain.h"

#include <fmt/core.h>

#include <algorithm>

#include "foundation/conversions.h"
#include "foundation/text.h"
#include "host/logged_call.h"
#include "language/language.h"
#include "registry/bill_ladder.h"
#include "scenario/scenario.h"
#include "tavcc/answer.h"
#include "tavcc/batch_report.h"
#include "tavcc/database.h"
#include "tavcc/explain_trace.h"
#include "tavcc/file.h"
#include "tavcc/html/explanation_page.h"
#include "tavcc/output.h"
#include "tavcc/record.h"

namespace tavcc {
namespace {

constexpr size_t kMostRows = 100;
// Of a transaction, which is rolled back here in any case.
constexpr bool kOnlyReads = true;

// ---- Settings ----------------------------------------------------------------------------------

// The text of the literal behind `name` and a comparison, from `at` on, which moves behind it.
std::optional<std::string> ComparedWith(std::string_view sql, std::string_view name, size_t& at) {
  const std::string upper = UpperCase(sql);
  const size_t found = upper.find(name, at);
  if (found == std::string::npos) return std::nullopt;
  const size_t open = sql.find('\'', found);
  if (open == std::string_view::npos) return std::nullopt;
  const size_t close = sql.find('\'', open + 1);
  if (close == std::string_view::npos) return std::nullopt;
  at = close + 1;
  return std::string(sql.substr(open + 1, close - open - 1));
}

// The settings that a statement reads for itself.
void AddSettingsOf(Erp& erp, const LoggedStatement& statement, std::vector<ReadSetting>& settings) {
  const std::string& sql = statement.text;
  if (UpperCase(sql).find("T_SYSTEMPROFILE") == std::string::npos) return;
  for (size_t at = 0;;) {
    const auto category = ComparedWith(sql, "FCATEGORY", at);
    const auto key = category ? ComparedWith(sql, "FKEY", at) : std::nullopt;
    if (!key) return;
    const RecordsetPtr rows = erp.host().GetUnloggedConnection(erp.dsn())->Execute(
        fmt::format("SELECT FValue FROM t_SystemProfile WHERE FCategory = {} AND FKey = {}",
                    SqlLiteral(*category), SqlLiteral(*key)));
    ReadSetting setting{*category, *key, std::nullopt};
    if (!rows->AtEnd()) setting.value = ValueText(rows->Field(0));
    AddSetting(settings, std::move(setting));
  }
}

// What was read while the gate was asked: of the host, and by its statements.
std::vector<ReadSetting> SettingsOfGate(Erp& erp, std::string_view gate) {
  std::vector<ReadSetting> settings = SettingsOf(erp.log().host_answers(), gate);
  for (const LoggedStatement& sent : erp.log().statements()) {
    if (!sent.gate.empty()) AddSettingsOf(erp, sent, settings);
  }
  return settings;
}

// ---- Gates -------------------------------------------------------------------------------------

// The rows of a query: those that the rule saw, or, where it did not look at all of them, those
// that the same query answers once more.
ShownRows RowsOf(Erp& erp, const LoggedStatement& statement) {
  ShownRows shown;
  const SeenRows* const seen = statement.seen.get();
  if (seen != nullptr && seen->to_the_end && !seen->columns.empty()) {
    return Shown(*seen);
  }
  const RecordsetPtr rows = erp.host().GetUnloggedConnection(erp.dsn())->Execute(statement.text);
  if (rows == nullptr || !rows->IsOpen()) return shown;
  shown.columns = FieldNames(*rows);
  for (; !rows->AtEnd(); rows->MoveNext()) {
    if (shown.rows.size() == kMostRows) {
      shown.whole = false;
      break;
    }
    std::vector<Value>& row = shown.rows.emplace_back();
    for (int i = 0; i < rows->FieldCount(); ++i) row.push_back(rows->Field(i));
  }
  return shown;
}

// The last statement of the gate that answered with rows, or failed.
std::optional<LoggedStatement> DecidingStatement(const std::vector<LoggedStatement>& sent) {
  for (size_t i = sent.size(); i-- > 0;) {
    if (!sent[i].gate.empty() && (sent[i].rows >= 0 || sent[i].error)) return sent[i];
  }
  return std::nullopt;
}

void Judge(Erp& erp, PlugIn& self, const LoneGate& gate, Rung& rung) {
  LoggedCall call(erp.log(), {.rows = static_cast<int>(kMostRows)});
  Verdict verdict;
  std::optional<AutomationError> error;
  try {
    self.InitObjects(erp.dsn());
    const auto ask = gate.prepare();
    verdict = WatchedLadder().Ask(gate.name, false, ask);
  } catch (const AutomationError& raised) {
    error = raised;
  }
  call.End();
  if (!error && call.failure()) error = call.failure()->error;
  if (error) {
    rung.answer = Rung::Answer::kFailed;
    rung.message = ErrorText(*error);
  } else if (!verdict.passed) {
    rung.answer = Rung::Answer::kRefused;
    rung.message = verdict.message;
    rung.refusal = FindRefusal(verdict.message);
    rung.place = PlaceText(verdict.where);
  } else {
    rung.answer = verdict.asked ? Rung::Answer::kPassed : Rung::Answer::kNotAsked;
  }
  rung.statement = DecidingStatement(erp.log().statements());
  // Behind an error nothing more is asked of the session.
  if (error) return;
  rung.settings = SettingsOfGate(erp, gate.name);
  if (rung.statement) rung.rows = RowsOf(erp, *rung.statement);
}

Rung AskGate(Erp& erp, PlugIn& self, const LoneGate& gate, const Bill& bill) {
  Rung rung;
  rung.gate = gate.name;
  rung.method = gate.method;
  const HostTransaction transaction(erp, kOnlyReads);
  Judge(erp, self, gate, rung);
  if (rung.answer == Rung::Answer::kRefused) rung.reasons = ReasonsOf(erp, bill, rung);
  return rung;
}

std::vector<Rung> AskGates(Erp& erp, PlugIn& self, const Ladder& ladder, const Bill& bill) {
  std::vector<Rung> rungs;
  for (const LoneGate& gate : ladder) rungs.push_back(AskGate(erp, self, gate, bill));
  return rungs;
}

// ---- The audit itself --------------------------------------------------------------------------

// The refusal of the procedure that posts value. It is no gate: the books are kept by then.
std::optional<Rung> PostingRung(const std::vector<LoggedStatement>& sent, const std::string& line) {
  constexpr std::string_view kReason = "失败原因：";
  if (sent.empty() || !sent.back().is_procedure) return std::nullopt;
  Rung rung;
  rung.gate = Translatable("posting");
  rung.method = kBatchAudit;
  rung.answer = Rung::Answer::kRefused;
  const size_t at = line.find(kReason);
  rung.message = at == std::string::npos ? line : line.substr(at + kReason.size());
  rung.refusal = FindRefusal(rung.message);
  rung.statement = sent.back();
  return rung;
}

Trial TryAudit(Erp& erp, const Bill& bill, int16_t direction, Recorder* recorder) {
  Trial trial;
  try {
    const HostTransaction transaction(erp, !kOnlyReads);
    ChangeWatch watch(erp, bill);
    const MethodName name = FindMethodByName(kBatchAudit);
    const VectorPtr bills = erp.host().NewVector();
    bills->Add(BillDictionary(erp.host(), bill));
    const DictionaryPtr results = erp.host().NewDictionary();
    CallWatch sent({}, 0);
    sent.Begin();
    const Answer answer =
        CalledObject(erp, *name.cls, recorder)
            .Call(*name.method, {bills, direction, erp.dsn(), true, results}, sent.observer());
    trial.sent = sent.End();
    trial.verdict = answer.verdict;
    trial.line = ToText(results->Item("BillInfo"));
    while (trial.line.ends_with('|')) trial.line.pop_back();
    if (answer.verdict == Exit::kFailed) {
      trial.error =
          answer.failure ? ErrorText(answer.failure->error) : ToText(results->Item("ErrorMsg"));
    }
    if (answer.verdict == Exit::kPassed) trial.changes = watch.Changes();
    if (answer.verdict == Exit::kRefused) {
      trial.posting = PostingRung(answer.statements, trial.line);
    }
  } catch (const AutomationError& error) {
    trial.verdict = Exit::kFailed;
    trial.error = ErrorText(error);
  }
  return trial;
}

Exit Worst(Exit a, Exit b) {
  return std::max(a, b);
}

Exit VerdictOfRungs(const std::vector<Rung>& rungs) {
  Exit verdict = Exit::kPassed;
  for (const Rung& rung : rungs) {
    if (rung.answer == Rung::Answer::kFailed) verdict = Worst(verdict, Exit::kFailed);
    if (rung.answer == Rung::Answer::kRefused) verdict = Worst(verdict, Exit::kRefused);
  }
  return verdict;
}

// ---- Which bills -------------------------------------------------------------------------------

BillFilter FilterOf(const ExplainOptions& options, const std::string* number) {
  BillFilter filter;
  if (number != nullptr) filter.number = *number;
  filter.class_type = options.class_type;
  filter.id = options.id;
  return filter;
}

std::string Named(const std::string& number) {
  return number.empty() ? "\"\"" : number;
}

std::string ChoiceText(const BillFilter& filter) {
  std::string text;
  const auto add = [&](const std::string& part) {
    text += (text.empty() ? "" : Translated(" and ")) + part;
  };
  if (filter.number) add(Say("the number {}", Named(*filter.number)));
  if (filter.class_type) add(Say("class {}", *filter.class_type));
  if (filter.id) add(Say("id {}", *filter.id));
  return text;
}

// The one bill that is meant. Errors: CommandError where there is none, or more than one.
Bill FindBill(Erp& erp, const BillFilter& filter) {
  const std::vector<Bill> found = FindBills(erp, filter);
  if (found.empty()) throw CommandError(Say("no bill has {}", ChoiceText(filter)));
  if (found.size() == 1) return found.front();
  std::string list;
  for (const Bill& bill : found) list += (list.empty() ? "" : ", ") + Described(bill);
  throw CommandError(Say("{} bills have {}: {}; say which with --class or --id", found.size(),
                         ChoiceText(filter), list));
}

std::vector<Bill> ChosenBills(Erp& erp, const ExplainOptions& options) {
  const HostTransaction transaction(erp, kOnlyReads);
  std::vector<Bill> bills;
  if (options.numbers.empty()) bills.push_back(FindBill(erp, FilterOf(options, nullptr)));
  for (const std::string& number : options.numbers) {
    bills.push_back(FindBill(erp, FilterOf(options, &number)));
  }
  return bills;
}

}  // namespace

Exit Explanation::Verdict() const {
  Exit verdict = trial.verdict;
  for (const auto* rungs : {&batch, &host, &own}) {
    verdict = Worst(verdict, VerdictOfRungs(*rungs));
  }
  return verdict;
}

Explanation Explain(Erp& erp, const Bill& bill, int16_t direction, Recorder* recorder) {
  Explanation explanation;
  explanation.bill = bill;
  explanation.direction = direction;
  PlugIn self(erp.host());
  const BillLadder ladder = LadderOf(self, BillDictionary(erp.host(), bill), direction, erp.dsn());
  explanation.batch = AskGates(erp, self, ladder.batch, bill);
  explanation.host = AskGates(erp, self, ladder.host, bill);
  explanation.own = AskGates(erp, self, ladder.own, bill);
  explanation.trial = TryAudit(erp, bill, direction, recorder);
  if (explanation.trial.posting) explanation.batch.push_back(*explanation.trial.posting);
  return explanation;
}

Exit ExplainCommand(const CommonOptions& common, const ExplainOptions& options) {
  if (!options.trace_file.empty()) return ExplainTrace(common, options);
  if (options.numbers.empty() && !options.id) {
    throw CommandError(Say("which bill? give its number, or --id N with --class N"));
  }
  RequireOwnFile(options.html_file,
                 {common.db, common.dsn_file, options.record.tape_file, options.record.state_file});
  const auto erp = OpenDatabase(common, options.host);
  const int16_t direction = options.un_audit ? -1 : 1;
  std::vector<Explanation> explanations;
  Exit verdict = Exit::kPassed;
  const std::vector<Bill> bills = ChosenBills(*erp, options);
  Recorder recorder(*erp, options.record,
                    (options.un_audit ? "un-audit of " : "audit of ") + NumbersOf(bills));
  for (const Bill& bill : bills) {
    explanations.push_back(Explain(*erp, bill, direction, &recorder));
    verdict = Worst(verdict, explanations.back().Verdict());
  }
  recorder.Write();
  if (!options.html_file.empty()) ReplaceFile(options.html_file, ExplanationPage(explanations));
  if (common.json) {
    Json list = Json::array();
    for (const Explanation& explanation : explanations) {
      list.push_back(ExplanationJson(explanation));
    }
    Print(Show(list, 2) + "\n");
    return verdict;
  }
  std::string text;
  for (const Explanation& explanation : explanations) {
    if (!text.empty()) text += "\n\n";
    text += ExplanationText(explanation, options.full);
  }
  Print(text);
  return verdict;
}

}  // namespace tavcc
