// The rows of the catalogue. A new refusal of a rule is a new text here; a test compares the two.

#include "registry/refusals.h"

#include <cstddef>

namespace tavcc {

namespace {

using Methods = std::string_view[];

// ---- Methods that share a gate -----------------------------------------------------------------

constexpr Methods kVerifying = {"PublicSysInfo.VerifyDataBeforeAudit", "PublicSysInfo.AuditBill"};
constexpr Methods kUnAuditByOthers = {"PublicSysInfo.VerifyUnCheckForSelf",
                                      "PublicSysInfo.AuditBill"};
constexpr Methods kBatch = {"PublicSysInfo.AuditBill"};
constexpr Methods kClassAudit = {"cls_CX.VerifyDataBeforeAudit", "cls_CX.AuditBill",
                                 "cls_DB.VerifyDataBeforeAudit", "cls_DB.AuditBill",
                                 "cls_ZZ.VerifyDataBeforeAudit", "cls_ZZ.AuditBill"};
constexpr Methods kVerifyingAndClassAudit = {
    "PublicSysInfo.VerifyDataBeforeAudit", "PublicSysInfo.AuditBill",
    "cls_CX.VerifyDataBeforeAudit",        "cls_CX.AuditBill",
    "cls_DB.VerifyDataBeforeAudit",        "cls_DB.AuditBill",
    "cls_ZZ.VerifyDataBeforeAudit",        "cls_ZZ.AuditBill"};
constexpr Methods kClassUnAudit = {"cls_CX.VerifyDataBeforeUnAudit", "cls_CX.UnAuditBill",
                                   "cls_DB.VerifyDataBeforeUnAudit", "cls_DB.UnAuditBill",
                                   "cls_ZZ.VerifyDataBeforeUnAudit", "cls_ZZ.UnAuditBill"};
constexpr Methods kVerifyingAndClassUnAudit = {
    "PublicSysInfo.VerifyDataBeforeAudit", "PublicSysInfo.AuditBill",
    "cls_CX.VerifyDataBeforeUnAudit",      "cls_CX.UnAuditBill",
    "cls_DB.VerifyDataBeforeUnAudit",      "cls_DB.UnAuditBill",
    "cls_ZZ.VerifyDataBeforeUnAudit",      "cls_ZZ.UnAuditBill"};
constexpr Methods kVerifyingAndSingleAudit = {"PublicSysInfo.VerifyDataBeforeAudit",
                                              "PublicSysInfo.AuditBill",
                                              "cls_ZZ.VerifyDataBeforeAudit",
                                              "cls_ZZ.AuditBill",
                                              "CheckProfit.CheckBill",
                                              "CheckLoss.CheckBill",
                                              "AdjustPrice.CheckBill"};
constexpr Methods kSinglePeriod = {"cls_ZZ.VerifyDataBeforeAudit",   "cls_ZZ.AuditBill",
                                   "cls_ZZ.VerifyDataBeforeUnAudit", "cls_ZZ.UnAuditBill",
                                   "CheckProfit.CheckBill",          "CheckLoss.CheckBill",
                                   "AdjustPrice.CheckBill"};
constexpr Methods kCheckBill = {"CheckProfit.CheckBill", "CheckLoss.CheckBill",
                                "AdjustPrice.CheckBill"};
constexpr Methods kRelatedState = {
    "PublicSysInfo.CanCheckGH", "PublicSysInfo.CanCheckGJ", "PublicSysInfo.OtherBillCanCheck",
    "PublicSysInfo.VerifyDataBeforeAudit", "PublicSysInfo.AuditBill"};
constexpr Methods kOwnOfPurchases = {"PublicSysInfo.CanCheckGH", "PublicSysInfo.CanCheckGJ",
                                     "PublicSysInfo.VerifyDataBeforeAudit",
                                     "PublicSysInfo.AuditBill"};
constexpr Methods kPurchaseGate = {
    "PublicSysInfo.CanCheckGH", "PublicSysInfo.VerifyDataBeforeAudit", "PublicSysInfo.AuditBill"};
constexpr Methods kPurchaseAndOtherGate = {
    "PublicSysInfo.CanCheckGH", "PublicSysInfo.OtherBillCanCheck",
    "PublicSysInfo.VerifyDataBeforeAudit", "PublicSysInfo.AuditBill"};
constexpr Methods kEstimateGate = {
    "PublicSysInfo.CanCheckGJ", "PublicSysInfo.VerifyDataBeforeAudit", "PublicSysInfo.AuditBill"};
constexpr Methods kRebateGate = {"PublicSysInfo.CanCheckFL", "PublicSysInfo.VerifyDataBeforeAudit",
                                 "PublicSysInfo.AuditBill"};
constexpr Methods kOtherGate = {"PublicSysInfo.OtherBillCanCheck",
                                "PublicSysInfo.VerifyDataBeforeAudit", "PublicSysInfo.AuditBill"};
constexpr Methods kCredit = {"PublicSysInfo.CheckCredit", "PublicSysInfo.AuditBill"};
constexpr Methods kLimitPrices = {"PublicSysInfo.CheckLimitPrice",
                                  "PublicSysInfo.SteelCheckLimitPrice", "PublicSysInfo.AuditBill"};
constexpr Methods kOverdue = {"PublicSysInfo.CheckUnCheckAmountOutOfDate"};
constexpr Methods kInvoice = {"PublicSysInfo.WhetherBillInvoiceStatus"};
constexpr Methods kStockCheck = {"PublicSysInfo.CheckItemStockNum"};
constexpr Methods kDeleting = {"PublicSysInfo.VerifyDataBeforeDelete", "PublicSysInfo.DeleteBill",
                               "cls_CX.VerifyDataBeforeDelete",        "cls_CX.DeleteBill",
                               "cls_DB.VerifyDataBeforeDelete",        "cls_DB.DeleteBill",
                               "cls_ZZ.VerifyDataBeforeDelete",        "cls_ZZ.DeleteBill"};
constexpr Methods kDeletingTemplate = {"cls_Template.VerifyDataBeforeDelete",
                                       "cls_Template.DeleteBill"};
constexpr Methods kHook = {"cls_DB.BeforeDel", "cls_ZZ.BeforeDel"};
constexpr Methods kOtherHook = {"clsOtherIn.BeforeDel", "clsOtherOut.BeforeDel"};
constexpr Methods kEachHook = {"cls_DB.BeforeDel", "cls_ZZ.BeforeDel", "clsOtherIn.BeforeDel",
                               "clsOtherOut.BeforeDel"};

// ---- Texts -------------------------------------------------------------------------------------

using Texts = RefusalText[];

constexpr Texts kMissing = {
    {"该单据不存在！", kVerifyingAndClassUnAudit},
    {"该单据不存在，不能审核！", kClassAudit},
    {"当前单据不存在或已经被删除。", kRelatedState},
    {"该单据不存在，可能已经被删除！", kCheckBill},
};
constexpr Texts kAudited = {
    {"该单据已被审核，不能再审核！", kVerifyingAndClassAudit},
    {"单据已经审核,不能再审核。", kRelatedState},
    {"该单据已经审核,不允许再次审核!", kCheckBill},
};
constexpr Texts kNotAudited = {
    {"该单据未审核，不能反审核！", kVerifyingAndClassUnAudit},
    {"单据尚未审核,不能反审核。", kRelatedState},
    {"该单据未审核，不允许反审核！", kCheckBill},
};
constexpr Texts kClosed = {{"该单据已关闭，不能反审核！", kVerifying}};
constexpr Texts kLinked = {
    {"该单据被其他单据关联，不能反审核！", kClassUnAudit},
    {"该单据已被其他单据关联，不允许反审核！", kCheckBill},
};
constexpr Texts kDownstream = {
    {"该单据已被关联生成下游单据,不能反审核！", kVerifying},
    {"单据已被其他单据关联,请先删除下游单据。", kOwnOfPurchases},
};
constexpr Texts kVoucher = {
    {"该单据已生成凭证，不能反审核！", kVerifyingAndClassUnAudit},
    {"该单据已生成凭证，不能审核！", kClassAudit},
    {"单据已经生成凭证,请先删除凭证。", kRelatedState},
    {"该单据已生成凭证，不允许反审核！", kCheckBill},
};
constexpr Texts kReversalVoucher = {
    {"估价冲回单对应红单已经生成凭证，请先删除凭证。", kPurchaseGate}};
constexpr Texts kDayEnd = {{"不能反审核日结生成的单据！", kVerifying}};
constexpr Texts kMadeBySystem = {{"机制单据，不能进行审核、反审核操作。", kEstimateGate}};
constexpr Texts kRejected = {{"该单据为驳回状态!", kBatch}};
constexpr Texts kInvoiced = {{"单据有开票记录，不能反审核！", kInvoice}};
constexpr Texts kPaid = {
    {"购货单已经被付款，不允许反审核，请检查。", kPurchaseGate},
    {"采购返利单已经被付款，不允许反审核，请检查。", kRebateGate},
    {"销售返利单已经被收款，不允许反审核，请检查。", kRebateGate},
};
constexpr Texts kNoRight = {{"您没有该单据对应基础资料的权限", kBatch}};
constexpr Texts kOwnBill = {
    {"审核人与制单人不能为同一人！", kVerifyingAndSingleAudit},
    {"不能审核自己的单据。", kOwnOfPurchases},
    {"审核和制单不能是同一人。", kOtherGate},
    {"不能反审核自己的单据。", kOwnOfPurchases},
};
constexpr Texts kNotAuditor = {{"不能反审核其他人审核的单据！", kUnAuditByOthers}};
constexpr Texts kPeriod = {
    {"不能审核以前期间的单据！", kVerifying},
    {"不能反审核以前期间的单据！", kVerifying},
    {"不能审核以前期间的单据。", kPurchaseAndOtherGate},
    {"不能审核非以前期间的单据。", kEstimateGate},
    {"不能反审核以前期间的单据。", kRelatedState},
    {"不能审核非当前期间的单据！", kSinglePeriod},
};
constexpr Texts kZeroPrice = {{"第%1行商品单价为零,审核不成功！", kVerifying}};
constexpr Texts kBelowLimit = {{"出现销售价格低于限价的商品", kLimitPrices}};
constexpr Texts kAboveLimit = {{"出现采购价格高于限价的商品", kLimitPrices}};
constexpr Texts kCreditExceeded = {
    {"当前%1的信用额度为：%2，截止到本次往来余额已经超出。", kCredit}};
constexpr Texts kPayableOverdue = {
    {"截止到今天购货单存在存在超期的未付的款项，控制不允许入货", kOverdue}};
constexpr Texts kReceivableOverdue = {
    {"截止到今天%1存在超期的未收的款项，控制不允许出库", kOverdue}};
constexpr Texts kNegativeStock = {{"审核出现负库存商品！", kBatch}};
constexpr Texts kNegativeBatch = {{"分批认定法计价的商品,不允许负库存出库！", kBatch}};
constexpr Texts kSerialMissing = {{"该单据存在未设置SN号的商品!", kBatch}};
constexpr Texts kSerialReused = {{"该单存在已被其他单据使用的S/N号，不能删除！", kEachHook}};
constexpr Texts kDeleted = {
    {"该单据已被删除！", kDeleting},
    {"该清单已被删除！", kDeletingTemplate},
};
constexpr Texts kDeleteAudited = {
    {"该单据已被审核，不能删除！", kDeleting},
    {"单据已经审核,不允许删除。", kHook},
    {"单据已经审核，不能删除。", kOtherHook},
};
constexpr Texts kDeleteVoucher = {{"该单据已生成凭证，不能删除！", kDeleting}};
constexpr Texts kDeletePeriod = {
    {"不能删除以前期间的单据。", kHook},
    {"不能删除以前前期间的单据。", kOtherHook},
};
constexpr Texts kDeleteForeign = {
    {"只允许修改自己的单据。", kHook},
    {"之能修改自己的单据。", kOtherHook},
};
constexpr Texts kNoDictionary = {{"未传入单据对象数据包！", kStockCheck}};
constexpr Texts kUnknownClass = {{"无效的业务对象值！", kStockCheck}};

// ---- The catalogue -----------------------------------------------------------------------------

constexpr Refusal kRefusals[] = {
    {"bill.missing",
     kMissing,
     {"The bill's head is not in the database.", "数据库中没有该单据的表头。"},
     {"Look whether somebody deleted the bill, and whether its id and head table are the right ones.",
      "检查单据是否已被他人删除，内码和表头表名是否正确。"}},
    {"bill.audited",
     kAudited,
     {"The bill is audited already.", "该单据已经审核过。"},
     {"Nothing is left to do; to audit it again, un-audit it first.",
      "无需再审核；如需重新审核，请先反审核。"}},
    {"bill.not_audited",
     kNotAudited,
     {"The bill is not audited, so there is nothing to take back.", "该单据尚未审核，无从反审核。"},
     {"Audit it first, or leave it as it is.", "先审核，或保持原状。"}},
    {"bill.closed",
     kClosed,
     {"The bill's state is 2: it is closed.", "单据状态为2：已关闭。"},
     {"Open it again where it was closed, then un-audit it.", "先在关闭处取消关闭，再反审核。"}},
    {"bill.linked",
     kLinked,
     {"The bill's state is 2: another bill was made from it.",
      "单据状态为2：已有其他单据由它生成。"},
     {"Delete the bill that was made from it, then un-audit it.",
      "先删除由它生成的单据，再反审核。"}},
    {"bill.downstream",
     kDownstream,
     {"Another bill, or a payment, was made from this one.",
      "已由该单据生成下游单据或收付款单据。"},
     {"Delete what was made from it, then un-audit it.", "先删除下游单据，再反审核。"}},
    {"bill.voucher",
     kVoucher,
     {"An accounting voucher was made from the bill.", "该单据已生成会计凭证。"},
     {"Delete the voucher first.", "先删除凭证。"}},
    {"bill.reversal_voucher",
     kReversalVoucher,
     {"An accounting voucher was made from the red bill that reverses the estimate.",
      "估价冲回的红字单据已生成会计凭证。"},
     {"Delete the voucher of the red bill first.", "先删除红字单据的凭证。"}},
    {"bill.day_end",
     kDayEnd,
     {"Day-end processing made the bill.", "该单据由日结生成。"},
     {"Take the day's end back instead of the bill.", "请取消日结，而不是反审核该单据。"}},
    {"bill.made_by_system",
     kMadeBySystem,
     {"The system made the bill; it goes with the bill it belongs to.",
      "该单据由系统生成，随其所属单据一同处理。"},
     {"Audit or un-audit the bill it belongs to.", "请审核或反审核其所属的单据。"}},
    {"bill.rejected",
     kRejected,
     {"An approver has rejected the bill.", "该单据已被审批人驳回。"},
     {"Correct the bill and submit it again.", "修改单据后重新提交。"}},
    {"bill.invoiced",
     kInvoiced,
     {"Invoices were written for the bill.", "该单据已有开票记录。"},
     {"Take the invoices back first.", "先取消开票。"}},
    {"bill.paid",
     kPaid,
     {"A payment, a receipt or a settlement refers to the bill.",
      "已有付款、收款或核销单据引用该单据。"},
     {"Delete the payment, receipt or settlement first.", "先删除相应的付款、收款或核销单据。"}},
    {"user.no_right",
     kNoRight,
     {"The user has no right on bills of this class.", "当前用户没有该类单据的权限。"},
     {"Have the right given, or audit as another user.", "请授予权限，或换用有权限的用户审核。"}},
    {"user.own_bill",
     kOwnBill,
     {"The user made the bill, and maker and auditor must be two people.",
      "单据由当前用户制单，而制单人与审核人不得为同一人。"},
     {"Have somebody else audit it, or set General/SingleMan to 1.",
      "由他人审核，或将 General/SingleMan 设为1。"}},
    {"user.not_auditor",
     kNotAuditor,
     {"Somebody else audited the bill, and only the auditor may un-audit it.",
      "该单据由他人审核，且只有审核人本人可以反审核。"},
     {"Have its auditor un-audit it, or set IC/UnCheckOnlySelf to 0.",
      "由原审核人反审核，或将 IC/UnCheckOnlySelf 设为0。"}},
    {"period.closed",
     kPeriod,
     {"The bill's date lies before the current accounting period.", "单据日期早于当前会计期间。"},
     {"Give the bill a date within the current period.", "将单据日期改到当前期间之内。"}},
    {"price.zero",
     kZeroPrice,
     {"Lines that touch a stock of type 500 have no price.", "涉及500类仓库的分录没有单价。"},
     {"Enter a price on the lines named.", "在所列各行录入单价。"}},
    {"price.below_limit",
     kBelowLimit,
     {"A line sells below its limit price.", "有商品的销售价格低于限价。"},
     {"Raise the price, or lower the item's limit price.", "提高售价，或下调该商品的限价。"}},
    {"price.above_limit",
     kAboveLimit,
     {"A line buys above its limit price.", "有商品的采购价格高于限价。"},
     {"Lower the price, or raise the item's limit price.", "降低进价，或上调该商品的限价。"}},
    {"credit.exceeded",
     kCreditExceeded,
     {"The partner's balance and the bill's amount exceed the credit line.",
      "往来余额加上本单金额超出信用额度。"},
     {"Have the partner pay, or raise the credit line.", "先收付款，或提高信用额度。"}},
    {"overdue.payable",
     kPayableOverdue,
     {"The supplier's purchase bills are past their settlement deadline with an amount unpaid.",
      "该供应商有超过结算期限而未付清的购货单。"},
     {"Pay the overdue bills, or set IC/AlertOverdue to 0.",
      "付清超期单据，或将 IC/AlertOverdue 设为0。"}},
    {"overdue.receivable",
     kReceivableOverdue,
     {"The customer's sales bills are past their settlement deadline with an amount not received.",
      "该客户有超过结算期限而未收清的销售单。"},
     {"Collect the overdue amounts, or set IC/AlertOverdue to 0.",
      "收清超期款项，或将 IC/AlertOverdue 设为0。"}},
    {"stock.negative",
     kNegativeStock,
     {"The bill takes more out of a stock than lies there.", "出库数量大于库存数量。"},
     {"Lower the quantity, receive goods first, or set IC/UnderStock to 1.",
      "减少数量，先入库，或将 IC/UnderStock 设为1。"}},
    {"stock.negative_batch",
     kNegativeBatch,
     {"The bill takes more out of a batch than it holds, and the item is valued by specific "
      "identification.",
      "出库数量大于批次库存，而该商品按分批认定法计价。"},
     {"Lower the quantity or take another batch; no setting allows it.",
      "减少数量或改用其他批次；没有设置可以放行。"}},
    {"serial.missing",
     kSerialMissing,
     {"A line's item is kept by serial number, and the line has none.",
      "有序列号管理的商品未录入序列号。"},
     {"Enter the line's serial numbers and save the bill.", "录入该行的序列号并保存单据。"}},
    {"serial.reused",
     kSerialReused,
     {"A serial number of the bill was used by a later bill.", "该单据的序列号已被后续单据使用。"},
     {"Delete the later bill first.", "先删除后续单据。"}},
    {"delete.missing",
     kDeleted,
     {"There is no such bill; it was deleted before.", "没有该单据，此前已被删除。"},
     {"Nothing is left to do.", "无需处理。"}},
    {"delete.audited",
     kDeleteAudited,
     {"The bill is audited.", "该单据已审核。"},
     {"Un-audit the bill, then delete it.", "先反审核，再删除。"}},
    {"delete.voucher",
     kDeleteVoucher,
     {"An accounting voucher was made from the bill.", "该单据已生成会计凭证。"},
     {"Delete the voucher first.", "先删除凭证。"}},
    {"delete.period",
     kDeletePeriod,
     {"The bill's date lies before the current accounting period.", "单据日期早于当前会计期间。"},
     {"Bills of closed periods stay; correct them with a bill of the current period.",
      "以前期间的单据不可删除，请用当期单据更正。"}},
    {"delete.foreign",
     kDeleteForeign,
     {"Somebody else made the bill, and only its maker may change it.",
      "该单据由他人制单，且只允许制单人修改。"},
     {"Have its maker delete it, or set IC/EditSelfBill to 0.",
      "由制单人删除，或将 IC/EditSelfBill 设为0。"}},
    {"call.no_bill",
     kNoDictionary,
     {"The caller handed in no bill.", "调用方未传入单据。"},
     {"Hand in the bill's dictionary as oDict.", "以 oDict 传入单据字典。"}},
    {"call.unknown_class",
     kUnknownClass,
     {"The bill's class has no stock bills.", "该单据类别不属于库存单据。"},
     {"Hand in a ClassTypeID of a stock bill.", "传入库存单据的 ClassTypeID。"}},
};

// ---- Finding -----------------------------------------------------------------------------------

// The text before the first placeholder at or after `from`, and where the next piece begins.
std::string_view PieceAt(std::string_view pattern, size_t& from) {
  const size_t mark = pattern.find('%', from);
  const std::string_view piece = pattern.substr(from, mark - from);
  from = mark == std::string_view::npos ? pattern.size() : mark + 2;
  return piece;
}

// How many bytes at the end of the message the pattern takes, from its first piece on; 0 when the
// message does not end with it.
size_t MatchedAtEnd(std::string_view message, std::string_view pattern) {
  size_t at = 0;
  const std::string_view first = PieceAt(pattern, at);
  const size_t begin = at == pattern.size() && message.ends_with(first)
                           ? message.size() - first.size()
                           : message.find(first);
  if (begin == std::string_view::npos) return 0;
  size_t end = begin + first.size();
  while (at < pattern.size()) {
    const std::string_view piece = PieceAt(pattern, at);
    const size_t found = message.find(piece, end);
    if (found == std::string_view::npos) return 0;
    end = found + piece.size();
  }
  return end == message.size() ? message.size() - begin : 0;
}

}  // namespace

std::span<const Refusal> Refusals() {
  return kRefusals;
}

const Refusal* FindRefusal(std::string_view message) {
  while (message.ends_with('|')) message.remove_suffix(1);
  const Refusal* best = nullptr;
  size_t most = 0;
  for (const Refusal& refusal : kRefusals) {
    for (const RefusalText& text : refusal.texts) {
      const size_t matched = MatchedAtEnd(message, text.text);
      if (matched <= most) continue;
      most = matched;
      best = &refusal;
    }
  }
  return best;
}

}  // namespace tavcc
