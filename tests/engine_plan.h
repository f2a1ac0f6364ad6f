#pragma once

#include <algorithm>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <vector>

#include "platform/ado/duckdb/rows.h"

namespace velmora {

/// A join that compares rows with rows, where a hash join finds them.
struct RowByRowJoin {
  std::string name, condition;
  /// The tables that each side reads.
  std::vector<std::set<std::string>> sides;
};

inline void addTables(const nlohmann::json& plan, std::set<std::string>& tables) {
  const auto& info = plan["extra_info"];
  if (info.contains("Table")) tables.insert(info["Table"].get<std::string>());
  for (const auto& child : plan["children"]) addTables(child, tables);
}

inline void addRowByRowJoins(const nlohmann::json& plan, std::vector<RowByRowJoin>& joins) {
  const auto name = plan["name"].get<std::string>();
  // Beside hash joins there are those that hash for them.
  const bool byRow = name == "CROSS_PRODUCT" || (name.find("JOIN") != std::string::npos &&
                                                 name.find("HASH_JOIN") == std::string::npos &&
                                                 name.find("DELIM_JOIN") == std::string::npos);
  if (byRow) {
    RowByRowJoin join{name, plan["extra_info"].dump(), {}};
    for (const auto& child : plan["children"]) addTables(child, join.sides.emplace_back());
    // A side that reads no table has no rows, which the engine sees beforehand, or constant ones.
    const bool reads = std::none_of(join.sides.begin(), join.sides.end(),
                                    [](const auto& side) { return side.empty(); });
    if (reads) joins.push_back(std::move(join));
  }
  for (const auto& child : plan["children"]) addRowByRowJoins(child, joins);
}

/// Those in the engine's plan of its statement `sql`.
inline std::vector<RowByRowJoin> rowByRowJoins(ado::embedded::Session& session,
                                               const std::string& sql) {
  const auto rows = ado::embedded::readTexts(session, "explain (format json) " + sql, 2);
  std::vector<RowByRowJoin> joins;
  for (const auto& plan : nlohmann::json::parse(rows.at(0).at(1).toText()))
    addRowByRowJoins(plan, joins);
  return joins;
}

}  // namespace velmora
