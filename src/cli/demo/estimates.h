#pragma once

#include "cli/demo/books.h"

namespace velmora::cli::demo {

/// Receipts of goods and of outsourced work whose invoice had not come when their month
/// ended, with the liabilities estimated for them; payables only. About one for twenty
/// of `documents`, and as many as it takes that every way such an estimate can end
/// occurs in the current period and the four before it.
void addEstimates(Books& books, int documents);

}  // namespace velmora::cli::demo
