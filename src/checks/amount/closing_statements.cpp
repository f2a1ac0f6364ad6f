// The closing check: one side of AR/AP as a whole against a signed list of accounts.

#include "checks/amount/amount_columns.h"
#include "checks/amount/amount_statements.h"
#include "checks/amount/item_ranges.h"
#include "checks/amount/query_builders.h"
#include "checks/amount/shared_statements.h"
#include "checks/amount/work_tables.h"
#include "common/messages.h"
#include "frame/call/text.h"
#include "velmora/com/error.h"

namespace velmora::amount {

using collections::Dictionary;

namespace {

std::string label(const Dictionary& dFilter, std::string_view text) {
  return quoted(LoadMessage(text, dFilter.Value("strLanguage").toText()));
}

std::vector<std::string> entriesOf(const std::string& list) {
  std::vector<std::string> entries;
  std::string_view rest = list;
  if (list.empty()) return entries;
  while (true) {
    const bool last = rest.find(',') == std::string_view::npos;
    entries.emplace_back(cutAt(rest, ','));
    if (last) return entries;
  }
}

void seedRows(SqlLines& batch, const AmountFilter& f, const CDataSource* dataSource,
              const Dictionary& dFilter) {
  const std::string head = "select " + f.year + "," + f.period + "," + f.currency;
  if (f.bShowDetail)
    batch
        .line(
            "insert into #AmtDetail (FYear,Fperiod,FCurrencyID,FItemClassID, FAcctNumber, "
            "FItemClassNumber)")
        .line(head + " , t10.FItemID , '', t10.fnumber")
        .line("from t_item t10")
        .line("where  " + itemConditions(f, dataSource))
        .line("order by  t10.fnumber");
  else
    batch
        .line(
            "insert into #Amtcheck (FYear,Fperiod,FCurrencyID,FItemClassID, FAcctNumber, "
            "FItemClassNumber)")
        .line(head + " , 0 as FItemID , '' as FAcctNumber, " + label(dFilter, "合计") +
              " as fnumber");
}

struct SignedAccounts {
  std::vector<std::string> accounts, signs;
};

SignedAccounts signedAccounts(const Dictionary& dFilter) {
  const std::string list = dFilter.Value("AcctList").toText();
  const std::string logic = dFilter.Value("AcctLogic").toText();
  SignedAccounts result{entriesOf(list), entriesOf(logic)};
  if (result.accounts.size() != result.signs.size())
    throw com::Error(com::error::kInvalidArgument, "clsInitBalCheck",
                     "AcctLogic \"" + logic + "\" has " + std::to_string(result.signs.size()) +
                         " signs for the " + std::to_string(result.accounts.size()) +
                         " accounts of AcctList \"" + list + "\"; expected one each");
  return result;
}

void seedAccounts(SqlLines& batch, const SignedAccounts& listed) {
  for (std::size_t i = 0; i < listed.accounts.size(); ++i)
    batch.line("insert into #AmtAcct(FAccountID,FDC,FLogic,FDetailID)")
        .line(std::string("select t1.FAccountID, t1.FDC, ") +
              (listed.signs[i] == "-" ? "-1" : "1") +
              ",FDetailID  from t_Account t1 where t1.FAccountID = " + listed.accounts[i]);
}

/// Item rows with the totals of period, year and everything.
void addDetailRows(SqlLines& batch, const Dictionary& dFilter, bool withMovements) {
  const std::vector<std::string> amounts = amountColumns(withMovements);
  const auto relabel = [&](std::string_view text, const char* rest) {
    batch.line("Update #AmtCheck set FItemClassNumber = " + label(dFilter, text) + rest);
  };
  batch.line("insert into #AmtCheck(FYear, Fperiod, FAcctNumber,  FItemClassNumber,")
      .line(columnList(amounts) + ",")
      .line("FSumSort)")
      .line("select fyear, fperiod, '' as FAcctNumber,")
      .line(" isnull(FItemClassNumber,'') as FItemClassNumber,")
      .line(columnList(amounts, "sum(", ")") + ",")
      .line(" (case when grouping(fyear) =1  then 110   ")
      .line(" when grouping(fperiod) =1 then 109  ")
      .line(" when grouping(FItemClassNumber)=1 then 106")
      .line("    else 0 end ) as fsort")
      .line(" from #amtdetail group by fyear, fperiod,   FItemClassNumber with rollup");
  relabel("(期间小计)", " where fsumsort = 106");
  relabel("(年小计)", " where fsumsort = 109");
  relabel("(合计)", " ,FSumSort = 101 where fsumsort = 110");
  batch.line("update #amtcheck set fcurrencyid = " + dFilter.Value("CurrencyID").toText());
}

std::string completeRows(const Dictionary& dFilter) {
  const AmountFilter f(dFilter);
  const bool withMovements = !f.initial();
  SqlLines batch;
  addDifferences(batch, f.bShowDetail ? " #amtdetail" : "#amtcheck", withMovements);
  if (f.bShowDetail) addDetailRows(batch, dFilter, withMovements);
  addNames(batch, f, false, shownCurrency(f));
  return batch.text();
}

}  // namespace

void GetClosingCheckDataSql(const CDataSource* dataSource, Dictionary& dFilter) {
  writeNumberRanges(dFilter);
  const AmountFilter filter(dFilter);
  const SignedAccounts listed = signedAccounts(dFilter);
  SqlLines tables;
  tables.line(GetClosingTableSql(filter.bShowDetail));
  seedRows(tables, filter, dataSource, dFilter);
  seedAccounts(tables, listed);
  dFilter.Set("Chk_CreateTable", tables.text());
  dFilter.Set("bClosingAmt", true);
  dFilter.Set("Chk_InitArpAmt", GetArpAmtSql(dataSource, dFilter));
  dFilter.Set("Chk_InitGlAmt", GetGlAmtSql(dFilter));
  dFilter.Set("Chk_UpdateTable", completeRows(dFilter));
}

}  // namespace velmora::amount
