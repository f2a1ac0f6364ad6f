#pragma once

// The statements of the amount reconciliation, one builder each. They read the filter
// that GetAmtCheckDataSql or GetClosingCheckDataSql completes (see _clsInitBalCheck for
// its keys) and answer T-SQL text; failures are raised.
//
// Amounts of the AR/AP ledger are taken as its tables hold them, on both sides. Balances of
// the general ledger are turned to the same sense on the payables side, by -1.

#include <string>

#include "frame/call/data_source.h"
#include "velmora/collections/dictionary.h"

namespace velmora::amount {

/// Puts the AR/AP ledger's amounts into the work table: initial data, contact balances, or
/// contact balances with settlements, by mode. `dataSource` holds the rows to those that
/// its user may see; nothing: all rows.
std::string GetArpAmtSql(const CDataSource* dataSource, const collections::Dictionary& dFilter);

/// Puts the general ledger's balances into the work table, with bUnPost the vouchers not
/// yet posted too.
std::string GetGlAmtSql(const collections::Dictionary& dFilter);

/// Inventory documents that a liability may have been estimated for.
enum class EstimateKind {
  goodsReceipts = 1,         ///< purchase receipts
  outsourcedProcessing = 2,  ///< receipts from outsourced processing and subcontractors
};

/// Raises the payables' side by the estimates still open: two updates (opening balance,
/// movement of the period), the first one not in an initial check.
std::string GetAdjustAmtSql(const CDataSource& dataSource, const collections::Dictionary& dFilter,
                            EstimateKind kind);

/// The estimates before the period (`opening`) or within it, by the columns that the work
/// table is kept by, as FAmountFor and FAmount. Empty on the receivables side.
std::string GetAdjustSourceSql(const CDataSource& dataSource,
                               const collections::Dictionary& dFilter, EstimateKind kind,
                               bool opening);

/// The documents of a kind, one row an entry.
std::string GetStockBillSql(EstimateKind kind);

/// Copies the settlement entries of the caller's side into #tempCheckInfo on `connection`,
/// which holds no such table yet, and writes strCheckInfoSQL, the branch that adds them to the
/// contact balances; empty when the settings say that advances need no voucher.
void GetCheckInfoSql(const CDataSource& dataSource, ado::Connection& connection,
                     collections::Dictionary& dFilter);

}  // namespace velmora::amount
