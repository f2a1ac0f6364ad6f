// What the general ledger holds.

#include "checks/amount/amount_filter.h"
#include "checks/amount/query_builders.h"
#include "checks/amount/unposted_vouchers.h"
#include "common/sql_lines.h"

namespace velmora::amount {

namespace {

/// Balances (u1) of the work table's rows (v1): with detail every combination that
/// contains the row's item contributes, without it the account's total.
void addBalances(SqlLines& sql, const AmountFilter& f) {
  sql.line(std::string("from ") + f.workTable());
  if (f.bShowDetail)
    sql.line("  v1 inner join t_itemdetailv s1 on  (v1.fitemclassid = s1.FItemID)")
        .line("        inner join t_balance u1 on (u1.FDetailID = s1.FDetailID)");
  else
    sql.line(
        "  v1 inner join t_balance u1 on (u1.FDetailID = 0 and v1.Fyear = u1.fyear and "
        "v1.fperiod = u1.fperiod  and v1.fcurrencyid = u1.fcurrencyid and v1.facctid = "
        "u1.faccountid)");
}

/// With detail only accounts that are kept by the item class.
void addItemClass(SqlLines& sql, const AmountFilter& f) {
  sql.line(
         " LEFT JOIN T_ItemDetailV ai ON t10.FDetailID = ai.FDetailID"
         " AND ai.FItemClassID = " +
         f.itemClass)
      .line(std::string(f.bShowDetail ? " INNER JOIN" : " LEFT JOIN") +
            " T_ItemClass i  on ai.FItemClassID = i.FItemClassID  AND i.FItemClassID = " +
            f.itemClass);
}

std::string rowItem(const AmountFilter& f) {
  return std::string(f.bShowDetail ? "v1.fitemclassid " : "0 ") + " as fitemclassid,";
}

/// Condition, grouping and join back of the account-wise updates.
void addAccountRows(SqlLines& sql, const AmountFilter& f) {
  sql.line(" where v1.fyear = u1.fyear and v1.fperiod = u1.fperiod")
      .line("      and v1.fcurrencyid = u1.fcurrencyid and v1.fAcctID = u1.faccountid")
      .lineIf(!f.bChkForAdjust, "      and u1.fcurrencyid = " + f.currency)
      .line(" and u1.FYear = " + f.year + " and u1.FPeriod = " + f.period)
      .line(std::string("group by v1.fyear, v1.fperiod, v1.fAcctID,v1.fcurrencyid ") +
            (f.bShowDetail ? ", v1.fitemclassid" : ""))
      .line(std::string(") u1 on (v1.fyear = u1.fyear and v1.fperiod = u1.fperiod and v1.fAcctID = "
                        "u1.fAcctID and v1.fcurrencyid = u1.fcurrencyid") +
            (f.bShowDetail ? " and v1.fitemclassid = u1.fitemclassid" : "") + ")");
}

std::string openingUpdate(const AmountFilter& f, bool ofItemClass) {
  const std::string sign = f.bArp ? "" : " * (-1)";
  SqlLines sql;
  sql.line(
         "update v1 set v1.fglamountfor = isnull(u1.fbegBalFor,0), "
         "v1.fglamount = isnull(u1.fbegbal,0)")
      .line(std::string("from ") + f.workTable() + " v1 inner join (")
      .line("select v1.fyear, v1.fperiod, v1.fAcctID, v1.fcurrencyid, " + rowItem(f))
      .line("    sum(isnull(u1.fbeginBalanceFor,0))" + sign + " as FBegBalFor,")
      .line("    sum(isnull(u1.FBeginBalance, 0))" + sign + " As FBegBal");
  addBalances(sql, f);
  sql.line("    inner join t_Account t10 on (u1.faccountid = t10.faccountid) ");
  if (ofItemClass) addItemClass(sql, f);
  addAccountRows(sql, f);
  return sql.text();
}

/// Where the ledger itself starts in the period that is checked, its opening balances were
/// keyed in by item class.
std::string initialBalances(const AmountFilter& f) {
  SqlLines sql;
  sql.line("declare @lGLUseYear int, @lGLUsePeriod int, @CurYear int, @CurPeriod int")
      .line("set @CurYear = " + f.year)
      .line("set @CurPeriod = " + f.period)
      .line("set @lGLUseYear = 0")
      .line("set @lGLUsePeriod = 0")
      .line(
          "select @lGLUseYear = convert(int, fvalue) from t_systemprofile where fcategory = 'GL' "
          "and fkey = 'StartYear'")
      .line(
          "select @lGLUsePeriod = convert(int, fvalue) from t_systemprofile where fcategory = "
          "'GL' and fkey = 'StartPeriod'")
      .line("if @lGLUseYear = @CurYear and @lGLUsePeriod = @CurPeriod")
      .line("begin")
      .line(openingUpdate(f, true))
      .line("End")
      .line("Else")
      .line("begin")
      .line(openingUpdate(f, false))
      .line("End");
  return sql.text();
}

/// The head of the closing and the period update.
SqlLines balanceUpdate(const AmountFilter& f) {
  SqlLines sql;
  sql.line(
         "update v1 set v1.fglamountfor = isnull(u1.FendBalFor,0), "
         "v1.fglamount = isnull(u1.FEndBal,0),")
      .line(
          "    v1.fglbegamountfor = isnull(u1.FBegBalFor,0), "
          "v1.fglbegamount = isnull(u1.FBegBal,0),")
      .line(
          "    v1.fgldebitamountfor = isnull(u1.fdebitfor,0), "
          "v1.fgldebitamount = isnull(u1.fdebit,0),")
      .line(
          "    v1.fglcreditamountfor = isnull(u1.FCreditFor,0), "
          "v1.fglcreditamount = isnull(u1.FCredit,0)")
      .line(std::string("from ") + f.workTable() + " v1 inner join (");
  return sql;
}

void addBalanceSums(SqlLines& sql, const AmountFilter& f) {
  const std::string sign = f.bArp ? "" : "-1*";
  sql.line("    " + sign + "sum(isnull(u1.fendBalanceFor,0)) as FendBalFor,")
      .line("    " + sign + "sum(isnull(u1.FEndBalance,0)) as FEndBal,")
      .line("    " + sign + "sum(isnull(u1.fbeginBalanceFor,0)) as FBegBalFor,")
      .line("    " + sign + "sum(isnull(u1.FBeginBalance,0)) as FBegBal,");
}

std::string periodBalances(const AmountFilter& f) {
  SqlLines sql = balanceUpdate(f);
  sql.line("select v1.fyear, v1.fperiod, v1.fAcctID, v1.fcurrencyid, " + rowItem(f));
  addBalanceSums(sql, f);
  sql.line("    sum(isnull(u1.FDebitFor,0) ) as fdebitfor, sum(isnull(u1.FDebit,0) ) as fdebit,")
      .line(
          "    sum(isnull(u1.FCreditFor,0) ) as FCreditFor, sum(isnull(u1.FCredit,0) ) as FCredit");
  addBalances(sql, f);
  sql.line("    inner join t_Account t10 on (u1.faccountid = t10.faccountid) ");
  addItemClass(sql, f);
  addAccountRows(sql, f);
  return sql.text();
}

/// Movements with the accounts' signs; a liability's grow on the credit side.
void addSignedMovements(SqlLines& sql, const AmountFilter& f) {
  if (f.bArp)
    sql.line("    sum(isnull(u1.FDebitFor,0) * u2.FLogic) as fdebitfor,")
        .line("    sum(isnull(u1.FDebit,0) * u2.FLogic) as fdebit,")
        .line("    sum(isnull(u1.FCreditFor,0) * u2.FLogic) as FCreditFor,")
        .line("    sum(isnull(u1.FCredit,0) * u2.FLogic) as FCredit");
  else
    sql.line("    sum(isnull(u1.FCreditFor,0) * u2.FLogic) as fdebitfor,")
        .line("    sum(isnull(u1.FCredit,0) * u2.FLogic) as fdebit,")
        .line("    sum(isnull(u1.fdebitfor,0) * u2.FLogic) as FCreditFor,")
        .line("    sum(isnull(u1.fdebit,0) * u2.FLogic) as FCredit");
}

/// Balances of the listed accounts; of accounts kept by items only the combinations that
/// contain the item class.
void addListedBalances(SqlLines& sql, const AmountFilter& f) {
  if (f.bShowDetail) {
    addBalances(sql, f);
    sql.line("        inner join #amtacct u2 on (u1.faccountid = u2.faccountid )");
    return;
  }
  sql.line(std::string("from ") + f.workTable() + " v1")
      .line(
          "        inner join t_balance u1 on (v1.Fyear = u1.fyear and v1.fperiod = u1.fperiod  "
          "and v1.fcurrencyid = u1.fcurrencyid )")
      .line("        inner join #amtacct u2 on (u1.faccountid = u2.faccountid )")
      .line(
          "        inner join t_itemdetailv v on (u1.fdetailid=v.fdetailid and (u2.fdetailid= 0 "
          "or ( u2.fdetailid<>0 and v.fitemclassid= " +
          f.itemClass + " )))");
}

std::string closingBalances(const AmountFilter& f) {
  SqlLines sql = balanceUpdate(f);
  sql.line("select v1.fyear, v1.fperiod, v1.fcurrencyid, " +
           std::string(f.bShowDetail ? " v1.fitemclassid " : "0") + " as FItemClassID,");
  addBalanceSums(sql, f);
  addSignedMovements(sql, f);
  addListedBalances(sql, f);
  sql.line(
         " where v1.fyear = u1.fyear and v1.fperiod = u1.fperiod and v1.fcurrencyid = "
         "u1.fcurrencyid")
      .line("      and u1.fcurrencyid = " + f.currency + " and u1.FYear = " + f.year +
            " and u1.FPeriod = " + f.period)
      .line(std::string("group by v1.fyear, v1.fperiod, v1.fcurrencyid ") +
            (f.bShowDetail ? " , v1.fitemclassid" : ""))
      .line(std::string(") u1 on (v1.fyear = u1.fyear and v1.fperiod = u1.fperiod and "
                        "v1.fcurrencyid = u1.fcurrencyid") +
            (f.bShowDetail ? " and v1.fitemclassid = u1.FItemClassID" : "") + ")");
  return sql.text();
}

}  // namespace

std::string GetGlAmtSql(const collections::Dictionary& dFilter) {
  const AmountFilter filter(dFilter);
  if (filter.initial()) return initialBalances(filter);
  SqlLines batch;
  batch.line(filter.closing() ? closingBalances(filter) : periodBalances(filter));
  if (filter.bUnPost) batch.line(unpostedVouchers(filter));
  return batch.text();
}

}  // namespace velmora::amount
