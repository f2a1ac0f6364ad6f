#pragma once

#include <string>

#include "frame/call/data_source.h"
#include "velmora/collections/date.h"

namespace velmora {

/// The date for new receivables (`bArp`) or payables documents: the server's date and
/// time while its day lies in the current period, else that period's last day. Raises
/// when the period has no calendar row. `sDsn` is what `dataSource` was made from; the
/// queries run through a second public object of the same transaction.
collections::Date currentFinancialDate(const CDataSource& dataSource, const std::string& sDsn,
                                       bool bArp);

}  // namespace velmora
