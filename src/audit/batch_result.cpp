#include "audit/batch_result.h"

#include <unordered_set>

#include "audit/class_names.h"
#include "foundation/conversions.h"
#include "foundation/text.h"

namespace tavcc {

namespace {

// Each id once, in the order of first appearance.
std::string JoinedIDs(const std::vector<int32_t>& ids) {
  std::string text;
  std::unordered_set<int32_t> seen;
  for (const int32_t id : ids) {
    if (!seen.insert(id).second) continue;
    CatTo(text, text.empty() ? "" : ",", id);
  }
  return text;
}

}  // namespace

void BatchResult::Start(Dictionary& dct) {
  TakeEarlierLines(dct);
  dct.SetItem("NegItemID", "");
}

void BatchResult::TakeEarlierLines(const Dictionary& dct) {
  const Value earlier = dct.ItemOr("BillInfo", "");
  lines_ = earlier.IsNull() ? "" : ToText(earlier);
  started_ = true;
}

void BatchResult::AddPassed(const AuditedBill& bill, std::string_view outcome) {
  AddLine(bill, outcome);
  ++success_count_;
}

void BatchResult::AddRefused(const AuditedBill& bill, std::string_view outcome) {
  AddLine(bill, outcome);
  ++fail_count_;
}

void BatchResult::AddLine(const AuditedBill& bill, std::string_view outcome) {
  while (outcome.ends_with('|')) outcome.remove_suffix(1);
  CatTo(lines_, "编号为：", bill.bill_no, "的", ClassName(bill.class_type), "单据",
        bill.IsUnAudit() ? "反" : "", outcome, "|");
}

void BatchResult::WriteTo(Dictionary& dct) {
  if (!started_) TakeEarlierLines(dct);
  dct.SetItem("BillInfo", lines_);
  dct.SetItem("ErrorMsg", error_message_);
  dct.SetItem("SuccessCount", success_count_);
  dct.SetItem("FailCount", fail_count_);
  dct.SetItem("NegItemID", JoinedIDs(negative_items_));
}

}  // namespace tavcc
