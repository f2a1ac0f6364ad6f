#include "settlement/default_account.h"

namespace velmora::settlement {

namespace {

/// The item's account column by document class type. Advances have a column of their
/// own on the side that the item belongs to.
// NOLINTNEXTLINE(clang-analyzer-optin.performance.Padding): the table reads in this order
struct AccountColumn {
  std::int32_t classTypeId;
  const char* column;
  std::int32_t ownItemClass = 0;  ///< items of this class have `ownColumn` instead
  const char* ownColumn = "";
};

constexpr std::int32_t kCustomers = 1, kSuppliers = 8;

constexpr AccountColumn kAccountColumns[] = {
    {1000000, "FARAccountID"},
    {1000002, "FARAccountID"},
    {1000500, "FARAccountID"},
    {1000501, "FARAccountID"},
    {1000003, "FApAccountID"},
    {1000004, "FApAccountID"},
    {1000502, "FApAccountID"},
    {1000503, "FApAccountID"},
    {1000005, "FOtherArAcctID"},
    {1000015, "FOtherArAcctID"},
    {1000021, "FOtherArAcctID"},
    {1000510, "FOtherArAcctID"},
    {1000016, "FOtherApAcctID"},
    {1000017, "FOtherApAcctID"},
    {1000022, "FOtherApAcctID"},
    {1000511, "FOtherApAcctID"},
    {1000014, "FPreArAcctID", kCustomers, "FpreAcctID"},
    {1000520, "FPreArAcctID", kCustomers, "FpreAcctID"},
    {1000018, "FPreApAcctID", kSuppliers, "FpreAcctID"},
    {1000521, "FPreApAcctID", kSuppliers, "FpreAcctID"},
};

std::string itemTableQuery(std::int32_t itemClassId) {
  return "select isnull(FSqlTableName,'') as FSqlTableName from t_itemclass where fitemclassid = " +
         std::to_string(itemClassId);
}

std::string itemAccountQuery(const std::string& column, const std::string& table,
                             std::int32_t itemId) {
  return "select " + column + " from " + table + " where fitemid = " + std::to_string(itemId);
}

/// Databases without the contact table have no accounts on document types.
std::string documentTypeQuery(std::int32_t classTypeId) {
  return "if exists (select * from dbo.sysobjects where id = object_id(N'[dbo].[t_rp_contact]') "
         "and xtype = 'u')\r\n"
         " select fid,isnull(FAccountID,0) as FAccountID from t_rp_billType where fid = " +
         std::to_string(classTypeId) +
         " \r\n"
         " else  select * from t_item where 1 = 0  ";
}

std::int32_t accountIn(const ado::Variant& value) {
  return value.isNull() ? 0 : value.toInt32();
}

std::int32_t accountOfItem(ado::Connection& connection, const std::string& column,
                           std::int32_t itemClassId, std::int32_t itemId) {
  const auto itemClass = connection.Execute(itemTableQuery(itemClassId));
  const std::string table =
      itemClass->EOF_() ? "" : itemClass->Fields()("FSqlTableName").Value().toText();
  if (table.empty()) return 0;
  const auto item = connection.Execute(itemAccountQuery(column, table, itemId));
  return item->EOF_() ? 0 : accountIn(item->GetValue(0));
}

std::int32_t accountOfDocumentType(ado::Connection& connection, std::int32_t classTypeId) {
  const auto type = connection.Execute(documentTypeQuery(classTypeId));
  return type->EOF_() ? 0 : accountIn(type->Fields()("FAccountID").Value());
}

}  // namespace

std::string GetAccountFieldName(std::int32_t classTypeId, std::int32_t itemClassId) {
  for (const AccountColumn& row : kAccountColumns)
    if (row.classTypeId == classTypeId)
      return row.ownItemClass == itemClassId ? row.ownColumn : row.column;
  return {};
}

std::int32_t GetDefaultAcctID(const CDataSource& dataSource, std::int32_t itemClassId,
                              std::int32_t itemId, std::int32_t classTypeId) {
  const ScopedConnection connection(dataSource.UnCommittedConnection());
  const std::string column = GetAccountFieldName(classTypeId, itemClassId);
  const std::int32_t account =
      column.empty() ? 0 : accountOfItem(**connection, column, itemClassId, itemId);
  return account != 0 ? account : accountOfDocumentType(**connection, classTypeId);
}

}  // namespace velmora::settlement
