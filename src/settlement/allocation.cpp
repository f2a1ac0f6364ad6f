#include "settlement/allocation.h"

#include <algorithm>

#include "settlement/base_currency.h"
#include "settlement/rounding.h"
#include "velmora/com/cancellation.h"
#include "velmora/com/error.h"

namespace velmora::settlement {

using collections::Decimal;

namespace {

/// The documents of two views settled against one another.
class Allocation {
 public:
  Allocation(Settlement& settlement, const Side& first, const Side& second, Sign sign)
      : settlement_(settlement),
        first_(*first.rows),
        second_(*second.rows),
        inner_(first),
        outer_(second),
        sign_(sign) {}

  void run() {
    for (; !second_.EOF_() && first_.RecordCount() > 0; second_.MoveNext()) {
      com::ThrowIfCancelled();
      first_.MoveFirst();
      outer_.read();
      settleOuter();
    }
  }

 private:
  /// Settles the outer document against the inner ones from the current on.
  void settleOuter() {
    Decimal openOuter = outer_.number(FRemainAmountFor);
    while (!first_.EOF_() && !openOuter.isZero()) {
      inner_.read();
      const Decimal openInner = inner_.number(FRemainAmountFor);
      const Decimal innerSize = openInner.abs(), outerSize = openOuter.abs();
      const bool bothDone = innerSize == outerSize;
      PairAmounts innerAmounts, outerAmounts;
      if (innerSize < outerSize) {
        settle(inner_, innerAmounts, outer_, outerAmounts, openInner, 2, bothDone);
        openOuter -= signed_(openInner);
        finish(UsedUp::inner, innerAmounts, outerAmounts);
      } else {
        settle(outer_, outerAmounts, inner_, innerAmounts, openOuter, 4, bothDone);
        openOuter = 0;
        finish(UsedUp::outer, innerAmounts, outerAmounts);
      }
      if (!bothDone) first_.MoveNext();
    }
  }

  /// Nothing of the pair is written before all of it is known to be right.
  void finish(UsedUp usedUp, const PairAmounts& innerAmounts, const PairAmounts& outerAmounts) {
    const auto rows =
        settlement_.pairRows.rowsOf(usedUp, innerAmounts, inner_, outerAmounts, outer_);
    for (const auto& row : rows) settlement_.remaining.complete(*row);
    inner_.update();
    outer_.update();
    for (const auto& row : rows) settlement_.rsChkInfo->Add(row);
  }

  /// Uses up the open amount `open` of one document on the other.
  void settle(OpenDocument& usedUp, PairAmounts& usedUpAmounts, OpenDocument& other,
              PairAmounts& otherAmounts, const Decimal& open, int usualPlaces, bool bothDone) {
    settleAmounts(usedUp, usedUpAmounts, other, otherAmounts, open, bothDone);
    if (settlesLocalAmounts()) settleLocalAmounts(usedUp, usedUpAmounts, other, otherAmounts);
    if (settlesQuantities()) {
      usedUpAmounts.checkQuantity = settleWholeQuantity(usedUp);
      otherAmounts.checkQuantity = settleQuantityShare(other, open, usualPlaces, bothDone);
    }
    setRemaining(usedUp, usedUpAmounts);
    setRemaining(other, otherAmounts);
  }

  void settleAmounts(OpenDocument& usedUp, PairAmounts& usedUpAmounts, OpenDocument& other,
                     PairAmounts& otherAmounts, const Decimal& open, bool bothDone) {
    usedUp.set(FCheckAmountFor, usedUp.number(FAmountFor));
    usedUp.set(FRemainAmountFor, 0);
    usedUp.markSettled();
    usedUpAmounts.checkAmountFor = open;
    const Decimal share = signed_(open);
    other.add(FCheckAmountFor, share);
    other.add(FRemainAmountFor, -share);
    if (bothDone) other.markSettled();
    otherAmounts.checkAmountFor = share;
  }

  /// The used-up document's local amount moves whole, whatever the exchange rates of
  /// the two: no fraction of it may stay open on a settled document.
  void settleLocalAmounts(OpenDocument& usedUp, PairAmounts& usedUpAmounts, OpenDocument& other,
                          PairAmounts& otherAmounts) {
    const auto move = [](OpenDocument& document, const Decimal& amount) {
      document.add(FCheckAmount, amount);
      document.add(FRemainAmount, -amount);
      return amount;
    };
    const Decimal whole = usedUp.number(FRemainAmount);
    usedUpAmounts.checkAmount = move(usedUp, whole);
    otherAmounts.checkAmount = move(other, signed_(whole));
  }

  static Decimal settleWholeQuantity(OpenDocument& document) {
    if (document.number(FQty).isZero()) return 0;
    const Decimal open = document.number(FRemainQty);
    document.set(FCheckQty, document.number(FQty));
    document.set(FRemainQty, 0);
    return open;
  }

  /// The quantity that `amount` pays for on a document, never more than is open.
  Decimal settleQuantityShare(OpenDocument& document, const Decimal& amount, int usualPlaces,
                              bool bothDone) const {
    if (document.number(FQty).isZero()) return 0;
    const Decimal open = document.number(FRemainQty);
    Decimal share = bothDone ? open : signed_(quantityFor(document, amount, usualPlaces));
    if (share.abs() >= open.abs()) share = open;
    document.add(FCheckQty, share);
    document.add(FRemainQty, -share);
    return share;
  }

  static Decimal quantityFor(const OpenDocument& document, const Decimal& amount, int usualPlaces) {
    // Without a price it is the document's amount by its quantity.
    const bool priced = document.has(FPrice);
    const Decimal divisor = document.number(priced ? FPrice : FAmountFor);
    if (amount.isZero() || divisor.isZero()) return 0;
    const int asked = document.has(FQtyDecimal) ? document.places(FQtyDecimal) : usualPlaces;
    return RoundAmount({amount, priced ? 1 : document.number(FQty), divisor},
                       std::min(asked, document.quantityDecimals()));
  }

  /// What is open after the pair; 0 where the mode has no columns.
  static void setRemaining(const OpenDocument& document, PairAmounts& amounts) {
    const auto remaining = [&document](DocumentField before, DocumentField settled) {
      if (!document.has(before) || !document.has(settled)) return Decimal(0);
      return document.number(before) - document.number(settled);
    };
    amounts.remainAmountFor = remaining(FBillRemainAmountFor, FCheckAmountFor);
    amounts.remainAmount = remaining(FBillRemainAmount, FCheckAmount);
    amounts.remainQuantity = remaining(FBillRemainQty, FCheckQty);
  }

  bool settlesLocalAmounts() const {
    return settlement_.lCheckAmtFor == 0 && !outer_.number(FAmount).isZero();
  }
  bool settlesQuantities() const { return settlement_.lCheckWithQty != 0 && inner_.has(FQty); }

  Decimal signed_(const Decimal& amount) const {
    return sign_ == Sign::acrossSides ? amount : -amount;
  }

  Settlement& settlement_;
  ado::Recordset &first_, &second_;
  OpenDocument inner_, outer_;
  Sign sign_;
};

void findColumns(const Settlement& settlement, Side& side) {
  if (side.columns) return;
  try {
    side.columns = std::make_shared<const DocumentColumns>(*side.rows, *settlement.dFields,
                                                           *settlement.dCopyMap);
  } catch (const com::Error& error) {
    throw com::Error(error.number(), error.source(),
                     std::string(side.name) + ": " + error.description());
  }
}

void filter(ado::Recordset& rows, const std::string& restriction, const char* open) {
  rows.Filter(restriction.empty() ? open : restriction + " and " + open);
}

/// An account set that cannot be reached stops a settlement before it changes anything.
void askDatabase(Settlement& settlement) {
  if (settlement.databaseAsked) return;
  const std::string sDsn = settlement.dFields->Value("sDsn").toText();
  if (!sDsn.empty()) GetBaseCurrencyScale(sDsn);
  settlement.databaseAsked = true;
}

}  // namespace

void AllocatePair(Settlement& settlement, Side& first, Side& second, Sign sign,
                  const std::string& firstFilter, const std::string& secondFilter) {
  constexpr const char* kOpen = " FRemark = 0";
  askDatabase(settlement);
  // Most groups have no negative documents, which are the second ones: looked for first.
  filter(*second.rows, secondFilter, kOpen);
  if (second.rows->RecordCount() == 0) return;
  filter(*first.rows, firstFilter, kOpen);
  if (first.rows->RecordCount() == 0) return;
  findColumns(settlement, first);
  findColumns(settlement, second);
  settlement.remaining.complete(*settlement.rsChkInfo);
  Allocation(settlement, first, second, sign).run();
  first.rows->Filter(firstFilter);
  second.rows->Filter(secondFilter);
}

}  // namespace velmora::settlement
