#include "audit/credit_and_price.h"

#include "checks/credit.h"
#include "pricing/limit_price.h"

namespace tavcc {

namespace {

constexpr int16_t kNeedsCheck = 1;
constexpr int16_t kBlocks = 1;
constexpr int16_t kFailed = -1;

constexpr int16_t kMayProceed = 1;
constexpr int16_t kRefused = 0;

}  // namespace

int16_t CheckCreditAndPrice(PlugIn& self, const AuditedBill& bill, std::string_view sDsn,
                            std::string& message) {
  bool is_supplier = false;
  if (WhetherNeedCheckCredit(self, sDsn, bill.check_type, bill.dictionary) == kNeedsCheck) {
    const int16_t answer =
        CheckCredit(self, bill.dictionary, bill.check_type, sDsn, message, is_supplier);
    if (answer == kBlocks) return kRefused;
    if (answer == kFailed) return kFailed;
  }
  if (WhetherNeedCheckPrice(self, sDsn, bill.check_type, bill.dictionary) == kNeedsCheck) {
    RecordsetPtr offending;
    const int16_t answer = CheckLimitPrice(self, bill.dictionary, bill.check_type, sDsn, message,
                                           offending, is_supplier);
    if (answer == kBlocks) return kRefused;
    if (answer == kFailed) return kFailed;
  }
  return kMayProceed;
}

}  // namespace tavcc
