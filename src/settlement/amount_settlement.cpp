#include "settlement/amount_settlement.h"

#include "frame/call/operation.h"
#include "settlement/group_filters.h"
#include "settlement/row_maps.h"
#include "velmora/com/error.h"

namespace velmora::settlement {

using collections::DictionaryRef;

namespace {

std::string amountColumn(const Settlement& settlement) {
  std::string column = settlement.dFields->Value("FAmountFor").toText();
  if (!column.empty()) return column;
  throw com::Error(com::error::kInvalidArgument, "clsPublic",
                   "lCheckAmtFor is " + std::to_string(settlement.lCheckAmtFor) +
                       "; expected 0 (foreign and local amounts) or 1 (one amount)");
}

bool hasRows(const Side& side) {
  return side.rows && side.rows->RecordCount() > 0;
}

void show(const Side& side, const std::string& groupFilter) {
  if (side.rows) side.rows->Filter(groupFilter);
}

/// Positive documents of a side against its negative ones.
void settleWithin(Settlement& settlement, Side& side, const std::string& groupFilter) {
  if (!hasRows(side)) return;
  const std::string amount =
      (groupFilter.empty() ? "" : groupFilter + " and ") + amountColumn(settlement);
  if (!side.clone) side.clone = side.rows->Clone();
  Side clone{side.name, side.clone, side.columns};
  AllocatePair(settlement, side, clone, Sign::withinSide, amount + " > 0 ", amount + " < 0 ");
}

}  // namespace

void SettleGroup(Settlement& settlement, Side& source, Side& destination,
                 const std::string& groupFilter) {
  show(source, groupFilter);
  show(destination, groupFilter);
  settleWithin(settlement, source, groupFilter);
  settleWithin(settlement, destination, groupFilter);
  show(source, groupFilter);
  show(destination, groupFilter);
  // The group holds here too: what one customer paid must not settle another's invoices.
  if (hasRows(source) && hasRows(destination))
    AllocatePair(settlement, source, destination, Sign::acrossSides, groupFilter, groupFilter);
  show(source, groupFilter);
  show(destination, groupFilter);
}

void AmtSettlement(const std::string& sDsn, const ado::RecordsetRef& rsSrcBill,
                   const ado::RecordsetRef& rsDestBill, const collections::VectorRef& rsChkInfo,
                   std::int32_t lCheckAmtFor, std::int32_t lCheckWithQty,
                   const DictionaryRef& dDictSwitch) {
  given(rsChkInfo, "rsChkInfo");
  const DictionaryRef groups = BuildGroupFilters(rsSrcBill, dDictSwitch);
  const DictionaryRef dFields = BuildFieldMap(lCheckAmtFor, lCheckWithQty);
  dFields->Set("sDsn", sDsn);
  const DictionaryRef dCopyMap = BuildCopyMap();
  const bool withQuantities = lCheckWithQty != 0 && lCheckAmtFor == 0;
  Settlement settlement{dFields,
                        dCopyMap,
                        PairRows(*dCopyMap, *BuildMirrorMap(), lCheckAmtFor == 1, withQuantities),
                        lCheckAmtFor,
                        lCheckWithQty,
                        rsChkInfo,
                        RemainingAmounts(withQuantities)};
  Side source{"rsSrcBill", rsSrcBill}, destination{"rsDestBill", rsDestBill};
  if (groups->Count() == 0) return SettleGroup(settlement, source, destination, {});
  for (std::size_t i = 0; i < groups->Count(); ++i)
    SettleGroup(settlement, source, destination, groups->Item(i).toText());
}

}  // namespace velmora::settlement
