#pragma once

// The amount columns of the work tables: F + side + measure + Amount [+ For], For being
// the transaction currency. Side: Arp the AR/AP ledger, GL the general ledger, Diff GL
// minus AR/AP.

#include <string>
#include <string_view>
#include <vector>

namespace velmora::amount {

inline constexpr std::string_view kBalance;
inline constexpr std::string_view kMovements[] = {"Beg", "Debit", "Credit"};

/// The six columns of a measure: FArp<measure>AmountFor, FArp<measure>Amount, the same of
/// GL and of Diff.
std::vector<std::string> amountColumns(std::string_view measure);

/// Those of the balance and, where asked for, of the opening balance and the movements.
std::vector<std::string> amountColumns(bool withMovements);

/// The columns in one line, each as `before` + column + `after`, separated by commas.
std::string columnList(const std::vector<std::string>& columns, std::string_view before = "",
                       std::string_view after = "");

}  // namespace velmora::amount
