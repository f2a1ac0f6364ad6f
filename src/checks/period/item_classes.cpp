#include "checks/period/item_classes.h"

#include <algorithm>
#include <charconv>
#include <set>

#include "checks/period/account_query.h"
#include "checks/period/open_rows.h"
#include "common/sql_lines.h"
#include "frame/call/text.h"

namespace velmora::period {

namespace {

constexpr const char* kSettingsQuery =
    "select fkey, substring(fkey, len('FItemClassAR') + 1,len(fkey) - len('FItemClassAr')) as "
    "FItemClassID from t_rp_systemprofile where fkey like 'FItemClass%' ";

bool isNumber(std::string_view text) {
  std::int32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size();
}

/// Ids, separated by commas. A key of the settings whose end is no number means
/// something else than an item class.
std::string itemClassIds(const ado::ConnectionRef& connection) {
  std::string ids = "1,2,3,8";
  for (const auto rows = openRows(connection, kSettingsQuery); !rows->EOF_(); rows->MoveNext()) {
    const std::string id = rows->Fields()("FItemClassID").Value().toText();
    if (isNumber(trimmed(id))) ids.append(",").append(trimmed(id));
  }
  return ids;
}

std::string textOf(ado::Recordset& row, std::string_view column) {
  const auto& value = row.Fields()(column).Value();
  return value.isNull() ? std::string() : value.toText();
}

/// The name of the class in the current row; empty for a language without a column.
std::string className(ado::Recordset& row, const std::string& language) {
  const std::string code = upperCased(language);
  if (code == "CHS") return textOf(row, "FName");
  if (code == "CHT") return textOf(row, "FName_Cht");
  if (code == "EN") return textOf(row, "FName_en");
  return {};
}

/// A row for each of the account columns that every class but customers and suppliers
/// has, or one without a column; no row when there is no such table.
std::string tableQuery(const std::string& table) {
  return SqlLines()
      .line("SELECT t1.name, isnull(t2.name,'')  as FFieldName")
      .line(
          " FROM sysobjects t1 left join syscolumns t2 on ( t1.id=t2.id and  t2.Name in "
          "('FOtherArAcctID','FOtherAPAcctID','FPreApAcctID','FPreArAcctID'))")
      .line(" Where t1.name = " + quoted(table))
      .text();
}

/// Every column of the table: customers and suppliers have accounts that tableQuery does
/// not ask for.
std::string columnsQuery(const std::string& table) {
  return "select t2.name from sysobjects t1 inner join syscolumns t2 on (t1.id=t2.id) where "
         "t1.name = " +
         quoted(table);
}

/// Whether the accounts of the class are among the columns that `rows` name in `field`.
bool hasAccounts(const ItemClass& itemClass, ado::Recordset& rows, std::string_view field) {
  std::set<std::string> columns;
  for (; !rows.EOF_(); rows.MoveNext()) columns.insert(upperCased(textOf(rows, field)));
  return std::ranges::all_of(accountColumns(itemClass.id), [&](const AccountColumn& account) {
    return columns.contains(upperCased(account.column));
  });
}

}  // namespace

std::vector<ItemClass> itemClassesToCheck(const ado::ConnectionRef& connection,
                                          const std::string& language) {
  const auto rows = openRows(
      connection,
      "select FItemClassID, FNumber, FName, FName_Cht, FName_En, FSqlTableName from t_itemclass "
      "where FItemClassID > 0 and Len(Isnull(FSqlTableName,''))>0 and FItemClassID in (" +
          itemClassIds(connection) + ")");
  std::vector<ItemClass> classes;
  for (; !rows->EOF_(); rows->MoveNext())
    classes.push_back({rows->Fields()("FItemClassID").Value().toInt32(), className(*rows, language),
                       textOf(*rows, "FSqlTableName")});
  return classes;
}

bool hasAccountColumns(const ado::ConnectionRef& connection, const ItemClass& itemClass) {
  const auto shared = openRows(connection, tableQuery(itemClass.table));
  if (shared->EOF_()) return false;
  return hasAccounts(itemClass, *shared, "FFieldName") ||
         hasAccounts(itemClass, *openRows(connection, columnsQuery(itemClass.table)), "name");
}

}  // namespace velmora::period
