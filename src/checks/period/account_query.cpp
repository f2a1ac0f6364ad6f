#include "checks/period/account_query.h"

#include "common/sql_lines.h"

namespace velmora::period {

namespace {

constexpr std::int32_t kEmployees = 3;

constexpr AccountColumn kCustomerColumns[] = {
    {"FARAccountID", "a1", "FARAccountID", "FARAccountID_Sys", true},
    {"FpreAcctID", "a2", "FpreAcctID", "FpreAcctID_Sys", true},
    // Taxes are posted to accounts that no sub-system controls.
    {"FPayTaxAcctID", "a3", "FPayTaxAcctID", "FPayTaxAcctID_Sys", false},
    {"FOtherArAcctID", "a4", "FOtherArAcctID", "FOtherArAcctID_Sys", true},
    {"FOtherAPAcctID", "a5", "FOtherAPAcctID", "FOtherAPAcctID_Sys", true},
    {"FPreArAcctID", "a6", "FPreApAcctID", "FPreApAcctID_Sys", true},
    {"FAPAccountID", "a7", "FAPAccountID", "FAPAccountID_Sys", true},
};

constexpr AccountColumn kSupplierColumns[] = {
    kCustomerColumns[0], kCustomerColumns[1],
    kCustomerColumns[2], kCustomerColumns[3],
    kCustomerColumns[4], {"FPreApAcctID", "a6", "FPreApAcctID", "FPreApAcctID_Sys", true},
    kCustomerColumns[6],
};

constexpr AccountColumn kOtherColumns[] = {
    {"FPreArAcctID", "a2", "FPreArAcctID", "FpreAcctID_Sys", true},
    {"FOtherArAcctID", "a4", "FOtherArAcctID", "FOtherArAcctID_Sys", true},
    {"FOtherAPAcctID", "a5", "FOtherAPAcctID", "FOtherAPAcctID_Sys", true},
    {"FPreApAcctID", "a6", "FPreApAcctID", "FPreApAcctID_Sys", true},
};

bool isPartner(std::int32_t itemClass) {
  return itemClass == kCustomers || itemClass == kSuppliers;
}

std::string selected(const AccountColumn& account) {
  return std::string("isnull(t1.") + account.column + ",0) as " + account.name + ", isnull(" +
         account.alias + ".FControlSystem,0) as " + account.control;
}

std::string accountJoin(const AccountColumn& account) {
  return std::string(" left join t_account ") + account.alias + " on (t1." + account.column +
         " = " + account.alias + ".FAccountID)";
}

/// Customers and suppliers: any account missing.
std::string partnerWithout(std::span<const AccountColumn> columns) {
  SqlLines where;
  for (const AccountColumn& account : columns)
    where.line(std::string(where.text().empty() ? "where (" : "     or (") + "isnull(t1." +
               account.column + ",0) =0 )");
  return where.text();
}

/// The other classes: any account missing, in parentheses for a further condition.
std::string itemWithout(std::span<const AccountColumn> columns) {
  SqlLines where;
  where.line(std::string("where ( (isnull(t1.") + columns.front().column + ",0) = 0 )");
  for (const AccountColumn& account : columns.subspan(1))
    where.line(std::string("     or isnull(t1.") + account.column + ",0) =0 ");
  return where.text() + ")";
}

/// Any account set that no sub-system controls, in parentheses.
std::string withUncontrolled(std::span<const AccountColumn> columns) {
  SqlLines where;
  for (const AccountColumn& account : columns)
    if (account.needsControl)
      where.line(std::string(where.text().empty() ? "where ( (t1." : "     or (t1.") +
                 account.column + " > 0 and isnull(" + account.alias + ".FControlSystem,0) = 0)");
  return where.text() + ")";
}

std::string whereFault(std::int32_t itemClass, AccountFault fault) {
  const auto columns = accountColumns(itemClass);
  if (fault == AccountFault::uncontrolled) return withUncontrolled(columns);
  return isPartner(itemClass) ? partnerWithout(columns) : itemWithout(columns);
}

}  // namespace

std::span<const AccountColumn> accountColumns(std::int32_t itemClass) {
  if (itemClass == kCustomers) return kCustomerColumns;
  if (itemClass == kSuppliers) return kSupplierColumns;
  return kOtherColumns;
}

std::string accountQuery(const std::string& table, std::int32_t itemClass, AccountFault fault) {
  const auto columns = accountColumns(itemClass);
  SqlLines query;
  query.line("select t1.fitemid, isnull(t1.fnumber,'') as FNumber, isnull(t1.fname,'') as FName, ");
  for (const AccountColumn& account : columns)
    query.line(selected(account) + (&account == &columns.back() ? "" : ", "));
  query.line("from " + table + " t1 ");
  for (const AccountColumn& account : columns) query.line(accountJoin(account));
  // Employee 0 stands for "no employee".
  return query.line(whereFault(itemClass, fault))
      .lineIf(itemClass == kEmployees, "  and t1.fitemid > 0")
      .text();
}

}  // namespace velmora::period
