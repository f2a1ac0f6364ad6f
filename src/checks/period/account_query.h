#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace velmora::period {

/// Item classes with tables of their own shape: their records carry receivable and
/// payable accounts.
inline constexpr std::int32_t kCustomers = 1, kSuppliers = 8;

/// An account that every record of an item class has to carry.
struct AccountColumn {
  const char* column;   ///< of the item class's table
  const char* alias;    ///< of t_account, joined by it
  const char* name;     ///< of the column in the result
  const char* control;  ///< of the account's control attribute in the result
  bool needsControl;    ///< the account must belong to a sub-system
};

/// The account columns that the records of `itemClass` are examined for.
std::span<const AccountColumn> accountColumns(std::int32_t itemClass);

/// Which records the account check lists.
enum class AccountFault {
  missing,       ///< an account is null or 0
  uncontrolled,  ///< an account is set that belongs to no sub-system or does not exist
};

/// The query for the records of `table`, the table of `itemClass`, that have `fault`:
/// fitemid, FNumber, FName, and each account with the control attribute of it.
std::string accountQuery(const std::string& table, std::int32_t itemClass, AccountFault fault);

}  // namespace velmora::period
