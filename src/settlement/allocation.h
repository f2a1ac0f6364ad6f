#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "settlement/open_documents.h"
#include "settlement/pair_rows.h"
#include "settlement/remaining_amounts.h"

namespace velmora::settlement {

/// What all runs of one settlement share.
struct Settlement {
  collections::DictionaryRef dFields;  ///< BuildFieldMap and the caller's string as "sDsn"
  collections::DictionaryRef dCopyMap;
  PairRows pairRows;
  std::int32_t lCheckAmtFor = 0, lCheckWithQty = 0;
  collections::VectorRef rsChkInfo;
  RemainingAmounts remaining;
  bool databaseAsked = false;
};

/// How an amount of the second recordset's document counts on the first's: documents of
/// one side cancel one another, documents of two sides are of the same direction.
enum class Sign { withinSide, acrossSides };

/// Offsets the open amount of each document of `second` against the open documents of
/// `first`, in their order, until one of them is used up; writes what is settled and
/// open into both and appends the settlement rows, each with what remains after it and
/// the earlier ones, the caller's included. The filters choose the documents
/// and are in force afterwards, both recordsets on their first row.
///
/// A settled document leaves the view at once, so that every step uses up a document:
/// the cost is that of the documents and pairs.
///
/// Raises when a column is missing, a value is no number or a result does not fit its
/// column; what was settled stays, the pair at work is left as it was.
void AllocatePair(Settlement& settlement, Side& first, Side& second, Sign sign,
                  const std::string& firstFilter, const std::string& secondFilter);

}  // namespace velmora::settlement
