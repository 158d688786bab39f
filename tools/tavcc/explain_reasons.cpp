// The reasons of a refusal in a person's words: the item, the line, the quantity, the bill that
// stands in the way.
#include <fmt/core.h>

#include <algorithm>
#include <string_view>

#include "foundation/conversions.h"
#include "foundation/text.h"
#include "tavcc/explain.h"
#include "tavcc/output.h"

namespace tavcc {
namespace {

// ---- What the database says of the bill --------------------------------------------------------

// Columns are the labels. "{class}", "{id}", "{head}" and "{partner}" are the bill's.
struct Question {
  std::string_view refusal;
  std::string_view sql;
};
constexpr Question kQuestions[] = {
    {"bill.audited",
     "SELECT FCheckerID AS auditor, FCheckDate AS [on] FROM {head} WHERE FID = {id}"},
    {"bill.not_audited", "SELECT FStatus AS state FROM {head} WHERE FID = {id}"},
    {"bill.closed", "SELECT FStatus AS state FROM {head} WHERE FID = {id}"},
    {"bill.linked", "SELECT FStatus AS state FROM {head} WHERE FID = {id}"},
    {"bill.voucher", "SELECT FVoucherID AS voucher FROM {head} WHERE FID = {id}"},
    {"bill.rejected", "SELECT FRejected AS rejected FROM {head} WHERE FID = {id}"},
    {"bill.invoiced", "SELECT FInvoiceAmt AS invoiced FROM {head} WHERE FID = {id}"},
    {"bill.reversal_voucher",
     "SELECT v.FBillNo AS bill, v.FVoucherID AS voucher FROM T_CC_StockBill v"
     " INNER JOIN ICRelations r1 ON r1.FClassTypeID = v.FClassTypeID AND r1.FID = v.FID"
     " INNER JOIN ICRelations r2 ON r2.FGroupNo = r1.FGroupNo"
     " WHERE v.FBillTypeID = 2032 AND r2.FClassTypeID = {class} AND r2.FID = {id}"},
    {"bill.downstream",
     "SELECT DISTINCT v.FBillNo AS bill FROM T_CC_StockBillEntry u"
     " INNER JOIN T_CC_StockBill v ON v.FID = u.FID"
     " WHERE u.FClassID_SRC = {class} AND u.FID_SRC = {id} ORDER BY v.FBillNo"},
    {"bill.downstream",
     "SELECT DISTINCT FID AS [receivable or settlement] FROM ("
     "SELECT FID FROM t_RP_RBillEntry WHERE FSourceClassTypeID = {class} AND FSourceBillID = {id}"
     " UNION ALL SELECT FID FROM t_RP_CheckBillEntry1"
     " WHERE FSourceClassTypeID = {class} AND FSourceBillID = {id}"
     " UNION ALL SELECT FID FROM t_RP_CheckBillEntry2"
     " WHERE FSourceClassTypeID = {class} AND FSourceBillID = {id}) p"},
    {"bill.paid",
     "SELECT DISTINCT FID AS [payment, receipt or settlement] FROM ("
     "SELECT FID FROM t_RP_PBillEntry WHERE FSourceClassTypeID = {class} AND FSourceBillID = {id}"
     " UNION ALL SELECT FID FROM t_RP_RBillEntry"
     " WHERE FSourceClassTypeID = {class} AND FSourceBillID = {id}"
     " UNION ALL SELECT FID FROM t_RP_CheckBillEntry1"
     " WHERE FSourceClassTypeID = {class} AND FSourceBillID = {id}"
     " UNION ALL SELECT FID FROM t_RP_CheckBillEntry2"
     " WHERE FSourceClassTypeID = {class} AND FSourceBillID = {id}) p"},
    {"user.own_bill", "SELECT FBillerID AS maker FROM {head} WHERE FID = {id}"},
    {"user.not_auditor", "SELECT FCheckerID AS auditor FROM {head} WHERE FID = {id}"},
    {"period.closed",
     "SELECT b.FDate AS [the bill's date], p.FStartDate AS [the period's first day]"
     " FROM {head} b CROSS JOIN t_PeriodDate p WHERE b.FID = {id}"
     " AND p.FYear = (SELECT CONVERT(INT, FValue) FROM t_SystemProfile"
     " WHERE FCategory = 'IC' AND FKey = 'CurrentYear')"
     " AND p.FPeriod = (SELECT CONVERT(INT, FValue) FROM t_SystemProfile"
     " WHERE FCategory = 'IC' AND FKey = 'CurrentPeriod')"},
    {"overdue.payable",
     "SELECT FBillNo AS bill, FUnCheckAmount AS [not cleared], FSettleLimitDate AS due"
     " FROM T_CC_StockBill WHERE FClassTypeID = 1020002 AND FBillTypeID IN (2011, 2013)"
     " AND FUnCheckAmount > 0 AND FSettleLimitDate < getdate() AND FSupplyID = {partner}"
     " ORDER BY FSettleLimitDate, FID"},
    {"overdue.receivable",
     "SELECT FBillNo AS bill, FUnCheckAmount AS [not cleared], FSettleLimitDate AS due"
     " FROM T_CC_StockBill WHERE FClassTypeID = 1030002 AND FBillTypeID IN (3001, 3002)"
     " AND FUnCheckAmount > 0 AND FSettleLimitDate < getdate() AND FCustID = {partner}"
     " AND FStatus > 0 ORDER BY FSettleLimitDate, FID"},
};

void AddReasonsFrom(Recordset& rows, std::vector<Reason>& reasons) {
  for (; !rows.AtEnd(); rows.MoveNext()) {
    Reason& reason = reasons.emplace_back();
    for (int i = 0; i < rows.FieldCount(); ++i) {
      reason.emplace_back(rows.FieldName(i), PlainText(rows.Field(i)));
    }
  }
}

void AddAnswers(Connection& cn, const Bill& bill, std::string_view refusal,
                std::vector<Reason>& reasons) {
  for (const Question& question : kQuestions) {
    if (question.refusal != refusal) continue;
    const RecordsetPtr rows = cn.Execute(fmt::format(
        fmt::runtime(question.sql), fmt::arg("class", bill.class_type), fmt::arg("id", bill.id),
        fmt::arg("head", bill.head_table), fmt::arg("partner", bill.partner_id())));
    AddReasonsFrom(*rows, reasons);
  }
}

// ---- The bill's lines --------------------------------------------------------------------------

struct BillLine {
  std::string index;
  int32_t item_id;
  std::string item;  // number and name
  std::string batch;
  int32_t stock_ids[2];  // issues, receives; 0 where it does not
};

void AddLines(Connection& cn, const std::string& table, const char* batch, const char* issues,
              const char* receives, const Bill& bill, std::vector<BillLine>& lines) {
  const RecordsetPtr rows =
      cn.Execute(fmt::format("SELECT e.FIndex, e.FItemID, i.FNumber, i.FName, {}, {}, {} FROM {} e"
                             " LEFT JOIN t_ICItem i ON e.FItemID = i.FItemID WHERE e.FID = {}"
                             " ORDER BY e.FIndex, e.FEntryID",
                             batch, issues, receives, table, bill.id));
  for (; !rows->AtEnd(); rows->MoveNext()) {
    lines.push_back({PlainText(rows->Field(0)),
                     LongOrZero(rows->Field(1)),
                     fmt::format("{} {}", ValueText(rows->Field(2)), ValueText(rows->Field(3))),
                     rows->Field(4).IsNull() ? "" : ValueText(rows->Field(4)),
                     {LongOrZero(rows->Field(5)), LongOrZero(rows->Field(6))}});
  }
}

std::vector<BillLine> LinesOf(Connection& cn, const Bill& bill) {
  std::vector<BillLine> lines;
  if (bill.head_table == "T_CC_ZZCX") {
    AddLines(cn, "T_CC_ZZCX_Entry", "e.FBatchNo", "0", "e.FDCStockID", bill, lines);
    AddLines(cn, "T_CC_ZZCX_Entry2", "e.FBatchNo", "e.FSCStockID", "0", bill, lines);
  } else if (bill.head_table == "T_CC_StockBill") {
    AddLines(cn, "T_CC_StockBillEntry", "e.FBatchNo", "e.FSCStockID", "e.FDCStockID", bill, lines);
  } else {
    AddLines(cn, bill.head_table + "Entry", "''", "0", "0", bill, lines);
  }
  return lines;
}

// ---- What the rows that decided say ------------------------------------------------------------

// One row of the answer that decided.
class DecidingRow {
 public:
  DecidingRow(const ShownRows& rows, size_t row) : rows_(rows), row_(row) {}
  // The empty text where there is no such column.
  std::string operator[](std::string_view column) const {
    for (size_t i = 0; i < rows_.columns.size(); ++i) {
      if (EqualsIgnoringCase(rows_.columns[i], column)) return ValueText(rows_.rows[row_][i]);
    }
    return "";
  }
  // As a plain number, without zeros behind the point.
  std::string Number(std::string_view column) const {
    const std::string text = (*this)[column];
    const auto number = Decimal::Parse(text);
    return number ? number->Normalized().ToText() : text;
  }

 private:
  const ShownRows& rows_;
  size_t row_;
};

std::string Negated(const std::string& number) {
  const auto decimal = Decimal::Parse(number);
  if (!decimal) return number;
  const auto negated = Decimal::Multiply(*decimal, -1);
  return negated ? negated->Normalized().ToText() : number;
}

void AddLine(Reason& reason, const std::string& index, const std::vector<BillLine>& lines,
             const std::string& name) {
  const auto line = std::find_if(lines.begin(), lines.end(),
                                 [&](const BillLine& each) { return each.index == index; });
  reason.emplace_back("line", index);
  reason.emplace_back("item", line == lines.end() ? name : line->item);
}

// The lines that take the item out of the stock, e.g. "1" or "1, 3".
std::string LinesWith(const std::vector<BillLine>& lines, const DecidingRow& row) {
  std::string indexes;
  for (const BillLine& line : lines) {
    const bool stock =
        std::any_of(std::begin(line.stock_ids), std::end(line.stock_ids),
                    [&](int32_t id) { return std::to_string(id) == row["FStockID"]; });
    if (std::to_string(line.item_id) != row["FITEMID"] || !stock) continue;
    if (line.batch != row["FBATCHNO"]) continue;
    indexes += (indexes.empty() ? "" : ", ") + line.index;
  }
  return indexes;
}

Reason StockReason(const DecidingRow& row, const std::vector<BillLine>& lines) {
  Reason reason = {{"line", LinesWith(lines, row)},
                   {"item", row["FNUMBER"] + " " + row["FNAME"]},
                   {"stock", row["STOCKNAME"]}};
  if (!row["FBATCHNO"].empty()) reason.emplace_back("batch", row["FBATCHNO"]);
  if (!row["AUXNAME"].empty() && row["AUXNAME"] != "NULL") {
    reason.emplace_back("property", row["AUXNAME"]);
  }
  reason.emplace_back("in stock", row.Number("STOCKQTY"));
  reason.emplace_back("wanted", row.Number("SUMQTY"));
  reason.emplace_back("short by", Negated(row.Number("DIFFQTY")));
  return reason;
}

Reason PriceReason(const DecidingRow& row, const std::vector<BillLine>& lines) {
  Reason reason;
  AddLine(reason, row.Number("FIndex"), lines, row["FName"]);
  reason.emplace_back("price", row.Number("FPrice"));
  reason.emplace_back("limit", row.Number("ActLimitPrice"));
  return reason;
}

Reason CreditReason(Connection& cn, const Bill& bill, const Rung& rung, const DecidingRow& row) {
  const bool supplier = rung.statement->text.find("t_Supplier") != std::string::npos;
  Reason reason;
  const RecordsetPtr partner =
      cn.Execute(fmt::format("SELECT FName FROM {} WHERE FItemID = {}",
                             supplier ? "t_Supplier" : "t_Organization", bill.partner_id()));
  if (!partner->AtEnd()) {
    reason.emplace_back(supplier ? "supplier" : "customer", ValueText(partner->Field(0)));
  }
  reason.emplace_back("credit line", row.Number("FCreditAmount"));
  reason.emplace_back("balance", row.Number("FCurComeGoBalance"));
  reason.emplace_back("this bill", bill.amount.Normalized().ToText());
  const auto credit = Decimal::Parse(row["FCreditAmount"]);
  const auto balance = Decimal::Parse(row["FCurComeGoBalance"]);
  const auto sum = balance ? Decimal::Add(*balance, bill.amount) : std::nullopt;
  const auto negated = credit ? Decimal::Multiply(*credit, -1) : std::nullopt;
  const auto over = sum && negated ? Decimal::Add(*sum, *negated) : std::nullopt;
  if (over) reason.emplace_back("over by", over->Normalized().ToText());
  return reason;
}

constexpr std::string_view kSpecificIdentification = "80";

void AddFromRows(Connection& cn, const Bill& bill, const Rung& rung, std::vector<Reason>& reasons) {
  const std::string_view name = rung.refusal->name;
  const std::vector<BillLine> lines = LinesOf(cn, bill);
  for (size_t i = 0; i < rung.rows.rows.size(); ++i) {
    const DecidingRow row(rung.rows, i);
    if (name == "stock.negative") {
      reasons.push_back(StockReason(row, lines));
    } else if (name == "stock.negative_batch") {
      if (row.Number("Ftrack") == kSpecificIdentification) {
        reasons.push_back(StockReason(row, lines));
      }
    } else if (name == "price.below_limit" || name == "price.above_limit") {
      reasons.push_back(PriceReason(row, lines));
    } else if (name == "price.zero" || name == "serial.missing") {
      AddLine(reasons.emplace_back(), row.Number("FIndex"), lines, row["FName"]);
      if (name == "price.zero") reasons.back().emplace_back("price", "0");
    } else if (name == "credit.exceeded") {
      reasons.push_back(CreditReason(cn, bill, rung, row));
    }
  }
}

}  // namespace

std::vector<Reason> ReasonsOf(Erp& erp, const Bill& bill, const Rung& rung) {
  std::vector<Reason> reasons;
  if (rung.refusal == nullptr) return reasons;
  const ConnectionPtr cn = erp.host().GetUnloggedConnection(erp.dsn());
  AddFromRows(*cn, bill, rung, reasons);
  AddAnswers(*cn, bill, rung.refusal->name, reasons);
  if (rung.refusal->name == "user.own_bill" || rung.refusal->name == "user.no_right" ||
      rung.refusal->name == "user.not_auditor") {
    if (reasons.empty()) reasons.emplace_back();
    reasons.front().emplace_back("user", std::to_string(erp.host().settings().user_id));
  }
  return reasons;
}

}  // namespace tavcc
