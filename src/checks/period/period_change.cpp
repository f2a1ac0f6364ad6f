#include "checks/period/period_change.h"

#include <algorithm>

#include "checks/period/open_rows.h"
#include "common/messages.h"
#include "common/sql_lines.h"

namespace velmora::period {

using collections::Date;

namespace {

/// A contact record dated on or after `day`. An account set in which receivables and
/// payables were never installed has no such table, and so none.
std::string contactSince(const std::string& day) {
  return SqlLines()
      .line(
          "if exists (select * from dbo.sysobjects where id = "
          "object_id(N'[dbo].[t_rp_contact]') and xtype = 'u')")
      .line("select top 1 * from t_rp_contact where ffincdate >= '" + day + "'")
      .line(" else select * from t_item where 1 = 0 ")
      .text();
}

}  // namespace

bool isCanChangePeriod(const CDataSource& dataSource, Date oldStart, Date newStart,
                       std::string& message) {
  const std::string day = std::min(oldStart, newStart).toDateText();
  const ScopedConnection connection(dataSource.UnCommittedConnection());
  if (openRows(*connection, contactSince(day))->RecordCount() == 0) return true;
  message = LoadMessageFmt("应收应付系统检测发现存在日期大于 %1 的单据，不允许修改。",
                           dataSource.parser().LanguageID(), {day});
  return false;
}

std::string periodCheckFailed(const std::string& language) {
  return LoadMessage("应收应付系统在检测调整会计期间合法性时，发现意外错误。", language);
}

}  // namespace velmora::period
