#pragma once

// What the period and the closing check say alike.

#include <string>

#include "checks/amount/amount_filter.h"
#include "common/sql_lines.h"
#include "frame/call/data_source.h"

namespace velmora::amount {

/// Detail items (t10) of the filter's class, of its number range, and those that the
/// caller's user may see: condition of a seed statement.
std::string itemConditions(const AmountFilter& filter, const CDataSource* dataSource);

/// Sets every difference of `table`: GL minus AR/AP.
void addDifferences(SqlLines& batch, const char* table, bool withMovements);

/// Fills names and decimals of the result rows by account and item number.
/// `currencyMatch` tells which currency (t9) a row shows.
void addNames(SqlLines& batch, const AmountFilter& filter, bool withCurrencyName,
              const std::string& currencyMatch);

/// The row's own currency, or the local one where all are taken together.
std::string shownCurrency(const AmountFilter& filter);

}  // namespace velmora::amount
