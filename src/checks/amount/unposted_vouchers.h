#pragma once

#include <string>

#include "checks/amount/amount_filter.h"

namespace velmora::amount {

/// Adds the period's vouchers that are not posted yet to the ledger's side of the work
/// table; for the period and the closing check.
std::string unpostedVouchers(const AmountFilter& filter);

}  // namespace velmora::amount
