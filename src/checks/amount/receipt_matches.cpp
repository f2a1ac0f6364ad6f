#include "checks/amount/receipt_matches.h"

#include "common/sql_lines.h"

namespace velmora::amount {

std::string idSource(const std::string& column) {
  return "(case when " + column + "=1002523 then 1002523 else 0 end)";
}

std::string onEntry(const std::string& alias) {
  return " on b.FInterID=" + alias + ".FIBInterID and b.FEntryID=" + alias + ".FEntryID and " +
         idSource("b.FTranType") + "=" + alias + ".FIDSource";
}

std::string partialMatches(const std::string& condition, bool withPeriod,
                           const std::string& alias) {
  const std::string source = idSource("FTranType");
  const std::string period = withPeriod ? ",FYear,FPeriod" : "";
  SqlLines table;
  table
      .line("(select FIBInterID,FEntryID," + source + " FIDSource" + period +
            ",sum(FHookQty) FHookQty from ICHookRelations")
      .line("where FIBTag=1 and FEquityHook<>1" + condition)
      .line("group by FIBInterID,FEntryID," + source + period + ") " + alias);
  return table.text();
}

std::string fullMatches(const std::string& condition, const std::string& period,
                        const std::string& alias) {
  const std::string source = idSource("FTranType");
  SqlLines table;
  table.line("(select FIBInterID,FEntryID,FIDSource,FYear,FPeriod,FEquityHook from (select")
      .line("FIBInterID,FEntryID," + source + " FIDSource,FYear,FPeriod,FEquityHook,")
      .line("row_number() over (partition by FIBInterID,FEntryID," + source +
            " order by FYear,FPeriod) FPlace")
      .line("from ICHookRelations where FIBTag=1 and FEquityHook=1" + condition + ") h")
      .line("where FPlace=1" + period + ") " + alias);
  return table.text();
}

}  // namespace velmora::amount
