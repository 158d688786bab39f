// tavcc check: does the stock on hand equal the opening stock and the audited bills' lines? Names
// what differs.
#include "host/ledger_check.h"
#include "language/language.h"
#include "tavcc/command.h"
#include "tavcc/database.h"
#include "tavcc/output.h"
#include "tavcc/table.h"
#include "tavcc/trace.h"

namespace tavcc {
namespace {

std::string Number(const Decimal& number) {
  return number.Normalized().ToText();
}

void PrintTable(const std::vector<LedgerDifference>& differences) {
  Table table({Translated("item"), Translated("name"), Translated("stock"), Translated("batch"),
               Translated("aux"), Translated("quantity should be"), Translated("is"),
               Translated("value should be"), Translated("is")});
  for (const LedgerDifference& d : differences) {
    table.Add({d.item_number.empty() ? std::to_string(d.item_id) : d.item_number, d.item_name,
               d.stock_name.empty() ? std::to_string(d.stock_id) : d.stock_name, d.batch,
               std::to_string(d.aux_prop_id), Number(d.expected_quantity),
               Number(d.actual_quantity), Number(d.expected_value), Number(d.actual_value)});
  }
  Print(table.ToText());
}

// What one bill has to do with the differences.
std::string CauseText(const LedgerCause& cause) {
  return cause.audited ? Say("{} is audited, but its lines are not in the stock\n", cause.bill_no)
                       : Say("{} is not audited, but its lines are in the stock\n", cause.bill_no);
}

void PrintCauses(const std::vector<LedgerCause>& causes) {
  for (const LedgerCause& cause : causes) Print(CauseText(cause));
}

void PrintJson(const std::vector<LedgerDifference>& differences,
               const std::vector<LedgerCause>& causes) {
  Json list = Json::array();
  for (const LedgerDifference& d : differences) {
    list.push_back({{"item", d.item_id},
                    {"item_number", d.item_number},
                    {"item_name", d.item_name},
                    {"stock", d.stock_id},
                    {"stock_name", d.stock_name},
                    {"batch", d.batch},
                    {"aux_prop", d.aux_prop_id},
                    {"expected_quantity", ValueJson(d.expected_quantity)},
                    {"actual_quantity", ValueJson(d.actual_quantity)},
                    {"expected_value", ValueJson(d.expected_value)},
                    {"actual_value", ValueJson(d.actual_value)}});
  }
  Json bills = Json::array();
  for (const LedgerCause& cause : causes) {
    bills.push_back({{"bill", cause.bill_no},
                     {"class", cause.class_type_id},
                     {"id", cause.bill_id},
                     {"audited", cause.audited}});
  }
  Print(Show(Json{{"differences", std::move(list)}, {"causes", std::move(bills)}}) + "\n");
}

}  // namespace

Exit CheckCommand(const CommonOptions& common) {
  const auto erp = OpenDatabase(common);
  erp->log().SetObserver(TraceWithoutRows(common));
  // One look at all of it, while others may be at work.
  erp->BeginReading();
  const auto differences = CheckLedger(*erp->connection());
  const auto causes = ExplainLedger(*erp->connection(), differences);
  erp->Rollback();
  if (common.json) {
    PrintJson(differences, causes);
  } else if (differences.empty()) {
    Print(Say("The stock on hand is the opening stock and the audited bills' lines.\n"));
  } else {
    PrintTable(differences);
    PrintCauses(causes);
  }
  return differences.empty() ? Exit::kPassed : Exit::kRefused;
}

}  // namespace tavcc
