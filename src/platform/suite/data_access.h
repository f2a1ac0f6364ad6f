#pragma once

#include <cstdint>
#include <string>

#include "velmora/collections/dictionary.h"
#include "velmora/collections/vector.h"
#include "velmora/com/dispatch_table.h"

namespace velmora::suite {

/// "TirnBase.DataAccess": which rows of the basic data a user may see, by the tables
/// t_AccessSwitch and t_AccessRule of the account set. `connectionString` is the caller's
/// whole string; the database's errors pass through.
class DataAccess final : public com::DispatchObject<DataAccess> {
 public:
  static const com::DispatchTable<DataAccess>& dispatchTable();

  /// Whether row access is in force for `user`: by his own row of t_AccessSwitch, else by
  /// that of user 0, else not. Not in an account set without that table.
  bool IsUsed(const std::string& connectionString, std::int32_t user);

  /// What restricts `user` in the tables asked for ("Table" of each Dictionary of
  /// `tables`): a Dictionary of "UserID" and of "AccessInfo", a Dictionary whose keys are
  /// the tables that have rules for him.
  collections::DictionaryRef GetRowAccessInfo2(const std::string& connectionString,
                                               std::int32_t user,
                                               const collections::VectorRef& tables);

  /// The SQL of the restriction: a Dictionary of "From", a join text that begins and ends
  /// in a blank, and "Where", a condition. `columns` says which columns refer to the basic
  /// data ("DataTable", "DataTableAs", "DataCol", "BillTableAs", "BillCol"); without
  /// "BillTableAs" the query reads the table itself, as "DataTableAs". Both texts are ""
  /// when `rowAccessInfo` (nothing: no rules) restricts none of the tables. A row that
  /// refers to no record of a table is not restricted by it. Raises kInvalidArgument
  /// naming a request's entry that is no SQL name.
  collections::DictionaryRef GetAccessDataSQL(const collections::VectorRef& columns,
                                              const collections::DictionaryRef& rowAccessInfo);
};

}  // namespace velmora::suite
