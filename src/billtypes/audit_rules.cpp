#include "billtypes/audit_rules.h"

#include "balances/periods.h"
#include "foundation/conversions.h"
#include "foundation/host_services.h"

namespace tavcc {

Verdict CheckMaker(PlugIn& self, std::string_view sDsn, const Value& biller_id) {
  if (NumberOrZero(GetProfile(self.host(), sDsn, "SingleMan", "General")) == 1) return Pass();
  if (NumberOrZero(biller_id) != self.user_id()) return Pass();
  return Refuse("审核人与制单人不能为同一人！");
}

Verdict CheckPeriod(PlugIn& self, std::string_view sDsn, const Value& bill_date) {
  PlugIn system_info(self.host());  // the period is asked of an object of its own
  if (DateInCurrentPeriod(system_info, sDsn, ToDate(bill_date))) return Pass();
  return Refuse("不能审核非当前期间的单据！");
}

}  // namespace tavcc
