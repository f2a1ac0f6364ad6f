#include "cli/account_set.h"

#include <fmt/format.h>

#include "cli/failure.h"
#include "velmora/ado/command.h"

namespace velmora::cli {

namespace {

using collections::Variant;

constexpr std::int64_t kAccountNumberSize = 80;

/// The first row's first value; Null without a row.
Variant firstValue(ado::Connection& connection, const std::string& sql) {
  const auto rows = connection.Execute(sql);
  return rows->EOF_() ? Variant(collections::Null()) : rows->GetValue(0);
}

int profileNumber(ado::Connection& connection, std::string_view key) {
  const auto value = firstValue(
      connection,
      fmt::format("select FValue from t_RP_SystemProfile where FCategory='ARP' and FKey='{}'",
                  key));
  return value.isNull() ? 0 : value.toInt32();
}

int accountId(ado::Connection& connection, const std::string& number) {
  const auto command = com::make<ado::Command>();
  command->ActiveConnection(ado::ConnectionRef(&connection));
  command->CommandText("select FAccountID from t_Account where FNumber = ?");
  command->AppendParameter(ado::adVarWChar, kAccountNumberSize, number);
  const auto rows = command->Execute();
  if (rows->EOF_())
    throw Failure(fmt::format("no account of this account set has the number \"{}\"", number));
  return rows->GetValue(0).toInt32();
}

}  // namespace

std::string toString(Period period) {
  return fmt::format("{}-{:02}", period.year, period.period);
}

void requireAccountSet(ado::Connection& connection) {
  std::string missing;
  for (const char* table : {"t_SystemProfile", "t_RP_SystemProfile", "t_PeriodDate"}) {
    const auto found =
        firstValue(connection, fmt::format("select name from sysobjects where name='{}'", table));
    if (found.isNull()) missing.append(missing.empty() ? "" : ", ").append(table);
  }
  if (!missing.empty())
    throw Failure("this database is no account set: it has no table " + missing);
}

std::string companyName(ado::Connection& connection) {
  const auto name =
      firstValue(connection, "select FValue from t_RP_SystemProfile where FKey='FCompanyName'");
  return name.isNull() ? std::string() : name.toText();
}

Period currentPeriod(ado::Connection& connection, bool receivables) {
  const std::string_view side = receivables ? "AR" : "AP";
  const Period current{profileNumber(connection, fmt::format("F{}CurYear", side)),
                       profileNumber(connection, fmt::format("F{}CurPeriod", side))};
  if (current.year == 0 || current.period == 0)
    throw Failure(
        fmt::format("the account set tells no current period (F{0}CurYear, F{0}CurPeriod of "
                    "t_RP_SystemProfile); give --year and --period",
                    side));
  return current;
}

void requireInCalendar(ado::Connection& connection, Period period) {
  const auto found =
      firstValue(connection, fmt::format("select FPeriod from t_PeriodDate where FYear={} "
                                         "and FPeriod={}",
                                         period.year, period.period));
  if (!found.isNull()) return;
  const auto first = firstValue(connection, "select min(FYear*100+FPeriod) from t_PeriodDate");
  const auto last = firstValue(connection, "select max(FYear*100+FPeriod) from t_PeriodDate");
  if (first.isNull()) throw Failure("the account set's calendar (t_PeriodDate) is empty");
  const auto text = [](const Variant& number) {
    return toString({number.toInt32() / 100, number.toInt32() % 100});
  };
  throw Failure(fmt::format("the account set's calendar has no period {}; it runs from {} to {}",
                            toString(period), text(first), text(last)));
}

std::string accountIds(ado::Connection& connection, const std::vector<std::string>& numbers) {
  std::string ids;
  for (const std::string& number : numbers)
    ids.append(ids.empty() ? "" : ",").append(std::to_string(accountId(connection, number)));
  return ids;
}

}  // namespace velmora::cli
