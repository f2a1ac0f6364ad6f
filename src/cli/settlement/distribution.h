#pragma once

#include <string>
#include <vector>

#include "cli/tables/table_file.h"
#include "velmora/collections/decimal.h"
#include "velmora/collections/vector.h"

namespace velmora::cli {

/// Amounts for the rows of a new document: which operation of the component fills them,
/// and how.
struct Distribution {
  enum class Rules { standard, extended, plain };

  Rules rules = Rules::standard;
  bool takeOpposite = false;  ///< standard: rows of the other sign give their whole amount
  bool restToLast = false;    ///< extended: the last row takes the whole rest
  bool copyPlanned = false;   ///< extended: planned quantity and amounts become the remaining
  collections::VectorRef options = com::make<collections::Vector>();

  /// "AMOUNT,INTO,LIMIT[,LIMIT2]": distributes over the rows. Raises UsageError.
  void addDistribution(const std::string& text);
  /// "SOURCE,INTO,LIMIT[,RATE[,multiply|divide[,PLACES]]]": converts a column.
  void addConversion(const std::string& text);

  /// The columns that hold numbers are those that the options name.
  ColumnKind kindOf(const std::string& column) const;
  /// Fills `rows`, to which missing target columns have been added. Raises Failure.
  ado::RecordsetRef fill(const ado::RecordsetRef& rows) const;
  /// What the options have left of their amounts.
  std::vector<collections::Decimal> rest() const;
};

}  // namespace velmora::cli
