#include "common/periods.h"

#include <algorithm>
#include <array>

#include "common/system_profile.h"
#include "velmora/com/class_table.h"

namespace velmora {

using collections::Date;
using collections::Variant;

namespace {

struct PeriodDates {
  Date start, end;
};

PeriodDates askPeriodService(const CDataSource& dataSource, bool bArp, std::int32_t year,
                             std::int32_t period) {
  if (year == 0) year = readCurrentYear(dataSource, bArp);
  if (period == 0) period = readCurrentPeriod(dataSource, bArp);
  const auto service = com::CreateObject("PeriodDate.clsPeriodDate");
  std::array<Variant, 5> arguments{dataSource.parser().PropsString(), year, period, Date(), Date()};
  service->Invoke("GetPeriodStartEnd", arguments);
  return {arguments[3].toDate(), arguments[4].toDate()};
}

/// The first column of the first row; Null without a row.
Variant queryValue(ado::Connection& connection, const std::string& query) {
  const auto rows = connection.Execute(query);
  return rows->EOF_() ? Variant(collections::Null{}) : rows->GetValue(0);
}

bool isNullOrEmpty(const Variant& value) {
  return value.isNull() || value.toText().empty();
}

}  // namespace

Date GetPeriodStartDate(const CDataSource& dataSource, bool bArp, std::int32_t year,
                        std::int32_t period) {
  return askPeriodService(dataSource, bArp, year, period).start;
}

Date GetPeriodEndDate(const CDataSource& dataSource, bool bArp, std::int32_t year,
                      std::int32_t period) {
  return askPeriodService(dataSource, bArp, year, period).end;
}

Date GetICStartDate(const CDataSource& dataSource) {
  const Date notStarted = Date::ymd(1900, 1, 1);
  const ScopedConnection connection(dataSource.UnCommittedConnection());
  const Variant year = queryValue(
      **connection, "SELECT FValue FROM t_systemprofile where FCategory='IC' and FKey='startyear'");
  if (isNullOrEmpty(year)) return notStarted;
  const Variant period =
      queryValue(**connection,
                 "SELECT FValue FROM t_systemprofile where FCategory='IC' and FKey='StartPeriod'");
  if (isNullOrEmpty(period)) return notStarted;
  const Variant start = queryValue(
      **connection, "SELECT FStartDate from t_perioddate\r\n    WHERE FYear=" + year.toText() +
                        " and Fperiod=" + period.toText());
  return start.isNull() ? notStarted : start.toDate();
}

std::int32_t GetMaxPeriod(const CDataSource& dataSource) {
  constexpr std::int32_t fewest = 12;
  const ScopedConnection connection(dataSource.UnCommittedConnection());
  const Variant last =
      queryValue(**connection, "SELECT max(FPeriod) as FPeriod FROM t_PeriodDate ");
  return last.isNull() ? fewest : std::max(fewest, last.toInt32());
}

}  // namespace velmora
