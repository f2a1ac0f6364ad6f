#pragma once

#include <string>

#include "velmora/ado/recordset.h"
#include "velmora/collections/dictionary.h"
#include "velmora/com/dispatch.h"

namespace velmora {

/// Initial-balance, period and closing checks of receivables and payables.
/// What all operations share is told in interfaces.h.
class _clsInitBalCheck : public com::IDispatch {
 public:
  using Base = com::IDispatch;
  static constexpr com::Guid kInterfaceId =
      com::Guid::parse("63674864-0585-4486-A941-A6C25DDC12F8");
  static constexpr com::Guid kClassId = com::Guid::parse("B5572962-B9A7-45D3-822F-770550130A28");
  static constexpr const char* kProgId = "Velmora.clsInitBalCheck";

  /// Whether the settings and basic data needed to end the initialisation exist.
  /// Option: bArp (true: receivables, the default; false: payables).
  /// True: `rsReturn` holds every finding, possibly none, as FID, FChkItem, FTypeID,
  /// FChkType, FChkInfo. False: the check could not run and `rsReturn` is nothing.
  /// Votes on the transaction.
  virtual bool CheckInitData(const std::string& sDsn, const collections::DictionaryRef& dFilter,
                             com::Ref<com::IUnknown>& rsReturn) = 0;

  /// Compares a period's closing balances with the general ledger's. Answers the
  /// compared rows, or nothing when the check could not run.
  /// Required: BYear, BPeriod, ItemClass, AcctList (account ids, "101,102"),
  /// AcctLogic (one sign an account, "-" subtracts), CurrencyID (0: all together).
  /// Defaults: bArp true and bShowDetail true, both written back; bZanGu, bWeiWai,
  /// bInitCheck, bUnPost false; BItemNumber, EItemNumber, BDptNumber, EDptNumber,
  /// BEmpNumber, EEmpNumber "" (open). Written: strLanguage, sDSN and what
  /// GetClosingCheckDataSql writes.
  virtual com::Ref<com::IUnknown> GetClosingAmtCheck(const std::string& sDsn,
                                                     collections::DictionaryRef& dFilter) = 0;

  /// Compares initial balances (bInitCheck) or a period's balances and movements
  /// with the general ledger's. Answers the compared rows, or nothing when the check
  /// could not run.
  /// Required: BYear, BPeriod, ItemClass, AcctList, CurrencyID (0: all together).
  /// Defaults: bArp true, bShowDetail true and bChkForAdjust (rows per foreign
  /// currency) false, all written back; bInitCheck, bZanGu, bWeiWai, bUnPost false;
  /// the number ranges as for GetClosingAmtCheck. Written: strLanguage, sDSN,
  /// strCheckInfoSQL and what GetAmtCheckDataSql writes.
  virtual com::Ref<com::IUnknown> GetInitAmtCheck(const std::string& sDsn,
                                                  collections::DictionaryRef& dFilter) = 0;

  /// Writes the statements of the closing check into `dFilter`, without running
  /// them: Chk_CreateTable, Chk_InitArpAmt, Chk_InitGlAmt, Chk_UpdateTable,
  /// bClosingAmt, and the ranges bItemFilter/strItemFilter, bDptFilter/strDptFilter,
  /// bEmpFilter/strEmpFilter. Options as GetClosingAmtCheck, bShowDetail and bArp
  /// false when absent. Holds the AR/AP side to the rows that the caller of this object's
  /// last operation with an sDsn may see; all rows when there was none. False also when AcctList
  /// and AcctLogic differ in length.
  virtual bool GetClosingCheckDataSql(collections::DictionaryRef& dFilter) = 0;

  /// Writes the statements of the initial or period check into `dFilter`, without
  /// running them; keys and row access as GetClosingCheckDataSql, without bClosingAmt.
  /// Options as GetInitAmtCheck, bArp false when absent.
  virtual bool GetAmtCheckDataSql(collections::DictionaryRef& dFilter) = 0;

  /// Runs the period-closing checks. Options: bArp (true); BYear, BPeriod (BPeriod
  /// is read only beside BYear; without BYear both come from the system profile);
  /// bShowAllError (false: only the voucher checks that the profile demands);
  /// OnProgress (absent): an object whose method Progress(caption, index, count) is
  /// called before each check, index from 1; what it raises ends the run as a failure (a
  /// value that is no object is ignored).
  /// True: `rsReturn` holds FID, FChkItem, FChkType, FChkInfo of every finding and
  /// `bCanClose` is true without any finding, false with a serious one, and as the
  /// caller passed it when there are only warnings. A message longer than its column
  /// is kept to the column's size. False: the checks could not be run, `rsReturn` is
  /// nothing and `bCanClose` false. Votes on the transaction.
  virtual bool CheckClosingData(const std::string& sDsn, const collections::DictionaryRef& dOption,
                                com::Ref<com::IUnknown>& rsReturn, bool& bCanClose) = 0;

  // The query builders below answer T-SQL text, "" when they fail. They read, unless
  // told otherwise: bArp, BYear, BPeriod, bCheckPassed (true: every period up to this
  // one), bShowAll (both sides), strLanguage ("chs", "CHT", "EN"), CurrencyID (0 or
  // less: all), ItemFilter (an SQL condition over the query's aliases, spliced in as it
  // is: put one with "or" into parentheses). Absent keys read as false, 0 and ""; what a query
  // does not need is not looked at.

  /// Transfers between accounts without voucher. Also reads bPreChecked (true: the
  /// offsets of advances). Unless bCheckPassed is true it needs the calendar for the
  /// period's dates: that of the caller's string under the key sDSN, for this call alone,
  /// else that of the last operation of this object that took `sDsn`. CurrencyID and
  /// ItemFilter are not read.
  virtual std::string GetUnVchExtBillStr(const collections::DictionaryRef& dFilter) = 0;
  /// Bills of exchange without voucher. Also reads LocalDecimal, the decimals of the
  /// local currency.
  virtual std::string GetUnVchBillStr(const collections::DictionaryRef& dFilter) = 0;

  /// Runs `sSql` as it is, read-uncommitted, and answers its first result (a closed
  /// recordset when it returns no rows). Raises what the provider raises; votes
  /// SetComplete before any work.
  virtual ado::RecordsetRef GetData(const std::string& sDsn, const std::string& sSql) = 0;

  /// The closing checks of one side and period, in order: a Vector of Dictionary with
  /// FCaption, FSql ("" when there is nothing to ask), FType (1: existence only),
  /// FChkItem, FChkType, FChkInfo. Nothing when it fails.
  /// Required: BYear, BPeriod, bchkUnPeriod. Defaults, written into `dFilter`: bArp
  /// true; bChkUnAudit, bchkUnVoucher true; bCheckPassed, bShowAllError,
  /// bChkNOBillVoucher, bchkCheckRate, bchkUnPeriodVch, bchkUnAmountVch,
  /// bchkUnPeriodGYandGL false; bCheckAccount from the system profile; CurrencyID 0;
  /// ItemFilter "". bShowAll false, not written. AcctList goes with bChkNOBillVoucher.
  /// Always written: strLanguage, LocalDecimal, bPreChecked.
  virtual com::Ref<com::IUnknown> GetCheckItemDict(const std::string& sDsn,
                                                   const collections::DictionaryRef& dFilter) = 0;

  /// Inventory-module invoices without voucher, of one side; bShowAll is not read.
  virtual std::string GetUnVchInvoiceStr(collections::DictionaryRef& dFilter) = 0;
  /// Documents whose control account is missing or not on their voucher; bShowAll is
  /// not read.
  virtual std::string GetUnAccountArpBillStr(collections::DictionaryRef& dFilter) = 0;
  /// Invoices, AR/AP documents, receipts and payments without voucher.
  virtual std::string GetUnVchArpBillStr(collections::DictionaryRef& dFilter) = 0;
  /// Unaudited documents of the period itself, whatever bCheckPassed says.
  virtual std::string GetUnAuditArpBillStr(collections::DictionaryRef& dFilter) = 0;
  /// Vouchers on the control accounts AcctList ("101,102") that no document stands
  /// behind; without AcctList the query finds nothing. Reads BYear, BPeriod,
  /// bCheckPassed, strLanguage and AcctList only.
  virtual std::string GetNoBillVoucherStr(collections::DictionaryRef& dFilter) = 0;

 protected:
  ~_clsInitBalCheck() = default;
};

}  // namespace velmora
