#pragma once

#include <cstdint>
#include <string>

#include "settlement/allocation.h"

namespace velmora::settlement {

/// Settles the documents of one group, those that `groupFilter` shows (empty: all):
/// on each side the negative ones, credit notes and refunds, against the positive ones,
/// then the destination's against the source's. A side may be nothing. Both show the
/// group afterwards, on its first row. Raises as AllocatePair.
void SettleGroup(Settlement& settlement, Side& source, Side& destination,
                 const std::string& groupFilter);

/// _clsPublic::AmtSettlement, raising where that answers false.
void AmtSettlement(const std::string& sDsn, const ado::RecordsetRef& rsSrcBill,
                   const ado::RecordsetRef& rsDestBill, const collections::VectorRef& rsChkInfo,
                   std::int32_t lCheckAmtFor, std::int32_t lCheckWithQty,
                   const collections::DictionaryRef& dDictSwitch);

}  // namespace velmora::settlement
