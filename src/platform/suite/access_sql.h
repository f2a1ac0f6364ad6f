#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "velmora/collections/dictionary.h"

namespace velmora::suite {

/// A column that refers to basic data: which table under which alias by which key, and
/// alias and column of the referring table; the latter two empty when the query reads the
/// basic data itself.
struct AccessColumn {
  std::string table, alias, key;
  std::string billAlias, billColumn;
};

/// Reads a column request. Raises kInvalidArgument naming an entry that is no SQL name
/// (letters, digits and "_", no digit first).
AccessColumn accessColumn(const collections::Dictionary& request);

/// Join text and condition that hold a query to the permitted rows.
struct AccessSql {
  std::string from, where;

  /// Restricts `column` to the records that t_AccessRule names for `user` under
  /// `ruledTable`.
  void restrict(const AccessColumn& column, std::string_view ruledTable, std::int32_t user);
};

}  // namespace velmora::suite
