#include "explain/row_access.h"

#include "common/access_requests.h"
#include "velmora/collections/dictionary.h"
#include "velmora/com/class_table.h"

namespace velmora::explain {

using collections::Dictionary;
using collections::Variant;

RowAccess rowAccess(const std::string& callerString, const DimensionColumns& columns) {
  if (callerString.empty()) return {};
  const auto security = com::CreateObject("TirnBase.SecurityInfo");
  const Variant user = com::call(*security, "GetCurrentUserID", callerString);
  const auto service = com::CreateObject("TirnBase.DataAccess");
  if (!com::call(*service, "IsUsed", callerString, user).toBool()) return {};
  const Variant info =
      com::call(*service, "GetRowAccessInfo2", callerString, user, dimensionTables());
  const Variant answer = com::call(*service, "GetAccessDataSQL", columnRequests(columns), info);
  const auto texts = answer.toObject<Dictionary>();
  if (!texts) return {};
  const std::string from = texts->Value("From").toText(), where = texts->Value("Where").toText();
  if (from.empty() || where.empty()) return {};
  return {" " + from, " and " + where};
}

}  // namespace velmora::explain
