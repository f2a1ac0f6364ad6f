// The initial and the period check, account by account.

#include "checks/amount/amount_columns.h"
#include "checks/amount/amount_statements.h"
#include "checks/amount/item_ranges.h"
#include "checks/amount/query_builders.h"
#include "checks/amount/shared_statements.h"
#include "checks/amount/work_tables.h"
#include "common/messages.h"

namespace velmora::amount {

using collections::Dictionary;

namespace {

std::string label(const Dictionary& dFilter, std::string_view text) {
  return quoted(LoadMessage(text, dFilter.Value("strLanguage").toText()));
}

/// A row for every pair of a listed account and a detail item.
void seedDetail(SqlLines& batch, const AmountFilter& f, const std::string& items, bool ofCurrency) {
  batch
      .line(
          "insert into #AmtDetail (FYear,Fperiod,FCurrencyID,FAcctID,FItemClassID, FAcctNumber, "
          "FItemClassNumber)")
      .line("select " + f.year + "," + f.period + "," + f.currency +
            " ,t1.FAccountid,  t10.FItemID , t1.FNumber, t10.fnumber")
      .line("from t_Account t1, t_item t10")
      .line((ofCurrency ? "where t1.FCurrencyID = " + f.currency + " and t1.faccountid in ("
                        : "where  t1.faccountid in (") +
            f.accounts + ") and " + items)
      .lineIf(!ofCurrency && f.currencyId > 0, " and t1.FCurrencyID = 0")
      .line("order by t1.FNumber, t10.fnumber");
}

void seedDetail(SqlLines& batch, const AmountFilter& f, const CDataSource* dataSource) {
  const std::string items = itemConditions(f, dataSource);
  seedDetail(batch, f, items, false);
  if (f.currencyId > 0) seedDetail(batch, f, items, true);
}

void seedHead(SqlLines& batch, const AmountFilter& f, const std::string& currency,
              const std::string& total) {
  batch
      .line(
          "insert into #AmtCheck (FYear,Fperiod,FCurrencyID,FAcctID,FItemClassID, FAcctNumber, "
          "FItemClassNumber)")
      .line("select " + f.year + "," + f.period + "," + currency +
            " ,t1.FAccountid,  0 as FItemID, t1.FNumber, " + total + " as FItemNumber");
}

/// A row for every listed account.
void seedAccounts(SqlLines& batch, const AmountFilter& f, const std::string& total) {
  seedHead(batch, f, f.currency, total);
  batch.line("from t_Account t1 ")
      .line("where  t1.faccountid in (" + f.accounts + ") ")
      .lineIf(f.currencyId > 0, " and t1.FCurrencyID = 0 ")
      .line("order by t1.FNumber");
  if (f.currencyId <= 0) return;
  seedHead(batch, f, f.currency, total);
  batch.line("from t_Account t1 ")
      .line("where  t1.faccountid in (" + f.accounts + ") and t1.FCurrencyID = " + f.currency)
      .line("order by t1.FNumber ");
}

/// A row for every listed account and foreign currency that it is kept in.
void seedAccountCurrencies(SqlLines& batch, const AmountFilter& f, const std::string& total) {
  seedHead(batch, f, "t2.fcurrencyid", total);
  batch.line("from t_Account t1  , t_currency t2")
      .line("where  t1.faccountid in (" + f.accounts + ") ")
      .line(" and t1.FCurrencyID = 0  and t2.FCurrencyID > 1 ")
      .line("order by t1.FNumber");
  seedHead(batch, f, "t2.fcurrencyid", total);
  batch.line("from t_Account t1 inner join t_currency t2 on (t1.FCurrencyID = t2.FCurrencyID) ")
      .line("where t1.FCurrencyID = " + f.currency + " and t1.faccountid in (" + f.accounts +
            ") and t2.FCurrencyID > 1");
}

std::string createTables(const CDataSource* dataSource, const Dictionary& dFilter) {
  const AmountFilter f(dFilter);
  SqlLines batch;
  batch.line(" set nocount on ").line(createAmtCheck(true, !f.initial()));
  if (f.bShowDetail) {
    batch.line(createAmtDetail(!f.initial()));
    seedDetail(batch, f, dataSource);
  } else if (f.bChkForAdjust) {
    seedAccountCurrencies(batch, f, label(dFilter, "合计"));
  } else {
    seedAccounts(batch, f, label(dFilter, "合计"));
  }
  return batch.text();
}

/// Detail rows summed by item, then each account's subtotal.
void addDetailRows(SqlLines& batch, const Dictionary& dFilter, bool withMovements) {
  const std::vector<std::string> amounts = amountColumns(withMovements);
  const std::string sums = columnList(amounts, "sum(", ")") + ",";
  const char* account = "select fyear, fperiod, isnull( FAcctNumber,'') as FAcctNumber,";
  batch.line("insert into #AmtCheck(FYear, Fperiod, FAcctNumber,  FItemClassNumber,")
      .line(columnList(amounts) + ",")
      .line("FSumSort)")
      .line(account)
      .line(" isnull(FItemClassNumber,'') as FItemClassNumber,")
      .line(sums)
      .line(" 0 as fsort ")
      .line(" from #amtdetail group by fyear, fperiod,  FAcctNumber, FItemClassNumber")
      .line(" union ")
      .line(account)
      .line(" '' as FItemClassNumber,")
      .line(sums)
      .line(" 101 as fsort ")
      .line(" from #amtdetail group by fyear, fperiod,  FAcctNumber")
      .line("Update #AmtCheck set FAcctNumber = FAcctNumber + " + label(dFilter, "(小计)") +
            " where fsumsort = 101")
      .line("update #amtcheck set fcurrencyid = " + dFilter.Value("CurrencyID").toText());
}

std::string completeRows(const Dictionary& dFilter) {
  const AmountFilter f(dFilter);
  const bool withMovements = !f.initial();
  SqlLines batch;
  addDifferences(batch, f.bShowDetail ? " #amtdetail" : "#amtcheck", withMovements);
  if (f.bShowDetail) addDetailRows(batch, dFilter, withMovements);
  addNames(batch, f, true, f.bChkForAdjust ? "v1.FCurrencyID = t9.FCurrencyID" : shownCurrency(f));
  return batch.text();
}

}  // namespace

void GetAmtCheckDataSql(const CDataSource* dataSource, Dictionary& dFilter) {
  if (!dFilter.Lookup("bShowDetail")) dFilter.Set("bShowDetail", true);
  // A closing check with the same dictionary left its mode, which has tables of its own.
  dFilter.Remove("bClosingAmt");
  writeNumberRanges(dFilter);
  dFilter.Set("Chk_CreateTable", createTables(dataSource, dFilter));
  dFilter.Set("Chk_InitArpAmt", GetArpAmtSql(dataSource, dFilter));
  dFilter.Set("Chk_InitGlAmt", GetGlAmtSql(dFilter));
  dFilter.Set("Chk_UpdateTable", completeRows(dFilter));
}

}  // namespace velmora::amount
