#pragma once

#include <string>

namespace velmora::amount {

// Creation of the work tables, which live on one connection from the first statement of
// a check to its last. Each text is a statement with the table's indexes.

/// #AmtCheck, the rows of the result. The initial check has balances only; the closing
/// check names no currency on its rows.
std::string createAmtCheck(bool withCurrencyName, bool withMovements);

/// #AmtDetail, one row an account and item, from which #AmtCheck is summed.
std::string createAmtDetail(bool withMovements);

/// #AmtAcct, the accounts of the ledger's side of a closing check with their signs.
std::string createAmtAcct();

/// The three tables of a closing check; #AmtDetail with `detail` only.
std::string GetClosingTableSql(bool detail);

}  // namespace velmora::amount
