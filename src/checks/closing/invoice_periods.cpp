// Inventory-module invoices whose financial period differs from their AR/AP record's.

#include "checks/closing/query_builders.h"
#include "checks/closing/query_filter.h"
#include "common/sql_lines.h"

namespace velmora::closing {

namespace {

struct SideNames {
  const char* invoice;
  const char* contactType;
  const char* partnerColumn;
};

constexpr SideNames kReceivables = {"icsale", "3", "FCustID"};
constexpr SideNames kPayables = {"icpurchase", "4", "FSupplyID"};

/// The period of each invoice by its financial date.
std::string financialPeriods(const QueryFilter& filter, const SideNames& side) {
  SqlLines query;
  query.line("inner join (select v1.finterid, v1.fdate, u1.fyear, u1.fperiod ")
      .line("    from  " + std::string(side.invoice) +
            " v1 inner join t_perioddate u1 on (v1.ffincdate >=u1.fstartdate and v1.ffincdate "
            "<=u1.fenddate)");
  if (const std::string condition = filter.effectiveFilter(); condition.empty()) {
    query.line(" where " + filter.singlePeriodCondition());
  } else {
    query.line("    inner join t_currency t10 on (v1.FCurrencyID = t10.FCurrencyID)")
        .line("    inner join t_item t1 on (v1." + std::string(side.partnerColumn) +
              " = t1.FItemID)")
        .line("    where " + condition + " and " + filter.singlePeriodCondition());
  }
  return query.line(") v3 on (v1.FInterID = v3.FInterID) ").text();
}

}  // namespace

std::string GetUnPeriodICBillStr(const collections::Dictionary& dFilter) {
  const QueryFilter filter(dFilter);
  const SideNames& side = filter.bArp() ? kReceivables : kPayables;
  return SqlLines()
      .line("select v1.FDate, u1." + filter.nameColumn() +
            " as FType, v1.FBillNo, v1.FcurrencyID,isnull(v1.FAcctID,0) as FAccountID, v2.FAmount "
            ", v2.FAmountFor," +
            filter.literal("物流单据的财务期间和应收应付系统不一致,可以通过重新审核来处理。") +
            " as FerrInfo")
      .line("from " + std::string(side.invoice) + " v1 inner join")
      .line(
          "t_rp_contact  v2 on (v1.FInterID = v2.FInvoiceID And v2.FQ8Import = 1 And v2.FType = " +
          std::string(side.contactType) + " )")
      .line(financialPeriods(filter, side))
      .line("inner join t_rp_billtype u1 on (v1.FClassTypeID = u1.FID) ")
      .line("inner join t_currency t10 on (v1.FCurrencyID = t10.FCurrencyID) ")
      .line(
          "where (v1.fperiod <> v2.fperiod or v1.FYear <> v2.FYear or v1.FPeriod <> v3.FPeriod or "
          "v3.FPeriod <> v2.FPeriod )    ")
      .text();
}

}  // namespace velmora::closing
