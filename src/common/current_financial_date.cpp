#include "common/current_financial_date.h"

#include "common/system_profile.h"
#include "velmora/com/context.h"
#include "velmora/com/error.h"
#include "velmora/public.h"

namespace velmora {

using collections::Date;

namespace {

constexpr const char* kCalendarPeriodOfToday =
    "select getdate() as FCurDate, * from t_perioddate"
    " where fstartdate <= convert(datetime,convert(varchar(30),getdate(),111))"
    " and fenddate >=convert(datetime,convert(varchar(30),getdate(),111))";

}  // namespace

Date currentFinancialDate(const CDataSource& dataSource, const std::string& sDsn, bool bArp) {
  // Open for the whole look-up: the queries' own connections then find the account set open.
  const ScopedConnection held(dataSource.UnCommittedConnection());
  const std::int32_t year = readCurrentYear(dataSource, bArp);
  const std::int32_t period = readCurrentPeriod(dataSource, bArp);
  const auto queries = com::GetObjectContext().CreateInstance(_clsPublic::kProgId);
  const auto rowsOf = [&](const std::string& query) {
    return com::call(*queries, "GetData", sDsn, query).toObject<ado::Recordset>();
  };

  const auto today = rowsOf(kCalendarPeriodOfToday);
  if (!today->EOF_() && today->Fields()("FYear").Value().toInt32() == year &&
      today->Fields()("FPeriod").Value().toInt32() == period)
    return today->Fields()("FCurDate").Value().toDate();

  const auto current = rowsOf("select * from t_perioddate where fyear = " + std::to_string(year) +
                              " and fperiod = " + std::to_string(period));
  if (current->EOF_())
    throw com::Error(com::error::kInvalidArgument, "clsPublic",
                     "the calendar has no period " + std::to_string(period) + " of year " +
                         std::to_string(year) + ", the current one of " +
                         (bArp ? "receivables" : "payables"));
  return current->Fields()("FEndDate").Value().toDate();
}

}  // namespace velmora
