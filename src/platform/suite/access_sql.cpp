#include "platform/suite/access_sql.h"

#include <algorithm>

#include "velmora/com/error.h"

namespace velmora::suite {

using collections::Dictionary;

namespace {

bool isLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

bool isName(std::string_view text) {
  return !text.empty() && isLetter(text.front()) &&
         std::ranges::all_of(text, [](char c) { return isLetter(c) || (c >= '0' && c <= '9'); });
}

std::string nameUnder(const char* key, const Dictionary& request) {
  std::string text = request.Value(key).toText();
  if (!isName(text))
    throw com::Error(com::error::kInvalidArgument, "TirnBase.DataAccess",
                     std::string(key) + " of a request is \"" + text +
                         "\"; a name of letters, digits and _ is expected");
  return text;
}

/// The rules of `user` for `table`; `prefix` is the alias of t_AccessRule with its point.
std::string ruleCondition(std::string_view prefix, std::string_view table, std::int32_t user) {
  const std::string alias(prefix);
  return alias + "FUserID = " + std::to_string(user) + " and " + alias + "FTableName = '" +
         std::string(table) + "'";
}

}  // namespace

AccessColumn accessColumn(const Dictionary& request) {
  AccessColumn column{nameUnder("DataTable", request),
                      nameUnder("DataTableAs", request),
                      nameUnder("DataCol", request),
                      {},
                      {}};
  if (request.Value("BillTableAs").toText().empty()) return column;
  column.billAlias = nameUnder("BillTableAs", request);
  column.billColumn = nameUnder("BillCol", request);
  return column;
}

void AccessSql::restrict(const AccessColumn& column, std::string_view ruledTable,
                         std::int32_t user) {
  const std::string key = column.alias + "." + column.key;
  if (!where.empty()) where += " and ";
  if (column.billAlias.empty()) {
    const std::string rule = column.alias + "_rule";
    from += " inner join t_AccessRule " + rule + " on (" + key + " = " + rule + ".FKeyID) ";
    where += ruleCondition(rule + ".", ruledTable, user);
    return;
  }
  from += " left join " + column.table + " " + column.alias + " on (" + column.billAlias + "." +
          column.billColumn + " = " + key + ") ";
  where += "(" + key + " is null or " + key + " in (select FKeyID from t_AccessRule where " +
           ruleCondition("", ruledTable, user) + "))";
}

}  // namespace velmora::suite
