// Settlement records that move an amount between accounts and have no voucher.

#include <functional>

#include "checks/closing/query_builders.h"
#include "checks/closing/query_filter.h"
#include "common/periods.h"
#include "common/sql_lines.h"

namespace velmora::closing {

namespace {

std::string ordinaryTransfers() {
  return SqlLines().line(" and FTransferID > 0 ").line(" and (c.FVoucherID<=0 ) ").text();
}

std::string advanceOffsets(const QueryFilter& filter) {
  return SqlLines()
      .line(" and c.FTransferID=0 ")
      .line(" and c.FVoucherID<=0 ")
      .line(std::string(" and c.frp=") + filter.side())
      .line(" and  ( d.FPre = 1 or (d.fpre = 0 and d.fisinit = 1 )) ")
      .line(filter.bArp() ? " and (c.FType=5 or c.FType=15)" : " and (c.FType=6 or c.FType=16)")
      .text();
}

std::string settledInPeriod(const CDataSource& dataSource, bool bArp,
                            const collections::Dictionary& dFilter) {
  const auto year = dFilter.Value("BYear").toInt32(), period = dFilter.Value("BPeriod").toInt32();
  return " and fcheckdate>='" + GetPeriodStartDate(dataSource, bArp, year, period).toDateText() +
         "' and fcheckdate<='" + GetPeriodEndDate(dataSource, bArp, year, period).toDateText() +
         "'";
}

}  // namespace

std::string GetUnVchExtBillStr(const std::function<const CDataSource&()>& dataSource,
                               const collections::Dictionary& dFilter) {
  const QueryFilter filter(dFilter);
  const bool advances = dFilter.Value("bPreChecked").toBool();
  const char* type = !advances ? "转账" : filter.bArp() ? "预收冲应收" : "预付冲应付";
  SqlLines query;
  query
      .line(" select d.FDate, d.FNumber as FBillNO," + filter.literal(type) + " as Ftype," +
            filter.literal("没有生成转账凭证") +
            " as FErrInfo, c.FInterID,c.FTransferID,d.FPre , c.FID ")
      .line("from t_rp_newcheckinfo c inner join t_rp_contact d on (c.FContactID=d.FID)")
      .line(" where c.FTransfer=1 ")
      .line(advances ? advanceOffsets(filter) : ordinaryTransfers());
  if (!filter.upToPeriod()) query.line(settledInPeriod(dataSource(), filter.bArp(), dFilter));
  return query.line(std::string(" and d.FRP=") + filter.side()).text();
}

}  // namespace velmora::closing
