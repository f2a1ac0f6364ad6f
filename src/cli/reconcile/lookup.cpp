#include "cli/reconcile/lookup.h"

#include <algorithm>
#include <fmt/format.h>

#include "cli/failure.h"
#include "velmora/ado/command.h"

namespace velmora::cli {

namespace {

constexpr std::int64_t kNumberSize = 255;

ado::RecordsetRef query(ado::Connection& connection, const std::string& sql,
                        std::initializer_list<std::string> values) {
  const auto command = com::make<ado::Command>();
  command->ActiveConnection(ado::ConnectionRef(&connection));
  command->CommandText(sql);
  for (const std::string& value : values)
    command->AppendParameter(ado::adVarWChar, kNumberSize, value);
  return command->Execute();
}

bool isNumber(const std::string& text) {
  return !text.empty() && text.size() < 10 &&
         std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

std::string classTable(ado::Connection& connection, int itemClass) {
  const auto rows = connection.Execute(
      fmt::format("select FSqlTableName from t_ItemClass where FItemClassID = {}", itemClass));
  const std::string table = rows->EOF_() ? "" : rows->GetValue(0).toText();
  const bool isName = std::all_of(table.begin(), table.end(),
                                  [](unsigned char c) { return std::isalnum(c) != 0 || c == '_'; });
  return isName ? table : "";
}

/// A query of the accounts in `columns` of `table`.
std::string accountsOf(const std::string& table, std::initializer_list<std::string> columns) {
  std::string sql;
  for (const std::string& column : columns)
    sql += fmt::format("{}select {} as FAccountID from {}", sql.empty() ? "" : " union ", column,
                       table);
  return sql;
}

std::string contactAccounts(ado::Connection& connection, const AccountUse& use) {
  const std::string table = classTable(connection, use.itemClass);
  if (table.empty()) return "";
  const std::string side = use.receivables ? "Ar" : "Ap";
  const std::string advance = "FPre" + side + "AcctID", other = "FOther" + side + "AcctID";
  if (use.itemClass != 1 && use.itemClass != 8) return accountsOf(table, {advance, other});
  return accountsOf(table, {use.receivables ? "FARAccountID" : "FAPAccountID", advance, other});
}

}  // namespace

Currency findCurrency(ado::Connection& connection, const std::string& text) {
  if (text == "0" || text == "all") return {};
  const auto rows =
      isNumber(text) ? connection.Execute(
                           "select FCurrencyID, FName from t_Currency where FCurrencyID = " + text)
                     : query(connection,
                             "select FCurrencyID, FName from t_Currency where FNumber = ?", {text});
  if (rows->EOF_())
    throw Failure(fmt::format(
        "no currency of this account set has the number or id \"{}\" (0: all together)", text));
  return {rows->GetValue(0).toInt32(), rows->GetValue(1).toText()};
}

void requireItemClass(ado::Connection& connection, int itemClass) {
  const auto rows = connection.Execute(
      fmt::format("select FItemClassID from t_ItemClass where FItemClassID = {}", itemClass));
  if (rows->EOF_())
    throw Failure(fmt::format("this account set has no item class {}; customers are 1, suppliers 8",
                              itemClass));
}

NumberRange parseRange(const std::string& text) {
  const auto dots = text.find("..");
  if (dots == std::string::npos || text == "..")
    throw UsageError(fmt::format(
        "--items \"{}\" is no range; expected FROM..TO, FROM.. or ..TO with item numbers", text));
  NumberRange range{text.substr(0, dots), text.substr(dots + 2)};
  if (!range.first.empty() && !range.last.empty() && range.last < range.first)
    throw UsageError(fmt::format("--items \"{}\" is upside down: {} comes after {}", text,
                                 range.first, range.last));
  return range;
}

void requireItems(ado::Connection& connection, int itemClass, const NumberRange& range) {
  const auto found = query(connection,
                           fmt::format("select min(FNumber) from t_Item where FItemClassID = {} "
                                       "and FDetail = 1 and FNumber >= ? "
                                       "and (FNumber <= ? or ? = '')",
                                       itemClass),
                           {range.first, range.last, range.last});
  if (found->GetValue(0).isNull())
    throw Failure(fmt::format("no item of class {} has a number in {}..{}", itemClass, range.first,
                              range.last));
}

Period firstPeriod(ado::Connection& connection, bool receivables) {
  const auto number = [&](const char* key) {
    const auto rows = connection.Execute(
        fmt::format("select FValue from t_RP_SystemProfile where FCategory='ARP' and FKey='F{}{}'",
                    receivables ? "AR" : "AP", key));
    return rows->EOF_() || rows->GetValue(0).isNull() ? 0 : rows->GetValue(0).toInt32();
  };
  const Period first{number("UseYear"), number("UsePeriod")};
  if (first.year == 0 || first.period == 0)
    throw Failure(
        fmt::format("the account set tells no first period (F{0}UseYear, F{0}UsePeriod of "
                    "t_RP_SystemProfile); give --year and --period",
                    receivables ? "AR" : "AP"));
  return first;
}

std::vector<std::string> controlAccounts(ado::Connection& connection, const AccountUse& use) {
  std::string used =
      fmt::format("select FAccountID from t_rp_BillType where FRP = {}", use.receivables ? 1 : 0);
  if (const std::string contacts = contactAccounts(connection, use); !contacts.empty())
    used += " union " + contacts;
  if (use.stockReceipts)
    used +=
        " union select FCussentAcctID from ICStockBill where FTranType in (1,5)"
        " union select FAcctID from ICShop_SubcIn";
  const auto rows = connection.Execute("select FNumber from t_Account where FAccountID in (" +
                                       used + ") order by FNumber");
  std::vector<std::string> numbers;
  for (; !rows->EOF_(); rows->MoveNext()) numbers.push_back(rows->GetValue(0).toText());
  if (numbers.empty())
    throw Failure("neither document types nor contacts name a control account; give --accounts");
  return numbers;
}

}  // namespace velmora::cli
