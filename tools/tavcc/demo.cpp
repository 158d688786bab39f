// tavcc demo: a company's assembly bills are audited, un-audited and deleted; each outcome is shown
// with its message and the bill's row before and after.
#include <fmt/core.h>

#include <string>
#include <vector>

#include "foundation/text.h"
#include "scenario/runner.h"
#include "scenario/scenario.h"
#include "scenario/values.h"
#include "tavcc/answer.h"
#include "tavcc/command.h"
#include "tavcc/database.h"
#include "tavcc/output.h"

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
    {"The assembly bill is audited.", "", "AuditBill", kAssemblyBill},
    {"A bill is audited only once.", "", "AuditBill", kAssemblyBill},
    {"An audited bill is not deleted.", "", "DeleteBill", kAssemblyBill},
    {"The audit is taken back.", "", "UnAuditBill", kAssemblyBill},
    {"What is not audited cannot be un-audited.", "", "UnAuditBill", kAssemblyBill},
    {"The disassembly bill is audited.", "", "AuditBill", kDisassemblyBill},
    {"Meanwhile another bill was made from it: its audit stays.",
     "UPDATE T_CC_ZZCX SET FStatus = 2 WHERE FID = 122", "UnAuditBill", kDisassemblyBill},
    {"Bookkeeping made a voucher from the assembly bill: nothing goes any more.",
     "UPDATE T_CC_ZZCX SET FVoucherID = 77 WHERE FID = 121", "AuditBill", kAssemblyBill},
    {"The voucher is withdrawn, and the bill is to be deleted. The gate lets it pass, but the\n"
     "deletion names no existing table: the database's own message comes back, the bill stays.",
     "UPDATE T_CC_ZZCX SET FVoucherID = 0 WHERE FID = 121", "DeleteBill", kAssemblyBill},
    {"There is no such bill.", "", "AuditBill", kNoBill},
};

std::string BillQuery(int32_t bill) {
  return Cat("SELECT FBillNo, FStatus, FCheckerID, FCheckDate, FVoucherID FROM T_CC_ZZCX",
             " WHERE FID = ", bill);
}

constexpr std::string_view kBillsQuery =
    "SELECT b.FID, b.FBillNo, k.FPart, i.FName, s.FName AS FStock, k.FQty"
    " FROM T_CC_ZZCX b INNER JOIN ("
    "SELECT FID, 1 AS FOrder, FIndex, 'product' AS FPart, FItemID, FDCStockID AS FStockID, FQty"
    " FROM T_CC_ZZCX_Entry"
    " UNION ALL "
    "SELECT FID, 2, FIndex, 'component', FItemID, FSCStockID, FQty FROM T_CC_ZZCX_Entry2"
    ") k ON k.FID = b.FID"
    " INNER JOIN t_ICItem i ON i.FItemID = k.FItemID"
    " INNER JOIN t_Stock s ON s.FItemID = k.FStockID"
    " ORDER BY b.FID, k.FOrder, k.FIndex";

class Story {
 public:
  Story(Erp& erp, const CommonOptions& options) : erp_(erp), options_(options) {}

  void Tell();

 private:
  void ShowCompany();
  void Play(const Scene& scene);
  Answer Call(const MethodName& name, int32_t bill);
  std::string Row(int32_t bill);

  Erp& erp_;
  const CommonOptions& options_;
  Json record_ = Json::array();
};

void Story::Tell() {
  if (!options_.json) ShowCompany();
  for (const Scene& scene : kScenes) Play(scene);
  if (options_.json) fmt::print("{}\n", record_.dump(2));
}

void Story::ShowCompany() {
  fmt::print("An ERP database was made from T-SQL files. It holds these assembly bills:\n\n{}\n",
             RowsText(*erp_.connection()->Execute(kBillsQuery), "  "));
}

void Story::Play(const Scene& scene) {
  const ConnectionPtr connection = erp_.connection();
  if (*scene.before_sql != '\0') connection->Execute(scene.before_sql);
  const Json before = JsonFromRows(*connection->Execute(BillQuery(scene.bill)), RowForm::kObjects);
  const std::string row_before = Row(scene.bill);
  const MethodName name = FindMethodByName(Cat("cls_CX.", scene.method));
  if (!options_.json) fmt::print("{}\n\n", scene.title);
  const Answer answer = Call(name, scene.bill);
  const Value& message = answer.arguments.back();
  if (options_.json) {
    record_.push_back({{"title", scene.title},
                       {"method", Cat("cls_CX.", scene.method)},
                       {"bill", scene.bill},
                       {"verdict", VerdictText(answer.verdict)},
                       {"message", JsonFromValue(message)},
                       {"before", before},
                       {"after", JsonFromRows(*erp_.connection()->Execute(BillQuery(scene.bill)),
                                              RowForm::kObjects)}});
    return;
  }
  const std::string row_after = Row(scene.bill);
  fmt::print("  cls_CX.{}(lngFID={}): {}  {}\n\n", scene.method, scene.bill,
             VerdictText(answer.verdict), ValueText(message));
  if (row_before == row_after) {
    fmt::print("{}  (unchanged)\n\n\n", row_before);
  } else {
    fmt::print("  before\n{}  after\n{}\n\n", row_before, row_after);
  }
}

Answer Story::Call(const MethodName& name, int32_t bill) {
  Json arguments = {{"lngFID", bill}};
  for (const Parameter& parameter : name.method->parameters) {
    if (parameter.name == "lngUserID") arguments["lngUserID"] = erp_.host().settings().user_id;
  }
  return CallInTransaction(
      erp_, *name.cls, *name.method,
      MakeArguments({erp_.host(), erp_.dsn(), erp_.connection()}, *name.method, arguments),
      options_.trace ? StatementObserver(TraceStatement) : nullptr);
}

std::string Story::Row(int32_t bill) {
  return RowsText(*erp_.connection()->Execute(BillQuery(bill)), "    ");
}

class DemoCommand final : public Command {
 public:
  void Describe(CLI::App&) override {}

  Exit Run(const CommonOptions& options) override {
    if (!options.db.empty()) MakeDatabase(options.db, true);
    sql::OpenOptions open;
    if (!options.db.empty()) open.path = options.db;
    open.clock = [] { return *DateTime::Parse(kToday); };
    Erp erp(open);
    if (options.db.empty()) FillDatabase(erp, true);
    Story(erp, options).Tell();
    return Exit::kPassed;
  }
};

}  // namespace

std::unique_ptr<Command> MakeDemo() {
  return std::make_unique<DemoCommand>();
}

}  // namespace tavcc
