#include "platform/suite/data_access.h"

#include <memory>
#include <string_view>

#include "platform/suite/access_sql.h"
#include "platform/suite/account_set.h"
#include "velmora/ado/command.h"
#include "velmora/com/error.h"

namespace velmora::suite {

using collections::Dictionary;
using collections::DictionaryRef;
using collections::Variant;
using collections::VectorRef;

namespace {

constexpr const char* kProgId = "TirnBase.DataAccess";

DictionaryRef requestOf(const Variant& entry) {
  auto request = entry.toObject<Dictionary>();
  if (!request)
    throw com::Error(com::error::kInvalidArgument, kProgId,
                     "A request is nothing; a Dictionary is expected");
  return request;
}

ado::RecordsetRef queryForUser(const ado::ConnectionRef& connection, const char* query,
                               std::int32_t user) {
  const auto command = com::make<ado::Command>();
  command->ActiveConnection(connection);
  command->CommandText(query);
  command->AppendParameter(ado::adInteger, 0, user);
  return command->Execute();
}

/// The tables that have rules for `user`, as they spell them but for blanks at the end, which
/// the database does not tell apart.
DictionaryRef ruledTables(const ado::ConnectionRef& connection, std::int32_t user) {
  auto tables = com::make<Dictionary>();
  const auto rows = queryForUser(
      connection, "select distinct rtrim(FTableName) from t_AccessRule where FUserID = ?", user);
  for (; !rows->EOF_(); rows->MoveNext()) tables->Set(rows->GetValue(0).toText(), true);
  return tables;
}

}  // namespace

const com::DispatchTable<DataAccess>& DataAccess::dispatchTable() {
  static const auto table = [] {
    auto made = std::make_unique<com::DispatchTable<DataAccess>>(
        "DataAccess", kProgId, com::Guid::parse("DCE01E25-E3AE-4748-9896-A33800717CDA"),
        com::IDispatch::kInterfaceId);
    made->method("IsUsed", &DataAccess::IsUsed, {"connectionString", "user"});
    made->method("GetRowAccessInfo2", &DataAccess::GetRowAccessInfo2,
                 {"connectionString", "user", "tables"});
    made->method("GetAccessDataSQL", &DataAccess::GetAccessDataSQL, {"columns", "rowAccessInfo"});
    return made;
  }();
  return *table;
}

bool DataAccess::IsUsed(const std::string& connectionString, std::int32_t user) {
  const auto connection = openAccountSet(connectionString, kProgId);
  const auto table = connection->Execute("select 1 from sysobjects where name = 't_AccessSwitch'");
  if (table->EOF_()) return false;
  const auto rows = queryForUser(connection,
                                 "select FUsed from t_AccessSwitch where FUserID in (0, ?)"
                                 " order by FUserID desc",
                                 user);
  return !rows->EOF_() && rows->GetValue(0).toBool();
}

DictionaryRef DataAccess::GetRowAccessInfo2(const std::string& connectionString, std::int32_t user,
                                            const VectorRef& tables) {
  auto restricted = com::make<Dictionary>();
  const auto ruled = ruledTables(openAccountSet(connectionString, kProgId), user);
  if (tables)
    for (const Variant& entry : *tables) {
      const std::string name = requestOf(entry)->Value("Table").toText();
      if (const auto found = ruled->IndexOf(name)) restricted->Set(ruled->Key(*found), true);
    }
  auto info = com::make<Dictionary>();
  info->Set("UserID", user);
  info->Set("AccessInfo", restricted);
  return info;
}

DictionaryRef DataAccess::GetAccessDataSQL(const VectorRef& columns,
                                           const DictionaryRef& rowAccessInfo) {
  AccessSql sql;
  const auto restricted =
      rowAccessInfo ? rowAccessInfo->Value("AccessInfo").toObject<Dictionary>() : DictionaryRef();
  if (columns && restricted)
    for (const Variant& entry : *columns) {
      const AccessColumn column = accessColumn(*requestOf(entry));
      if (const auto table = restricted->IndexOf(column.table))
        sql.restrict(column, restricted->Key(*table), rowAccessInfo->Value("UserID").toInt32());
    }
  auto texts = com::make<Dictionary>();
  texts->Set("From", sql.from);
  texts->Set("Where", sql.where);
  return texts;
}

}  // namespace velmora::suite
