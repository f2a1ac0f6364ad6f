#include "checks/amount/unposted_vouchers.h"

#include "common/sql_lines.h"

namespace velmora::amount {

namespace {

std::string voucherCondition(const AmountFilter& f) {
  std::string condition =
      " v1.FPosted = 0  and (v1.FYear =" + f.year + "  and v1.FPeriod =" + f.period + ") ";
  if (!f.closing()) condition += " and v2.FAccountID in (" + f.accounts + ") ";
  if (f.bChkForAdjust) condition += " and v2.FCurrencyID > 1 ";
  if (f.oneCurrency()) condition += " and v2.FCurrencyID = " + f.currency;
  return condition;
}

/// Vouchers (v1, entries v2) joined to the rows of the work table (v3) that they belong
/// to: those of the row's period and before it.
void addSources(SqlLines& sql, const AmountFilter& f) {
  const std::string target = f.workTable();
  sql.line("from t_voucher v1 inner join t_voucherentry v2 on ( v1.fvoucherid = v2.fvoucherid)");
  if (f.bShowDetail)
    sql.line(
           "    inner join (select distinct u1.fdetailid, u1.fitemid  from t_itemdetailv u1 "
           "where u1.fitemid in (select fitemclassid from " +
           target + " ))   u1")
        .line("    on (v2.fdetailid = u1.fdetailid)");
  sql.line(f.closing() ? "    inner join #AmtAcct a1 on (v2.FAccountID = a1.FAccountID)"
                       : "    inner join t_Account a1 on (v2.FAccountID = a1.FAccountID)")
      .line("    inner join " + target + "  v3 on (" +
            (f.bShowDetail ? "u1.FItemID = v3.FItemClassID  and " : "") +
            (f.closing() ? "" : " v2.FAccountID = v3.FAcctID and ") +
            "((v1.Fyear = v3.fyear and v1.fperiod <= v3.fperiod) or v1.Fyear < v3.FYear) )")
      .line("    where " + voucherCondition(f));
}

/// Sum of the entries of one side of the vouchers.
std::string sideSum(bool debit, const std::string& amount) {
  const std::string value = "isnull(v2." + amount + ",0)";
  return "sum(case when v2.FDC = 1 then " + (debit ? value + " else 0" : "0 else " + value) +
         " end)";
}

std::string signedAmount(const std::string& amount) {
  return "(case when v2.FDC = 1 then 1 else -1 end) * isnull(v2." + amount + ",0)";
}

/// The part that lies before the row's period.
std::string openingAmount(const std::string& amount) {
  return "case when (v1.fyear = v3.fyear and v1.fperiod = v3.fperiod) then 0 else " +
         signedAmount(amount) + " end";
}

/// Movements, signed amount and opening part of one currency form (`form` "For" or "").
/// `exchanged` takes credit for debit; `sign` is a factor of the latter two.
void addSums(SqlLines& sql, const std::string& form, bool exchanged, const std::string& sign,
             bool last) {
  const std::string amount = "famount" + form;
  sql.line("    " + sideSum(!exchanged, amount) + " as fdebitamount" + form + ",")
      .line("    " + sideSum(exchanged, amount) + " as fcreditamount" + form + ",")
      .line("    sum(" + sign + signedAmount(amount) + ") as famount" + form + ",")
      .line("    sum(" + sign + "(" + openingAmount(amount) + ")) as fbegamount" + form +
            (last ? "" : ","));
}

std::string joinBack(const AmountFilter& f) {
  std::string on = "v1.fyear = u1.fyear and v1.fperiod = u1.fperiod";
  if (!f.closing()) on += " and  v1.FAcctID = u1.FAccountID ";
  if (f.bShowDetail) on += " and v1.fitemclassid = u1.fitemid ";
  if (!f.closing() && f.bChkForAdjust) on += " and v1.fcurrencyid = u1.fcurrencyid ";
  return ") u1 on (" + on + ")";
}

void addMovementColumns(SqlLines& sql) {
  sql.line("    fglbegamountfor = fglbegamountfor + isnull(u1.fbegamountfor,0),")
      .line("    fglbegamount = fglbegamount + isnull(u1.fbegamount,0),")
      .line("    fglDebitamountfor = fglDebitamountfor + isnull(u1.fdebitamountfor,0),")
      .line("    fglDebitamount = fglDebitamount + isnull(u1.fdebitamount,0),")
      .line("    fglCreditamountfor = fglCreditamountfor + isnull(u1.fcreditamountfor,0),")
      .line("    fglCreditamount = fglCreditamount + isnull(u1.fcreditamount,0)");
}

std::string recomputedBalance(const AmountFilter& f) {
  SqlLines sql;
  sql.line(std::string("update ") + f.workTable());
  if (f.bArp)
    sql.line("set fglamountFor=fglBegamountFor-FglCreditAmountFor+FglDebitAmountFor,")
        .line("Fglamount =fglbegamount-FglCreditAmount+FglDebitAmount");
  else
    sql.line("set fglamountFor=fglBegamountFor+FglCreditAmountFor-FglDebitAmountFor,")
        .line("Fglamount =fglbegamount+FglCreditAmount-FglDebitAmount");
  return sql.text();
}

std::string ofPeriod(const AmountFilter& f) {
  const std::string sign = f.bArp ? "" : "-1 * ";
  SqlLines sql;
  sql.line("update v1 set fglamountfor = fglamountfor + isnull(u1.famountfor,0),")
      .line("    fglamount = fglamount + isnull(u1.famount,0),");
  addMovementColumns(sql);
  sql.line(std::string("from ") + f.workTable() + " v1 inner join (")
      .line("select v3.fyear, v3.fperiod, v3.FAcctID as FAccountID, " +
            std::string(f.bShowDetail ? " u1.fitemid " : " 0 ") + " as FItemID,")
      .lineIf(f.bChkForAdjust, "v2.fcurrencyid,");
  addSums(sql, "For", false, sign, false);
  addSums(sql, "", false, sign, true);
  addSources(sql, f);
  sql.line(std::string("group by v3.fyear, v3.fperiod,v3.FAcctID ") +
           (f.bShowDetail ? ", u1.fItemID" : "") + (f.bChkForAdjust ? ", v2.FCurrencyID " : ""))
      .line(joinBack(f) + ";")
      .line(recomputedBalance(f));
  return sql.text();
}

std::string ofClosing(const AmountFilter& f) {
  SqlLines sql;
  sql.line("update v1 set")
      .line(
          "    fglamountfor = fglamountfor + isnull(u1.fdebitamountFor,0)-"
          "isnull(u1.fCreditamountFor,0),")
      .line("    fglamount = fglamount + isnull(u1.fdebitamount,0)-isnull(u1.fCreditamount,0),");
  addMovementColumns(sql);
  sql.line(std::string("from ") + f.workTable() + " v1 inner join (")
      .line("select v3.fyear, v3.fperiod, " + std::string(f.bShowDetail ? " u1.fitemid " : " 0 ") +
            " as FItemID,");
  addSums(sql, "For", !f.bArp, "a1.FDC * a1.FLogic * ", false);
  addSums(sql, "", !f.bArp, "a1.FDC * a1.FLogic * ", true);
  addSources(sql, f);
  sql.line(std::string("group by v3.fyear, v3.fperiod ") + (f.bShowDetail ? " , u1.fItemID" : ""))
      .line(joinBack(f));
  return sql.text();
}

}  // namespace

std::string unpostedVouchers(const AmountFilter& filter) {
  return filter.closing() ? ofClosing(filter) : ofPeriod(filter);
}

}  // namespace velmora::amount
