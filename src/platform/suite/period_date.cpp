#include "platform/suite/period_date.h"

#include <memory>

#include "platform/suite/account_set.h"
#include "velmora/ado/command.h"
#include "velmora/com/error.h"

namespace velmora::suite {

namespace {

constexpr const char* kProgId = "PeriodDate.clsPeriodDate";

}  // namespace

const com::DispatchTable<PeriodDate>& PeriodDate::dispatchTable() {
  static const auto table = [] {
    auto made = std::make_unique<com::DispatchTable<PeriodDate>>(
        "clsPeriodDate", kProgId, com::Guid::parse("2C7D9B14-0E5F-4A63-8D21-6A9F3C5B7E02"),
        com::IDispatch::kInterfaceId);
    made->method("GetPeriodStartEnd", &PeriodDate::GetPeriodStartEnd,
                 {"connectionString", "year", "period", "startDate", "endDate"});
    return made;
  }();
  return *table;
}

void PeriodDate::GetPeriodStartEnd(const std::string& connectionString, std::int32_t year,
                                   std::int32_t period, collections::Date& startDate,
                                   collections::Date& endDate) {
  const auto command = com::make<ado::Command>();
  command->ActiveConnection(openAccountSet(connectionString, kProgId));
  command->CommandText(
      "select FStartDate, FEndDate from t_PeriodDate where FYear = ? and FPeriod = ?");
  command->AppendParameter(ado::adInteger, 0, year);
  command->AppendParameter(ado::adInteger, 0, period);
  const auto rows = command->Execute();
  if (rows->EOF_())
    throw com::Error(com::error::kInvalidArgument, kProgId,
                     "Period " + std::to_string(period) + " of year " + std::to_string(year) +
                         " is not in the accounting calendar (t_PeriodDate)");
  startDate = rows->GetValue(0).toDate();
  endDate = rows->GetValue(1).toDate();
}

}  // namespace velmora::suite
