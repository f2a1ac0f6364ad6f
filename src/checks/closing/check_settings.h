#pragma once

#include "frame/call/data_source.h"
#include "velmora/collections/date.h"
#include "velmora/collections/dictionary.h"

namespace velmora::closing {

/// What decides which closing checks apply and how grave their findings are.
struct CheckSettings {
  // From the caller's filter.
  bool bArp, bothSides;
  bool unaudited, unvouchered, allErrors, vouchersWithoutDocuments;
  bool documentsAgainstVouchers, controlAccounts, modulePeriods, inventoryPeriods;
  // From the system profile of the side.
  bool voucherDemanded, auditDemanded, advanceVoucherDemanded;
  /// The period's first and last day.
  collections::Date periodStart, periodEnd;
};

/// Completes `dFilter` with the caller's language, the decimals of the local currency
/// and every default, and reads the settings.
CheckSettings completeFilter(const CDataSource& dataSource, collections::Dictionary& dFilter);

}  // namespace velmora::closing
