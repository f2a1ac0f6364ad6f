// What the AR/AP ledger holds.

#include "checks/amount/amount_filter.h"
#include "checks/amount/query_builders.h"
#include "common/access_filters.h"
#include "common/sql_lines.h"

namespace velmora::amount {

using collections::Dictionary;

namespace {

/// The rows that the caller's user may see, as additions to a query with alias v1.
struct Restriction {
  std::string from, condition;
};

Restriction restrictionOf(const CDataSource* dataSource, Mode mode) {
  if (!dataSource) return {};
  const auto access =
      mode == Mode::initial ? InitDataAccessFilter(*dataSource) : BalanceAccessFilter(*dataSource);
  if (!access->Value("NeedAccess").toBool()) return {};
  return {access->Value("From").toText(), " and " + access->Value("Where").toText()};
}

/// Condition over the AR/AP table (alias v1). Exchange adjustment takes both sides of the
/// listed accounts.
std::string ledgerCondition(const AmountFilter& f) {
  const std::string side = std::string(" v1.Frp = ") + f.side();
  std::string condition = side;
  if (!f.closing()) {
    condition = " v1.FAccountID in (" + f.accounts + ") ";
    if (!f.bChkForAdjust) condition += " and" + side;
  }
  if (!f.initial()) condition += " and v1.FYear = " + f.year + " and v1.FPeriod = " + f.period;
  if (f.bChkForAdjust) condition += " and v1.FCurrencyID > 1 ";
  if (f.oneCurrency()) condition += " and v1.FCurrencyID = " + f.currency;
  return condition;
}

std::string where(const AmountFilter& f, const Restriction& restriction) {
  return " where v1.FItemClassID = " + f.itemClass + " and " + ledgerCondition(f) +
         restriction.condition;
}

/// How the work table (v1) finds its amounts (u1).
std::string joinBack(const AmountFilter& f) {
  std::string on = "v1.FYear = u1.FYear and v1.FPeriod = u1.FPeriod";
  if (!f.closing()) on += " and  v1.Facctid = u1.Facctid ";
  if (f.bShowDetail) on += " and v1.FItemClassID = u1.FItemClassID ";
  if (!f.closing() && f.bChkForAdjust) on += " and v1.FCurrencyID = u1.FCurrencyID ";
  return " ) u1 on (" + on + ")";
}

std::string initialAmounts(const AmountFilter& f, const Restriction& restriction) {
  const std::string target = f.workTable();
  // Initial receipts and payments lower the balance.
  const std::string sign =
      "sum((case when v1.ftype = 5 or v1.ftype = 6 or v1.ftype=15 or v1.ftype=16 then -1 else 1 "
      "end ) * ";
  SqlLines sql;
  sql.line("set nocount on ")
      .line("update v1 set v1.FArpamountFor = u1.FAmountFor , v1.FArpAmount = u1.FAmount")
      .line("from " + target + " v1 inner join (")
      .line("select " + f.year + " as FYear," + f.period + " as FPeriod,")
      .line(f.bShowDetail ? "v1.FComID" : " 0 ")
      .line(" as FItemClassID, v1.faccountid as FAcctID, ")
      .lineIf(f.bChkForAdjust, "v1.FCurrencyID,")
      .line(sign + "v2.famountfor   ) as FAmountFor,")
      .line(sign + "v2.famount   ) as FAmount")
      .line("from t_rp_begdata v1 inner join t_rp_begDataentry v2 on (v1.FInterID = v2.FInterID )")
      .line("inner join t_account t1 on (v1.faccountid = t1.faccountid and v1.faccountid >0)")
      .lineIf(!restriction.from.empty(), restriction.from)
      .line(where(f, restriction))
      .line(std::string("group by ") +
            (f.bShowDetail ? "v1.FComID, v1.faccountid" : "v1.faccountid") +
            (f.bChkForAdjust ? ", v1.FCurrencyID" : ""))
      .line(joinBack(f));
  return sql.text();
}

/// The head of the closing and the period update.
SqlLines balanceUpdate(const AmountFilter& f) {
  SqlLines sql;
  sql.line("set nocount on ")
      .line("update v1 set v1.FArpamountFor = u1.FAmountFor , v1.FArpAmount = u1.FAmount,")
      .line("    v1.FArpDebitAmountfor = u1.FDebitFor, v1.FArpDebitAmount = u1.FDebit,")
      .line("    v1.FArpCreditAmountfor = u1.FCreditFor, v1.FArpCreditAmount = u1.FCredit,")
      .line("    v1.FArpBegAmountfor = u1.fbegamountfor, v1.FArpBegAmount = u1.fbegamount")
      .line(std::string("from ") + f.workTable() + " v1 inner join (");
  return sql;
}

constexpr const char* kOpeningSums =
    "sum(v1.FBeginBalanceFor) as fbegamountfor, sum(v1.FBeginBalance) as fbegamount,";
constexpr const char* kMovementSums =
    "sum(v1.FDebitFor) as fdebitfor, sum(v1.FDebit) as fdebit,\r\n"
    "sum(v1.FCreditFor) as FCreditFor, sum(v1.FCredit) as FCredit,";
// A liability grows on the credit side of the ledger; the contact balance calls that debit.
constexpr const char* kExchangedMovementSums =
    "sum(v1.FCreditFor) as fdebitfor, sum(v1.FCredit ) as fdebit,\r\n"
    "sum(v1.FDebitFor) as FCreditFor, sum(v1.FDebit ) as FCredit,";
constexpr const char* kClosingSums =
    "sum(v1.fendbalancefor) as FAmountFor, sum(v1.fendbalance) as FAmount";

std::string closingAmounts(const AmountFilter& f, const Restriction& restriction) {
  SqlLines sql = balanceUpdate(f);
  sql.line("select v1.FYear, v1.FPeriod,")
      .line(std::string(f.bShowDetail ? " v1.FCustomer " : "0") + " as FItemClassID,")
      .line(kOpeningSums)
      .line(kMovementSums)
      .line(kClosingSums)
      .line("from t_rp_contactbal v1")
      .lineIf(!restriction.from.empty(), restriction.from)
      .line(where(f, restriction))
      .line(std::string("group by v1.FYear, v1.FPeriod ") +
            (f.bShowDetail ? " , v1.FCustomer" : ""))
      .line(joinBack(f));
  return sql.text();
}

std::string recomputedBalance(const AmountFilter& f) {
  SqlLines sql;
  sql.line(std::string("update ") + f.workTable());
  if (f.bArp)
    sql.line("set FArpamountFor =fARPbegamountfor-FArpCreditAmountFor+FArpDebitAmountFor,")
        .line("FArpamount =fARPbegamount-FArpCreditAmount+FArpDebitAmount");
  else
    sql.line("set FArpamountFor =fARPbegamountfor+FArpCreditAmountFor-FArpDebitAmountFor,")
        .line("FArpamount =fARPbegamount+FArpCreditAmount-FArpDebitAmount");
  return sql.text();
}

std::string periodAmounts(const AmountFilter& f, const Restriction& restriction) {
  SqlLines sql = balanceUpdate(f);
  sql.line("Select FYear, FPeriod, FItemClassID, FAcctID,")
      .line("sum(fbegamountfor) as fbegamountfor, sum(fbegamount) as fbegamount,")
      .line("sum(fdebitfor) as fdebitfor, sum(fdebit) as fdebit,")
      .line("sum(FCreditFor) as FCreditFor, sum(FCredit) as FCredit,")
      .line("sum(FAmountFor) as FAmountFor, sum(FAmount) as FAmount")
      .lineIf(f.bChkForAdjust, ",FCurrencyID")
      .line(" from (")
      .line("select v1.FYear, v1.FPeriod,")
      .line(std::string(f.bShowDetail ? " v1.FCustomer " : " 0 ") + " as FItemClassID,")
      .line("v1.faccountid as FAcctID,")
      .lineIf(f.bChkForAdjust, " v1.fcurrencyid,")
      .line(kOpeningSums)
      .line(f.bArp ? kMovementSums : kExchangedMovementSums)
      .line(kClosingSums)
      .line(
          "from t_rp_contactbal v1 inner join t_account t1 on (v1.FAccountID = t1.FaccountID and "
          "v1.FAccountID > 0)")
      .lineIf(!restriction.from.empty(), restriction.from)
      .line(where(f, restriction))
      .line(std::string("group by v1.FYear, v1.FPeriod ") + (f.bShowDetail ? ",v1.FCustomer" : "") +
            " ,v1.faccountid " + (f.bChkForAdjust ? ",v1.FCurrencyID" : ""))
      .lineIf(!f.settlementBranch.empty(), " Union All")
      .lineIf(!f.settlementBranch.empty(), f.settlementBranch)
      .line(std::string(" ) k Group By  FYear, FPeriod, FItemClassID, FAcctID") +
            (f.bChkForAdjust ? ",FCurrencyID" : ""))
      .line(joinBack(f) + ";")
      .line(recomputedBalance(f));
  return sql.text();
}

}  // namespace

std::string GetArpAmtSql(const CDataSource* dataSource, const Dictionary& dFilter) {
  const AmountFilter filter(dFilter);
  const Restriction restriction = restrictionOf(dataSource, filter.mode);
  switch (filter.mode) {
    case Mode::initial:
      return initialAmounts(filter, restriction);
    case Mode::closing:
      return closingAmounts(filter, restriction);
    case Mode::period:
      break;
  }
  return periodAmounts(filter, restriction);
}

}  // namespace velmora::amount
