#pragma once

#include "velmora/collections/date.h"

namespace velmora::cli::demo {

/// Accounting periods are calendar months, counted from 2008-01, the first in use.
inline constexpr int kBeforeFirstPeriod = -1;
inline constexpr int kCurrentPeriod = 14;  ///< 2009-03
inline constexpr int kPeriods = kCurrentPeriod + 1;

constexpr int yearOf(int period) {
  return period < 0 ? 2007 : 2008 + period / 12;
}
constexpr int monthOf(int period) {
  return period < 0 ? 12 : period % 12 + 1;
}

inline collections::Date dateIn(int period, int day) {
  return collections::Date::ymd(yearOf(period), monthOf(period), day);
}

}  // namespace velmora::cli::demo
