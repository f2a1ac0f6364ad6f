#include "explain/row_access.h"

#include "velmora/collections/dictionary.h"
#include "velmora/collections/vector.h"
#include "velmora/com/class_table.h"

namespace velmora::explain {

namespace {

using collections::Dictionary;
using collections::Variant;
using collections::Vector;
using collections::VectorRef;

VectorRef tableRequests() {
  auto requests = com::make<Vector>();
  for (const char* table : {"t_department", "t_emp", "t_item", "t_currency"}) {
    auto request = com::make<Dictionary>();
    request->Set("Table", table);
    requests->Add(request);
  }
  return requests;
}

VectorRef columnRequests(const AccessColumns& columns) {
  const struct {
    const char *table, *alias, *key, *column;
  } dimensions[] = {{"t_Department", "t11", "FItemID", columns.department},
                    {"t_emp", "t12", "FItemID", columns.employee},
                    {"t_item", "t13", "FItemID", columns.contact},
                    {"t_currency", "t14", "FCurrencyID", columns.currency}};
  auto requests = com::make<Vector>();
  for (const auto& dimension : dimensions) {
    auto request = com::make<Dictionary>();
    request->Set("DataTable", dimension.table);
    request->Set("DataTableAs", dimension.alias);
    request->Set("DataCol", dimension.key);
    request->Set("BillTableAs", "c");
    request->Set("BillCol", dimension.column);
    requests->Add(request);
  }
  return requests;
}

}  // namespace

RowAccess rowAccess(const std::string& callerString, const AccessColumns& columns) {
  if (callerString.empty()) return {};
  const auto security = com::CreateObject("TirnBase.SecurityInfo");
  const Variant user = com::call(*security, "GetCurrentUserID", callerString);
  const auto service = com::CreateObject("TirnBase.DataAccess");
  if (!com::call(*service, "IsUsed", callerString, user).toBool()) return {};
  const Variant info =
      com::call(*service, "GetRowAccessInfo2", callerString, user, tableRequests());
  const Variant answer = com::call(*service, "GetAccessDataSQL", columnRequests(columns), info);
  const auto texts = answer.toObject<Dictionary>();
  if (!texts) return {};
  const std::string from = texts->Value("From").toText(), where = texts->Value("Where").toText();
  if (from.empty() || where.empty()) return {};
  return {" " + from, " and " + where};
}

}  // namespace velmora::explain
