#include "checks/amount/amount_filter.h"

namespace velmora::amount {

namespace {

Mode modeOf(const collections::Dictionary& filter) {
  if (filter.Value("bInitCheck").toBool()) return Mode::initial;
  return filter.Value("bClosingAmt").toBool() ? Mode::closing : Mode::period;
}

}  // namespace

AmountFilter::AmountFilter(const collections::Dictionary& filter)
    : mode(modeOf(filter)),
      bArp(filter.Value("bArp").toBool()),
      bShowDetail(filter.Value("bShowDetail").toBool()),
      bChkForAdjust(filter.Value("bChkForAdjust").toBool()),
      bUnPost(filter.Value("bUnPost").toBool()),
      bItemFilter(filter.Value("bItemFilter").toBool()),
      year(filter.Value("BYear").toText()),
      period(filter.Value("BPeriod").toText()),
      currency(filter.Value("CurrencyID").toText()),
      currencyId(filter.Value("CurrencyID").toInt32()),
      itemClass(filter.Value("ItemClass").toText()),
      accounts(filter.Value("AcctList").toText()),
      itemRange(filter.Value("strItemFilter").toText()),
      settlementBranch(filter.Value("strCheckInfoSQL").toText()) {}

}  // namespace velmora::amount
