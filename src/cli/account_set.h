#pragma once

#include <string>
#include <vector>

#include "velmora/ado/connection.h"

namespace velmora::cli {

struct Period {
  int year = 0;
  int period = 0;
};

/// "2009-03".
std::string toString(Period period);

/// Raises Failure when the database lacks the tables every account set has.
void requireAccountSet(ado::Connection& connection);

/// Empty when the account set tells none.
std::string companyName(ado::Connection& connection);

/// The current period of receivables or payables. Raises Failure when the account set
/// has none.
Period currentPeriod(ado::Connection& connection, bool receivables);

/// Raises Failure when the calendar does not know `period`.
void requireInCalendar(ado::Connection& connection, Period period);

/// The ids of the accounts with these numbers, "101,102", in the order given. Raises
/// Failure naming a number that no account has.
std::string accountIds(ado::Connection& connection, const std::vector<std::string>& numbers);

}  // namespace velmora::cli
