#pragma once

#include <string>

#include "checks/amount/amount_filter.h"
#include "checks/amount/query_builders.h"

namespace velmora::amount {

/// What the queries of open estimates are put together from.
struct EstimateTerms {
  EstimateTerms(const CDataSource& dataSource, const collections::Dictionary& dFilter,
                EstimateKind estimateKind, bool openingPart);

  AmountFilter filter;
  EstimateKind kind;
  /// Estimates before the period, else those within it.
  bool opening;
  /// The setting "MakeZanGuVoucher" of the inventory module: 0 books estimates and their
  /// reversals as the voucher-making records tell (voucher rule), anything else keeps an
  /// estimate open for the quantity that is not matched with an invoice (quantity rule).
  bool voucherRule;
  /// Periods of a year, and the check's period counted by it.
  std::string yearLength, period;
  /// First day of the inventory module, YYYY-MM-DD.
  std::string inventoryStart;
  /// The rows that the caller's user may see, for documents with alias b.
  std::string accessFrom, accessCondition;

  /// "FCustomer," "FAccountID," of the rows asked for, each behind `alias`.
  std::string columns(const std::string& alias) const;
  /// The same as a grouping; empty where the work table has neither.
  std::string grouping(const std::string& alias) const;

  /// A period counted like the check's: "(FYear*12 + FPeriod) ".
  std::string matchPeriod() const { return "(Fyear*" + yearLength + " + FPeriod) "; }

  /// Conditions over documents (b): `documentPeriod`, text with " and " in front, is part
  /// of the full condition only.
  std::string fullCondition(const std::string& documentPeriod) const;
  std::string reducedCondition() const;
  /// Joins that the full condition's item range needs, and the user's.
  std::string fullJoins() const;

 private:
  std::string documentCondition() const;
};

}  // namespace velmora::amount
