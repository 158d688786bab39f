// tavcc demo: a company's bills of every kind are audited and un-audited in batches; then its
// assembly bills one by one, each outcome with its message and the bill's row before and after.
#include <fmt/core.h>

#include <string>
#include <utility>
#include <vector>

#include "foundation/text.h"
#include "language/language.h"
#include "scenario/runner.h"
#include "scenario/scenario.h"
#include "scenario/values.h"
#include "tavcc/answer.h"
#include "tavcc/call_watch.h"
#include "tavcc/command.h"
#include "tavcc/database.h"
#include "tavcc/demo_batch.h"
#include "tavcc/file.h"
#include "tavcc/html/demo_page.h"
#include "tavcc/output.h"
#include "tavcc/table.h"
#include "tavcc/trace.h"

namespace tavcc {
namespace {

// The sample company's today: the story reads the same whenever it is told.
constexpr std::string_view kToday = "2026-03-15 10:00:00";

constexpr int32_t kAssemblyBill = 121;
constexpr int32_t kDisassemblyBill = 122;
constexpr int32_t kNoBill = 999;

// One scene: what happens beforehand, in words and in SQL, and the call.
struct Scene {
  const char* title;
  const char* before_sql;  // empty when the call follows at once
  const char* method;
  int32_t bill;
};

constexpr Scene kScenes[] = {
    {Translatable("The assembly bill is audited."), "", "AuditBill", kAssemblyBill},
    {Translatable("A bill is audited only once."), "", "AuditBill", kAssemblyBill},
    {Translatable("An audited bill is not deleted."), "", "DeleteBill", kAssemblyBill},
    {Translatable("The audit is taken back."), "", "UnAuditBill", kAssemblyBill},
    {Translatable("What is not audited cannot be un-audited."), "", "UnAuditBill", kAssemblyBill},
    {Translatable("The disassembly bill is audited."), "", "AuditBill", kDisassemblyBill},
    {Translatable("Meanwhile another bill was made from it: its audit stays."),
     "UPDATE T_CC_ZZCX SET FStatus = 2 WHERE FID = 122", "UnAuditBill", kDisassemblyBill},
    {Translatable("Bookkeeping made a voucher from the assembly bill: nothing goes any more."),
     "UPDATE T_CC_ZZCX SET FVoucherID = 77 WHERE FID = 121", "AuditBill", kAssemblyBill},
    {Translatable(
         "The voucher is withdrawn and the bill is deleted: the statement names no existing table,\n"
         "    the database's own message comes back, and the bill stays."),
     "UPDATE T_CC_ZZCX SET FVoucherID = 0 WHERE FID = 121", "DeleteBill", kAssemblyBill},
    {Translatable("There is no such bill."), "", "AuditBill", kNoBill},
};

std::string BillQuery(int32_t bill) {
  return Cat("SELECT FBillNo, FStatus, FCheckerID, FCheckDate, FVoucherID FROM T_CC_ZZCX",
             " WHERE FID = ", bill);
}

constexpr std::string_view kBillsQuery =
    "SELECT b.FID, b.FBillNo, k.FPart, i.FName, s.FName AS FStock,"
    " CAST(k.FQty AS int) AS FQty"
    " FROM T_CC_ZZCX b INNER JOIN ("
    "SELECT FID, 1 AS FOrder, FIndex, 'product' AS FPart, FItemID, FDCStockID AS FStockID, FQty"
    " FROM T_CC_ZZCX_Entry"
    " UNION ALL "
    "SELECT FID, 2, FIndex, 'component', FItemID, FSCStockID, FQty FROM T_CC_ZZCX_Entry2"
    ") k ON k.FID = b.FID"
    " INNER JOIN t_ICItem i ON i.FItemID = k.FItemID"
    " INNER JOIN t_Stock s ON s.FItemID = k.FStockID"
    " ORDER BY b.FID, k.FOrder, k.FIndex";

// A title without its line ends.
std::string OnOneLine(std::string_view text) {
  std::string line;
  for (const char c : text) {
    if (c == '\n') line += ' ';
    const bool blank = c == '\n' || (c == ' ' && line.ends_with(' '));
    if (!blank) line += c;
  }
  return line;
}

// The fields of the current row; none where there is no row.
std::vector<std::string> Cells(const Recordset& row) {
  std::vector<std::string> cells;
  for (int i = 0; i < row.FieldCount() && !row.AtEnd(); ++i) {
    cells.push_back(ValueText(row.Field(i)));
  }
  return cells;
}

std::vector<std::string> Labelled(std::string label, std::vector<std::string> cells) {
  cells.insert(cells.begin(), std::move(label));
  return cells;
}

class Story {
 public:
  Story(Erp& erp, const CommonOptions& options, DemoReport* page)
      : erp_(erp), options_(options), page_(page), watch_(TraceOf(options), 0) {}

  void Tell();

 private:
  void ShowCompany();
  void Play(const Scene& scene);
  void ShowCall(const Scene& scene);
  void ShowOutcome(const Answer& answer, Recordset& before, Recordset& after);
  void Record(const Scene& scene, const Answer& answer, Recordset& before, Recordset& after);
  void Draw(const Scene& scene, const Answer& answer, Recordset& before, Recordset& after);
  Answer Call(const MethodName& name, int32_t bill);
  RecordsetPtr Row(int32_t bill);

  Erp& erp_;
  const CommonOptions& options_;
  DemoReport* const page_;
  CallWatch watch_;
  int scene_ = 0;
  Json record_ = Json::array();
};

void Story::Tell() {
  if (!options_.json) Print(Say("An ERP database was made from T-SQL files.\n\n"));
  TellBatchAudit(erp_, options_, record_, page_);
  if (!options_.json) ShowCompany();
  for (const Scene& scene : kScenes) Play(scene);
  if (options_.json) Print(fmt::format("{}\n", Show(record_, 2)));
}

void Story::ShowCompany() {
  Print(
      Say("The assembly bills, one by one:\n\n{}\n"
          "FStatus of a bill: 0 not audited, 1 audited, 2 used by another bill.\n\n",
          RowsText(*erp_.connection()->Execute(kBillsQuery), "    ")));
}

void Story::Play(const Scene& scene) {
  if (*scene.before_sql != '\0') erp_.connection()->Execute(scene.before_sql);
  const RecordsetPtr before = Row(scene.bill);
  const MethodName name = FindMethodByName(Cat("cls_CX.", scene.method));
  if (!options_.json) ShowCall(scene);
  const Answer answer = Call(name, scene.bill);
  const RecordsetPtr after = Row(scene.bill);
  if (page_ != nullptr) Draw(scene, answer, *before, *after);
  if (options_.json) {
    Record(scene, answer, *before, *after);
  } else {
    ShowOutcome(answer, *before, *after);
  }
}

void Story::ShowCall(const Scene& scene) {
  ++scene_;
  Print(fmt::format("{:2}. {}\n", scene_, Translated(scene.title)));
  Print(fmt::format("    cls_CX.{}(lngFID={}){}", scene.method, scene.bill,
                    options_.trace ? "\n" : ""));
}

void Story::ShowOutcome(const Answer& answer, Recordset& before, Recordset& after) {
  const std::string message = ValueText(answer.arguments.back());
  Print(fmt::format("{} {}{}{}\n\n", options_.trace ? "   " : " ",
                    Translated(VerdictText(answer.verdict)), message.empty() ? "" : ": ", message));
  Table table(Labelled("", FieldNames(before)));
  const std::vector<std::string> old_cells = Cells(before);
  const std::vector<std::string> new_cells = Cells(after);
  if (old_cells == new_cells) {
    table.Add(Labelled(Translated("unchanged"), new_cells));
  } else {
    table.Add(Labelled(Translated("before"), old_cells));
    table.Add(Labelled(Translated("after"), new_cells));
  }
  if (!new_cells.empty()) Print(fmt::format("{}\n", table.ToText("    ")));
}

void Story::Record(const Scene& scene, const Answer& answer, Recordset& before, Recordset& after) {
  record_.push_back({{"title", scene.title},
                     {"method", Cat("cls_CX.", scene.method)},
                     {"bill", scene.bill},
                     {"verdict", VerdictText(answer.verdict)},
                     {"message", ValueJson(answer.arguments.back())},
                     {"before", RowsJson(before, RowForm::kObjects)},
                     {"after", RowsJson(after, RowForm::kObjects)}});
}

void Story::Draw(const Scene& scene, const Answer& answer, Recordset& before, Recordset& after) {
  page_->scenes.push_back({.title = OnOneLine(Translated(scene.title)),
                           .call = fmt::format("cls_CX.{}(lngFID={})", scene.method, scene.bill),
                           .verdict = answer.verdict,
                           .message = ValueText(answer.arguments.back()),
                           .columns = FieldNames(before),
                           .before = Cells(before),
                           .after = Cells(after),
                           .sent = watch_.End()});
}

Answer Story::Call(const MethodName& name, int32_t bill) {
  Json arguments = {{"lngFID", bill}};
  for (const Parameter& parameter : name.method->parameters) {
    if (parameter.name == "lngUserID") arguments["lngUserID"] = erp_.host().settings().user_id;
  }
  watch_.Begin();
  return CallInTransaction(
      erp_, *name.cls, *name.method,
      MakeArguments({erp_.host(), erp_.dsn(), erp_.connection()}, *name.method, arguments),
      watch_.observer());
}

RecordsetPtr Story::Row(int32_t bill) {
  return erp_.connection()->Execute(BillQuery(bill));
}

}  // namespace

Exit DemoCommand(const CommonOptions& common, const DemoOptions& options) {
  RequireOwnFile(options.html_file, {common.db, common.dsn_file});
  DemoReport page;
  const auto tell = [&](Erp& erp) {
    Story(erp, common, options.html_file.empty() ? nullptr : &page).Tell();
    if (!options.html_file.empty()) ReplaceFile(options.html_file, DemoPage(page));
    return Exit::kPassed;
  };
  if (const auto server = ServerOf(common)) {
    const auto erp = OpenServer(*server);
    FillServer(*erp, true);
    return tell(*erp);
  }
  if (!common.db.empty()) MakeDatabase(common.db, true);
  sql::OpenOptions open = common.db.empty() ? sql::OpenOptions{} : FileOptions(common);
  open.clock = [] { return *DateTime::Parse(kToday); };
  Erp erp(open);
  if (common.db.empty()) FillDatabase(erp, true);
  return tell(erp);
}

}  // namespace tavcc
