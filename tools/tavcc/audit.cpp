// tavcc audit and tavcc unaudit: the batch of bills that a host sends, in one call or bill by bill.
#include <fmt/core.h>

#include <algorithm>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "audit/class_names.h"
#include "foundation/bill_kinds.h"
#include "foundation/conversions.h"
#include "host/host_dictionary.h"
#include "language/language.h"
#include "scenario/scenario.h"
#include "tavcc/answer.h"
#include "tavcc/answer_text.h"
#include "tavcc/batch_report.h"
#include "tavcc/bills.h"
#include "tavcc/command.h"
#include "tavcc/database.h"
#include "tavcc/file.h"
#include "tavcc/html/batch_page.h"
#include "tavcc/output.h"
#include "tavcc/progress.h"
#include "tavcc/record.h"
#include "tavcc/trace.h"

namespace tavcc {
namespace {

// The bills that the rules are given, which tells how far they are.
class WatchedBills final : public Vector {
 public:
  WatchedBills(VectorPtr bills, const std::vector<Bill>& shown, size_t done, Progress& progress)
      : bills_(std::move(bills)), shown_(shown), done_(done), progress_(progress) {}

  int Size() const override { return bills_->Size(); }
  int LBound() const override { return bills_->LBound(); }
  int UBound() const override { return bills_->UBound(); }
  Value Item(int index) const override {
    const size_t at = done_ + static_cast<size_t>(index) - 1;
    if (at < shown_.size()) progress_.Show(at, shown_[at].number);
    return bills_->Item(index);
  }
  void Add(Value value) override { bills_->Add(std::move(value)); }

 private:
  const VectorPtr bills_;
  const std::vector<Bill>& shown_;
  const size_t done_;  // bills before these
  Progress& progress_;
};

std::vector<Bill> BillsOfNumber(Erp& erp, const AuditOptions& options, const std::string& number) {
  BillFilter filter{.number = number};
  if (options.class_type != 0) filter.class_type = options.class_type;
  std::vector<Bill> bills = FindBills(erp, filter);
  if (bills.empty()) {
    throw CommandError(Say("no bill has the number \"{}\"", number));
  }
  if (bills.size() == 1) return bills;
  std::string all;
  for (const Bill& bill : bills) all += (all.empty() ? "" : ", ") + Described(bill);
  throw CommandError(Say("\"{}\" is the number of {} bills: {}; say which with --class", number,
                         bills.size(), all));
}

// All that can be audited, or un-audited: the last first, since what one bill brought in may have
// been issued by a later one.
std::vector<Bill> AllBills(Erp& erp, const AuditOptions& options) {
  BillFilter filter{.status = static_cast<int32_t>(options.un_audit ? bill_status::kAudited
                                                                    : bill_status::kNotAudited),
                    .made_by_system = false};
  if (options.class_type != 0) filter.class_type = options.class_type;
  std::vector<Bill> bills = FindBills(erp, filter);
  if (options.un_audit) std::ranges::reverse(bills);
  return bills;
}

std::vector<Bill> ChosenBills(Erp& erp, const AuditOptions& options) {
  if (options.all) return AllBills(erp, options);
  std::vector<Bill> bills;
  for (const std::string& number : options.numbers) {
    const std::vector<Bill> found = BillsOfNumber(erp, options, number);
    const bool again = std::ranges::any_of(bills, [&](const Bill& bill) {
      return bill.class_type == found[0].class_type && bill.id == found[0].id;
    });
    if (again) throw CommandError(Say("bill {} is given twice", number));
    bills.push_back(found[0]);
  }
  return bills;
}

// One run of the command.
class BatchRun {
 public:
  BatchRun(Erp& erp, const CommonOptions& common, const AuditOptions& options,
           std::vector<Bill> bills)
      : erp_(erp),
        common_(common),
        options_(options),
        name_(FindMethodByName(kBatchAudit)),
        bills_(std::move(bills)),
        outcomes_(bills_.size()),
        recorder_(erp, options.record,
                  (options.un_audit ? "un-audit of " : "audit of ") + NumbersOf(bills_)) {}

  Exit Run();

 private:
  void SendEach();
  void SendAll();
  // Sends the bills from `first` on, `count` of them, and tells what became of them. False when the
  // call failed.
  bool Send(size_t first, size_t count, Progress& progress);
  std::vector<Value> Arguments(size_t first, size_t count, Progress& progress) const;
  void Note(size_t first, size_t count, const Answer& answer);
  StatementObserver Trace() const {
    return common_.json ? TraceForJson(common_) : TraceOf(common_);
  }
  void Watch();
  void WritePage();
  void PrintReport() const;
  std::string EndingText() const;
  Json ReportJson() const;
  int Count(Exit verdict) const {
    return static_cast<int>(std::ranges::count(outcomes_, verdict, &BillOutcome::verdict));
  }

  Erp& erp_;
  const CommonOptions& common_;
  const AuditOptions& options_;
  const MethodName name_;
  const std::vector<Bill> bills_;
  std::vector<BillOutcome> outcomes_;
  Exit verdict_ = Exit::kPassed;
  std::string failures_;  // what the calls that failed failed by
  Json statements_ = Json::array();
  Recorder recorder_;
  std::optional<BatchWatch> watch_;  // where a page is asked for
};

Exit BatchRun::Run() {
  if (options_.each) {
    SendEach();
  } else {
    SendAll();
  }
  return verdict_;
}

// What is told is told before it is kept.
void BatchRun::SendAll() {
  HostTransaction transaction(erp_, false);
  try {
    Watch();
    Progress progress(bills_.size());
    if (!bills_.empty()) Send(0, bills_.size(), progress);
    progress.Hide();
    PrintReport();
    recorder_.Write();
    WritePage();
  } catch (const CommandError& error) {
    throw CommandError(Say("{}; what the batch did was undone", error.what()));
  }
  if (verdict_ != Exit::kFailed && !options_.dry_run) transaction.Keep();
}

void BatchRun::SendEach() {
  size_t done = 0;
  try {
    Watch();
    Progress progress(bills_.size());
    for (; done < bills_.size(); ++done) {
      HostTransaction transaction(erp_, false);
      if (Send(done, 1, progress) && !options_.dry_run) transaction.Keep();
    }
    progress.Hide();
    PrintReport();
    recorder_.Write();
    WritePage();
  } catch (const CommandError& error) {
    throw CommandError(options_.dry_run
                           ? Say("{}; {} of {} bills were sent before, and what they did is undone",
                                 error.what(), done, bills_.size())
                           : Say("{}; {} of {} bills were sent before, and what they did is kept",
                                 error.what(), done, bills_.size()));
  }
}

bool BatchRun::Send(size_t first, size_t count, Progress& progress) {
  if (watch_) watch_->BeginCall();
  const Answer answer = CalledObject(erp_, *name_.cls, &recorder_)
                            .Call(*name_.method, Arguments(first, count, progress),
                                  watch_ ? watch_->observer() : Trace());
  Note(first, count, answer);
  verdict_ = std::max(verdict_, answer.verdict);
  if (answer.verdict == Exit::kFailed) failures_ += FailureText(answer);
  if (!common_.json) {
    progress.Hide();
    for (size_t i = first; i < first + count; ++i) Print(outcomes_[i].text + "\n");
  }
  return answer.verdict != Exit::kFailed;
}

std::vector<Value> BatchRun::Arguments(size_t first, size_t count, Progress& progress) const {
  const VectorPtr bills = erp_.host().NewVector();
  for (size_t i = first; i < first + count; ++i) {
    bills->Add(BillDictionary(erp_.host(), bills_[i]));
  }
  return {std::make_shared<WatchedBills>(bills, bills_, first, progress),
          options_.un_audit ? int16_t{kUnAudit} : int16_t{kAudit}, erp_.dsn(), true,
          erp_.host().NewDictionary()};
}

void BatchRun::Note(size_t first, size_t count, const Answer& answer) {
  const std::span bills = std::span(bills_).subspan(first, count);
  const std::vector<BillOutcome> outcomes = OutcomesOf(bills, answer);
  std::ranges::copy(outcomes, outcomes_.begin() + static_cast<ptrdiff_t>(first));
  if (watch_) watch_->EndCall(bills, outcomes);
  if (!common_.trace || !common_.json) return;
  for (const LoggedStatement& statement : answer.statements) {
    statements_.push_back(StatementJson(statement));
  }
}

void BatchRun::Watch() {
  if (options_.html_file.empty()) return;
  constexpr size_t kMostNamed = 5;
  const std::string which =
      bills_.size() <= kMostNamed ? NumbersOf(bills_) : Say("{} bills", bills_.size());
  watch_.emplace(erp_, Trace(),
                 options_.un_audit ? Say("Un-audit of {}", which) : Say("Audit of {}", which),
                 bills_);
}

// Told before it is kept, as everything is.
void BatchRun::WritePage() {
  if (!watch_) return;
  BatchReport& report = watch_->Report();
  report.failures = failures_;
  report.ending = EndingText();
  ReplaceFile(options_.html_file, BatchPage(report));
}

void BatchRun::PrintReport() const {
  if (common_.json) {
    Print(Show(ReportJson(), 2) + "\n");
    return;
  }
  if (verdict_ == Exit::kFailed) Print("\n" + failures_);
  std::string summary = Say("passed: {}, refused: {}", Count(Exit::kPassed), Count(Exit::kRefused));
  if (const int failed = Count(Exit::kFailed); failed > 0) {
    summary += Say(", failed: {}", failed);
  }
  Print("\n" + summary + "\n");
  if (const std::string ending = EndingText(); !ending.empty()) Print(ending + "\n");
}

std::string BatchRun::EndingText() const {
  if (verdict_ == Exit::kFailed && !options_.each) return Say("What the batch did was undone.");
  return options_.dry_run ? Say("Nothing was kept.") : "";
}

Json BatchRun::ReportJson() const {
  Json bills = Json::array();
  for (size_t i = 0; i < bills_.size(); ++i) {
    Json bill = {{"bill", bills_[i].number},
                 {"class", bills_[i].class_type},
                 {"id", bills_[i].id},
                 {"verdict", VerdictText(outcomes_[i].verdict)},
                 {"message", outcomes_[i].text}};
    if (outcomes_[i].verdict == Exit::kRefused) {
      const std::string refusal = RefusalName(outcomes_[i].text);
      if (!refusal.empty()) bill["refusal"] = refusal;
    }
    bills.push_back(std::move(bill));
  }
  Json report = {{"verdict", VerdictText(verdict_)},
                 {"passed", Count(Exit::kPassed)},
                 {"refused", Count(Exit::kRefused)},
                 {"failed", Count(Exit::kFailed)},
                 {"kept", !options_.dry_run && (options_.each || verdict_ != Exit::kFailed)},
                 {"bills", std::move(bills)}};
  if (!failures_.empty()) report["failure"] = failures_;
  if (common_.trace) report["statements"] = statements_;
  return report;
}

}  // namespace

Exit AuditCommand(const CommonOptions& common, const AuditOptions& options) {
  if (options.all == !options.numbers.empty()) {
    throw CommandError(Say("which bills? give their numbers, or --all"));
  }
  RequireOwnFile(options.html_file,
                 {common.db, common.dsn_file, options.record.tape_file, options.record.state_file});
  const auto erp = OpenDatabase(common, options.host);
  return BatchRun(*erp, common, options, ChosenBills(*erp, options)).Run();
}

}  // namespace tavcc
