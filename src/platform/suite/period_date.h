#pragma once

#include <cstdint>
#include <string>

#include "velmora/com/dispatch_table.h"

namespace velmora::suite {

/// "PeriodDate.clsPeriodDate": the accounting calendar of an account set.
class PeriodDate final : public com::DispatchObject<PeriodDate> {
 public:
  static const com::DispatchTable<PeriodDate>& dispatchTable();

  /// First and last day of a period, from t_PeriodDate of the database that
  /// `connectionString` (the caller's whole string, with key ConnectString) names.
  /// Raises com::Error naming year and period when the calendar does not have it.
  void GetPeriodStartEnd(const std::string& connectionString, std::int32_t year,
                         std::int32_t period, collections::Date& startDate,
                         collections::Date& endDate);
};

}  // namespace velmora::suite
