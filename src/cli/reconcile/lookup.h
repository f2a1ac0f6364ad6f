#pragma once

// What a person names on the command line, looked up in the account set. Each raises
// Failure naming a value that is not there.

#include <optional>
#include <string>

#include "cli/account_set.h"

namespace velmora::cli {

struct Currency {
  int id = 0;        ///< 0: all currencies together
  std::string name;  ///< empty for all
};

/// A currency by its number ("USD") or id.
Currency findCurrency(ado::Connection& connection, const std::string& text);

void requireItemClass(ado::Connection& connection, int itemClass);

/// First and last item number; empty: open.
struct NumberRange {
  std::string first, last;
};

/// "FROM..TO", either end may be missing. Raises UsageError for anything else and for a
/// range that is upside down.
NumberRange parseRange(const std::string& text);

/// Raises Failure when the class has no detail item in `range`.
void requireItems(ado::Connection& connection, int itemClass, const NumberRange& range);

/// The period in which receivables or payables were taken into use.
Period firstPeriod(ado::Connection& connection, bool receivables);

/// Which accounts a default list is made of.
struct AccountUse {
  bool receivables = true;
  int itemClass = 1;
  bool stockReceipts = false;  ///< also those of estimated liabilities
};

/// Numbers of the control accounts that the side's document types and contacts use, in
/// order.
std::vector<std::string> controlAccounts(ado::Connection& connection, const AccountUse& use);

}  // namespace velmora::cli
