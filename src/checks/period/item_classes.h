#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "velmora/ado/connection.h"

namespace velmora::period {

/// A class of items that may owe or be owed.
struct ItemClass {
  std::int32_t id;
  std::string name;   ///< in the caller's language
  std::string table;  ///< where its records are
};

/// The item classes whose accounts are checked: customers, departments, employees,
/// suppliers and those that the settings name, as far as they have a table.
std::vector<ItemClass> itemClassesToCheck(const ado::ConnectionRef& connection,
                                          const std::string& language);

/// Whether the table of `itemClass` exists and has every account column that its
/// records are examined for.
bool hasAccountColumns(const ado::ConnectionRef& connection, const ItemClass& itemClass);

}  // namespace velmora::period
