#pragma once

#include <cstdint>

#include "frame/call/data_source.h"
#include "velmora/collections/date.h"

namespace velmora {

/// First and last day of a receivables (`bArp`) or payables period; a year or period
/// of 0 stands for the current one. Asked of the suite's period service, whose errors
/// pass through.
collections::Date GetPeriodStartDate(const CDataSource& dataSource, bool bArp, std::int32_t year,
                                     std::int32_t period);
collections::Date GetPeriodEndDate(const CDataSource& dataSource, bool bArp, std::int32_t year,
                                   std::int32_t period);

/// First day of the inventory module's start period; 1900-01-01 when the module has
/// not been started.
collections::Date GetICStartDate(const CDataSource& dataSource);

/// Periods of a year: the calendar's, never less than 12.
std::int32_t GetMaxPeriod(const CDataSource& dataSource);

}  // namespace velmora
