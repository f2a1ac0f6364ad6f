#pragma once

#include <map>
#include <string>
#include <vector>

#include "cli/settlement/document_columns.h"
#include "velmora/collections/decimal.h"
#include "velmora/collections/vector.h"

namespace velmora::cli {

/// A settlement of two tables of open documents, of which one may be nothing.
struct SettlementRun {
  SettlementMode mode;
  std::vector<std::string> groupBy;
  ado::RecordsetRef source, destination;
  collections::VectorRef rows;  ///< the settlement rows

  /// Settles. Raises Failure telling why the component could not.
  void run();

  /// What became of a side in one currency; without the column FCurrencyID all are one.
  struct SideSummary {
    std::string side, currency;
    std::size_t documents = 0, openDocuments = 0;
    collections::Decimal settled = 0, open = 0;
  };
  std::vector<SideSummary> summary() const;
  std::size_t pairs() const { return rows->Size() / 2; }

  /// What does not add up, one text each: on every document entry settled plus open is the
  /// original, nothing is settled beyond it, and what this run settled is what the
  /// settlement rows say; every settlement row and its mirror agree.
  std::vector<std::string> faults() const;

  /// The settlement rows as a table.
  ado::RecordsetRef table() const;

  /// Settled amounts by document entry.
  using AmountsOfEntries = std::map<std::string, collections::Decimal>;
  AmountsOfEntries settledBefore = {};
};

}  // namespace velmora::cli
