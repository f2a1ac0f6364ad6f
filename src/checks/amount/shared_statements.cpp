#include "checks/amount/shared_statements.h"

#include "checks/amount/amount_columns.h"
#include "common/access_filters.h"

namespace velmora::amount {

std::string itemConditions(const AmountFilter& filter, const CDataSource* dataSource) {
  std::string condition = "t10.fitemclassid = " + filter.itemClass + " and t10.FDetail = 1";
  if (filter.bItemFilter) condition += " and " + filter.itemRange;
  if (dataSource) condition += PermittedItemCondition(*dataSource);
  return condition;
}

void addDifferences(SqlLines& batch, const char* table, bool withMovements) {
  batch.line(std::string("update ") + table +
             " set fdiffamountfor = fglamountfor - farpamountfor, "
             "fdiffamount = fglamount - farpamount");
  if (!withMovements) return;
  batch
      .line(
          ",FDiffBegAmountfor = fglbegamountfor - farpbegamountfor, "
          "fdiffbegamount = fglbegamount - farpbegamount")
      .line(
          ",FDiffDebitAmountfor = fgldebitamountfor - farpdebitamountfor, "
          "fdiffdebitamount = fgldebitamount - farpdebitamount")
      .line(
          ",FDiffCreditAmountfor = fglcreditamountfor - farpcreditamountfor, "
          "fdiffcreditamount = fglcreditamount - farpcreditamount");
}

void addNames(SqlLines& batch, const AmountFilter& filter, bool withCurrencyName,
              const std::string& currencyMatch) {
  batch
      .line(
          "update v1 set v1.FAcctID = isnull(t1.FAccountID,0), "
          "v1.FAcctName = isnull(t1.fname,''), ")
      .line(
          "     v1.FItemClassID = isnull(t10.FItemID,0) , "
          "v1.FItemClassName = isnull(t10.fname,''),")
      .line(std::string("     v1.famountdecimal = isnull(t9.FScale, 2)") +
            (withCurrencyName ? ", v1.FCurrencyName = isnull(t9.fname,'') " : ""))
      .line(" from #amtcheck v1 left join t_account t1 on (v1.FAcctNumber = t1.FNumber)")
      .line(" left join t_item t10 on (v1.FItemClassNumber = t10.FNumber and t10.fitemclassid = " +
            filter.itemClass + ")")
      .line(" left join t_currency t9 on (" + currencyMatch + " ) ");
}

std::string shownCurrency(const AmountFilter& filter) {
  return filter.currencyId == 0 ? "t9.FCurrencyID=1" : "v1.FCurrencyID = t9.FCurrencyID";
}

}  // namespace velmora::amount
