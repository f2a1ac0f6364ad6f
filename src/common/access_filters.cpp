#include "common/access_filters.h"

#include "common/access_requests.h"
#include "frame/call/text.h"
#include "velmora/com/class_table.h"
#include "velmora/com/context.h"
#include "velmora/com/error.h"

namespace velmora {

using collections::Dictionary;
using collections::DictionaryRef;
using collections::Variant;
using collections::VectorRef;

namespace {

/// The access service, asked as the calling user.
class AccessService {
 public:
  explicit AccessService(const CDataSource& dataSource)
      : callerString_(dataSource.parser().PropsString()),
        user_(GetCurrentUserID(dataSource)),
        service_(com::CreateObject("TirnBase.DataAccess")) {}

  bool isUsed() { return com::call(*service_, "IsUsed", callerString_, user_).toBool(); }

  Variant rowAccessInfo(const VectorRef& tables) {
    return com::call(*service_, "GetRowAccessInfo2", callerString_, user_, tables);
  }

  /// Nothing when the service answers no dictionary.
  DictionaryRef dataSql(const VectorRef& columns, const Variant& rowAccessInfo) {
    const Variant answer = com::call(*service_, "GetAccessDataSQL", columns, rowAccessInfo);
    if (answer.type() != collections::VarType::object || !answer.toObject()) return {};
    return answer.toObject().as<Dictionary>();
  }

 private:
  std::string callerString_;
  std::int32_t user_;
  com::Ref<com::IDispatch> service_;
};

bool hasText(const Dictionary& result, std::string_view key) {
  return !result.Value(key).toText().empty();
}

bool isRestricted(const Variant& rowAccessInfo, std::string_view table) {
  const auto info = rowAccessInfo.toObject<Dictionary>();
  if (!info) return false;
  const auto restricted = info->Value("AccessInfo").toObject<Dictionary>();
  return restricted && restricted->Lookup(table);
}

/// Runs `body`; when it raises, answers `fallback` and leaves the reason as the thread's
/// error information.
template <class Result, class Body>
Result unlessItFails(Result fallback, Body body) {
  try {
    return body();
  } catch (...) {
    com::SetErrorInfo(com::currentErrorInfo("row access"));
    return fallback;
  }
}

bool isEmpty(const VectorRef& list) {
  return !list || list->Size() == 0;
}

DictionaryRef filterOf(const CDataSource& dataSource, const DimensionColumns& columns) {
  DictionaryRef result;
  if (GetAccessFilter(dataSource, dimensionTables(), columnRequests(columns), result))
    return result;
  return NoAccessFilter();
}

}  // namespace

DictionaryRef NoAccessFilter() {
  auto result = com::make<Dictionary>();
  result->Set("NeedAccess", false);
  result->Set("From", "");
  result->Set("Where", "");
  return result;
}

std::int32_t GetCurrentUserID(const CDataSource& dataSource) {
  const auto security = com::GetObjectContext().CreateInstance("TirnBase.SecurityInfo");
  return com::call(*security, "GetCurrentUserID", dataSource.parser().PropsString()).toInt32();
}

bool GetAccessFilter(const CDataSource& dataSource, const VectorRef& tables,
                     const VectorRef& columns, DictionaryRef& result) {
  result = NoAccessFilter();
  return unlessItFails(false, [&] {
    AccessService service(dataSource);
    if (!service.isUsed()) return true;
    Variant rowAccessInfo;
    if (!isEmpty(tables)) rowAccessInfo = service.rowAccessInfo(tables);
    if (isEmpty(columns)) return true;
    if (const auto answer = service.dataSql(columns, rowAccessInfo)) {
      result = answer;
      result->Set("NeedAccess", hasText(*result, "From") && hasText(*result, "Where"));
    }
    return true;
  });
}

std::string BuildAccessSubquery(const CDataSource& dataSource, std::string_view table,
                                std::string_view column, bool allColumns) {
  const std::string name(table), key(column.empty() ? "FItemID" : column);
  return unlessItFails(std::string(), [&]() -> std::string {
    AccessService service(dataSource);
    if (!service.isUsed()) return "";
    std::string query = allColumns ? "(Select z.* " : "(Select z." + key + " ";
    query += " FROM " + name + " z ";
    const Variant rowAccessInfo = service.rowAccessInfo(tableRequests({name}));
    if (isRestricted(rowAccessInfo, name)) {
      const auto sql = service.dataSql(tableColumnRequest(name, "z", key), rowAccessInfo);
      if (sql && !trimmed(sql->Value("From").toText()).empty())
        query += " " + sql->Value("From").toText() + "Where " + sql->Value("Where").toText();
    }
    return query + " ) ";
  });
}

std::string PermittedItemCondition(const CDataSource& dataSource) {
  const std::string permitted = BuildAccessSubquery(dataSource, "t_item", "FItemID", false);
  return permitted.empty() ? "" : " and t10.FItemID in (" + permitted + ") ";
}

DictionaryRef DocumentAccessFilter(const CDataSource& dataSource) {
  return filterOf(dataSource, {"b", "FDepartment", "FEmployee", "FCustomer", "FCurrencyID"});
}

DictionaryRef BalanceAccessFilter(const CDataSource& dataSource) {
  return filterOf(dataSource, {"v1", "FDepartment", "FEmployee", "FCustomer", "FCurrencyID"});
}

DictionaryRef InitDataAccessFilter(const CDataSource& dataSource) {
  return filterOf(dataSource, {"v1", "FDepID", "FEmpID", "FComID", "FCurrencyID"});
}

}  // namespace velmora
