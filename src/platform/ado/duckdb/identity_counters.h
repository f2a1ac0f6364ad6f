#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "platform/ado/duckdb/engine.h"
#include "platform/tsql/binding/names/name_rules.h"
#include "platform/tsql/translate.h"

namespace velmora::ado::embedded {

/// The next identity value of each table. Not thread-safe.
class IdentityCounters {
 public:
  /// The value for the table's next row. The first time it is one increment beyond what
  /// the table holds, its seed when it holds nothing. The table must have an identity column.
  std::int64_t next(Session& session, const tsql::TableInfo& table);
  /// Moves on by `rows` values.
  void advance(const tsql::TableInfo& table, std::int64_t rows);
  /// Numbering starts over.
  void restart(const tsql::TableInfo& table);
  void forget(std::string_view table);

 private:
  std::map<std::string, std::int64_t, tsql::IgnoreCase> next_;
};

/// The table's identity column; nullptr when it has none.
const tsql::ColumnInfo* identityColumn(const tsql::TableInfo& table);

}  // namespace velmora::ado::embedded
