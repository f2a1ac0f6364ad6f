#include "common/access_requests.h"

#include "velmora/collections/dictionary.h"

namespace velmora {

using collections::Dictionary;
using collections::DictionaryRef;
using collections::Vector;
using collections::VectorRef;

namespace {

DictionaryRef tableColumn(std::string_view table, std::string_view alias, std::string_view key) {
  auto request = com::make<Dictionary>();
  request->Set("DataTable", table);
  request->Set("DataTableAs", alias);
  request->Set("DataCol", key);
  return request;
}

}  // namespace

VectorRef tableRequests(std::initializer_list<std::string_view> tables) {
  auto requests = com::make<Vector>();
  for (const auto table : tables) {
    auto request = com::make<Dictionary>();
    request->Set("Table", table);
    requests->Add(request);
  }
  return requests;
}

VectorRef dimensionTables() {
  return tableRequests({"t_department", "t_emp", "t_item", "t_currency"});
}

VectorRef columnRequests(const DimensionColumns& columns) {
  const struct {
    std::string_view table, alias, key, column;
  } dimensions[] = {{"t_Department", "t11", "FItemID", columns.department},
                    {"t_emp", "t12", "FItemID", columns.employee},
                    {"t_item", "t13", "FItemID", columns.contact},
                    {"t_currency", "t14", "FCurrencyID", columns.currency}};
  auto requests = com::make<Vector>();
  for (const auto& dimension : dimensions) {
    auto request = tableColumn(dimension.table, dimension.alias, dimension.key);
    request->Set("BillTableAs", columns.alias);
    request->Set("BillCol", dimension.column);
    requests->Add(request);
  }
  return requests;
}

VectorRef tableColumnRequest(std::string_view table, std::string_view alias, std::string_view key) {
  auto requests = com::make<Vector>();
  requests->Add(tableColumn(table, alias, key));
  return requests;
}

}  // namespace velmora
