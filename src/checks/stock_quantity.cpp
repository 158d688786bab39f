#include "checks/stock_quantity.h"

#include "checks/stock_quantity_loader.h"
#include "checks/stock_quantity_query.h"
#include "checks/stock_vector.h"
#include "foundation/bill_kinds.h"
#include "foundation/conversions.h"
#include "foundation/host_services.h"
#include "foundation/temp_bill_table.h"
#include "foundation/text.h"
#include "foundation/trap.h"

namespace tavcc {

namespace {

using namespace class_type;

constexpr int16_t kNoShortage = 1;
constexpr int16_t kShortage = 2;
constexpr int16_t kUnknownClass = 0;
constexpr int16_t kFailed = -1;

int16_t CheckStock(PlugIn& self, Dictionary* oDict, int16_t intCheckType, std::string_view sDsn,
                   std::string& strReturnMsg, RecordsetPtr& rs, const Vector* entries) {
  self.InitObjects(sDsn);
  const ConnectionPtr cn = self.db_context().GetConnection();
  self.db_context().ReadySecond();
  if (oDict == nullptr) {
    strReturnMsg = "未传入单据对象数据包！";
    return kFailed;
  }
  CreateTempBillTable(*cn);
  const int32_t class_type = ToLong(oDict->Item("ClassTypeID"));
  const int32_t bill_id = ToLong(oDict->Item("BillInterID"));
  ToLong(oDict->Item("BillType"));  // must be a number, though the check does not depend on it
  const auto tables = ResolveBillTables(class_type, intCheckType);
  if (!tables) {
    strReturnMsg = "无效的业务对象值！";
    return kUnknownClass;
  }
  if (entries != nullptr) {
    LoadBillFromVector(*cn, class_type, bill_id, *entries);
  } else {
    LoadBillFromDatabase(self.host(), *cn, *tables, class_type, bill_id, intCheckType,
                         strReturnMsg);
  }
  if (!Trim(strReturnMsg).empty()) return kFailed;

  RecordsetPtr rows = QueryNegativeStock(*cn, CountsUnauditedIssues(self.host(), sDsn));
  if (rows == nullptr || !rows->IsOpen()) return kNoShortage;
  rows->Detach();
  rs = std::move(rows);
  return rs->AtEnd() ? kNoShortage : kShortage;
}

}  // namespace

bool ChecksStock(int16_t intCheckType, int32_t class_type, int32_t bill_type) {
  constexpr int32_t kSalesRebates[] = {3020, 3021};
  constexpr int32_t kPurchaseRebates[] = {2040, 2041};
  constexpr int32_t kTakenOnAudit[] = {2012, 2031, 3001, 3003, 3010};
  constexpr int32_t kTakenOtherwise[] = {2011, 2030, 3002, 3004, 3011};
  switch (class_type) {
    case kAssembly:
    case kDisassembly:
    case kTransfer:
      return true;
    case kOtherIssue:
    case kCheckLoss:
    case kSalesRebate:
      return intCheckType == kAudit && !IsInArray(bill_type, kSalesRebates);
    case kOtherReceipt:
    case kCheckGain:
    case kPurchaseRebate:
      return intCheckType == kUnAudit && !IsInArray(bill_type, kPurchaseRebates);
    default:
      return intCheckType == kAudit ? IsInArray(bill_type, kTakenOnAudit)
                                    : IsInArray(bill_type, kTakenOtherwise);
  }
}

bool MovesStock(int32_t class_type, int32_t bill_type) {
  constexpr int32_t kMoving[] = {kCheckGain,   kCheckLoss,    kAssembly,
                                 kDisassembly, kTransfer,     kSalesBill,
                                 kConsignment, kPurchaseBill, kPurchaseEstimate};
  constexpr int32_t kMovingUnlessValueOnly[] = {kOtherReceipt, kOtherIssue, kSalesRebate,
                                                kPurchaseRebate};
  if (IsInArray(class_type, kMoving)) return true;
  return IsInArray(class_type, kMovingUnlessValueOnly) &&
         !IsInArray(bill_type, bill_types::kValueOnly);
}

Value AllowMinusStockNum(PlugIn&, std::string_view) {
  return Empty{};
}

int16_t WhetherCheckStockNum(PlugIn&, int16_t intCheckType, Dictionary& oDict) {
  return Trap(
      [&]() -> int16_t {
        const int32_t bill_type = ToLong(oDict.Item("BillType"));
        return ChecksStock(intCheckType, ToLong(oDict.Item("ClassTypeID")), bill_type) ? 1 : 0;
      },
      [](const AutomationError&) -> int16_t { return 0; });
}

int16_t WhetherNeedUpdateStockNum(PlugIn&, int16_t, Dictionary& oDict) {
  return Trap(
      [&]() -> int16_t {
        const int32_t bill_type = ToLong(oDict.Item("BillType"));
        return MovesStock(ToLong(oDict.Item("ClassTypeID")), bill_type) ? 1 : 0;
      },
      [](const AutomationError&) -> int16_t { return 0; });
}

int16_t CheckItemStockNum(PlugIn& self, Dictionary* oDict, int16_t intCheckType,
                          std::string_view sDsn, std::string& strReturnMsg, RecordsetPtr& rs,
                          std::string_view OptAboutUnderStock, Vector* vct) {
  const Vector* entries = EqualsIgnoringCase(OptAboutUnderStock, "SAVE") ? vct : nullptr;
  return Trap(
      [&] { return CheckStock(self, oDict, intCheckType, sDsn, strReturnMsg, rs, entries); },
      [&](const AutomationError& error) {
        if (Trim(strReturnMsg).empty()) strReturnMsg = error.description();
        return kFailed;
      });
}

}  // namespace tavcc
