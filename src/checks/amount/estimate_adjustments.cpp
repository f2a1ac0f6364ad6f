// Estimated liabilities stand in the general ledger only; the AR/AP side is raised by
// them, so that they do not show as differences.

#include "checks/amount/amount_filter.h"
#include "checks/amount/query_builders.h"
#include "common/sql_lines.h"

namespace velmora::amount {

namespace {

constexpr const char* kRaisedBalance =
    "update v1 set v1.FArpamountFor = v1.FArpamountFor + u1.FAmountFor , "
    "v1.FArpAmount = v1.FArpAmount + u1.FAmount";

std::string fromWorkTable(const AmountFilter& f, const std::string& source) {
  return std::string("from ") + f.workTable() + " v1 inner join (\r\n" + source + ") u1 on";
}

std::string itemMatch(const AmountFilter& f) {
  return f.bShowDetail ? " and v1.FItemClassID = u1.FCustomer " : "";
}

std::string raisedOpening(const AmountFilter& f, const std::string& source) {
  SqlLines sql;
  sql.line(std::string(kRaisedBalance) + ",")
      .line(
          " v1.FArpBegAmountfor = v1.FArpBegAmountfor + u1.famountfor, "
          "v1.FArpBegAmount = v1.FArpBegAmount + u1.famount")
      .line(fromWorkTable(f, source))
      .line((f.closing() ? "1=1" : "v1.FAcctID = u1.FAccountID") + itemMatch(f));
  return sql.text();
}

/// An initial check has no movements; its balance alone is raised.
std::string raisedMovement(const AmountFilter& f, const std::string& source) {
  SqlLines sql;
  sql.line(std::string(kRaisedBalance) + (f.initial() ? "" : ","))
      .lineIf(f.closing(),
              " v1.FArpDebitAmountfor = v1.FArpDebitAmountfor + u1.FAmountFor, "
              "v1.FArpDebitAmount = v1.FArpDebitAmount + u1.FAmount")
      .lineIf(f.mode == Mode::period,
              " v1.FArpCreditAmountfor = v1.FArpCreditAmountfor + u1.FAmountFor, "
              "v1.FArpCreditAmount = v1.FArpCreditAmount + u1.FAmount")
      .line(fromWorkTable(f, source))
      .line("(v1.FYear = u1.Fyear and v1.FPeriod = u1.FPeriod" +
            std::string(f.closing() ? "" : " and v1.FAcctID = u1.FAccountID ") + itemMatch(f) +
            ")");
  return sql.text();
}

}  // namespace

std::string GetAdjustAmtSql(const CDataSource& dataSource, const collections::Dictionary& dFilter,
                            EstimateKind kind) {
  const AmountFilter filter(dFilter);
  const auto source = [&](bool opening) {
    return GetAdjustSourceSql(dataSource, dFilter, kind, opening);
  };
  SqlLines batch;
  if (!filter.initial()) batch.line(raisedOpening(filter, source(true)));
  return batch.line(raisedMovement(filter, source(false))).text();
}

}  // namespace velmora::amount
