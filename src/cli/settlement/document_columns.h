#pragma once

#include <string>
#include <vector>

#include "cli/tables/table_file.h"

namespace velmora::cli {

/// What `velmora settle` is asked for.
struct SettlementMode {
  bool singleAmount = false;
  bool withQuantity = false;
};

/// What the cells of an open document's column are.
ColumnKind kindOfDocumentColumn(const std::string& name);

/// The columns of amounts and quantities in this mode.
struct AmountColumns {
  std::string whole, settled, open;
};
AmountColumns settlementAmounts(const SettlementMode& mode);  ///< in the settlement's currency
AmountColumns localAmounts();
AmountColumns quantities();

/// `table` fit for settlement. Columns of amounts must be there; the others are supplied
/// where `fill` says so: nothing settled yet, everything open, descriptions 0 or empty.
/// Raises Failure naming `file` and the missing columns.
ado::RecordsetRef openDocuments(const ado::RecordsetRef& table, const std::string& file,
                                const SettlementMode& mode, bool fill);

}  // namespace velmora::cli
