#include "balances/periods.h"

#include "foundation/conversions.h"
#include "foundation/host_services.h"
#include "foundation/text.h"

namespace tavcc {

Value GetPeriodStartAndEndDate(PlugIn& self, std::string_view strConString, std::string& strBegDate,
                               std::string& strEndDate) {
  const int32_t year = ToLong(GetProfile(self.host(), strConString, "CurrentYear", "IC"));
  const int32_t period = ToLong(GetProfile(self.host(), strConString, "CurrentPeriod", "IC"));
  // The year is quoted as text, the period is not: as stored.
  const RecordsetPtr dates =
      ExecuteSQL(self.host(), strConString,
                 Cat("Select FStartDate,FEndDate from t_PeriodDate where FYear='", year, "'",
                     " And FPeriod=", period));
  if (dates->AtEnd()) return Empty{};
  strBegDate = ToText(dates->Field(0));
  strEndDate = ToText(dates->Field(1));
  return Empty{};
}

bool DateInCurrentPeriod(PlugIn& self, std::string_view strConString, DateTime dtDate) {
  std::string begin;
  std::string end;  // deliberately not looked at
  GetPeriodStartAndEndDate(self, strConString, begin, end);
  return ToDate(begin) <= dtDate;
}

}  // namespace tavcc
