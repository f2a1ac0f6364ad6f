#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/ado/duckdb/engine.h"
#include "platform/tsql/binding/names/catalog.h"
#include "platform/tsql/binding/names/name_rules.h"
#include "platform/tsql/translate.h"

namespace velmora::ado::embedded {

using TablePtr = std::shared_ptr<const tsql::TableInfo>;
/// Tables by name, letter case ignored.
using TableMap = std::map<std::string, TablePtr, tsql::IgnoreCase>;

// A database file stores the engine's types only. What a T-SQL declaration says beyond
// them (varchar(80), money, bit, identity, primary key, default) is kept as the comment of the
// column, for instance "T-SQL: int identity(1,1) primary key", so that the file alone tells it.
// Of a table with checks the table's comment keeps the columns, since after a crash the engine
// cannot repeat a comment on a column of such a table: it binds the checks before it knows a
// function. The columns of a unique index are its comment: "T-SQL: (FItemClassID, FNumber)", and so
// is the query of a view. Defaults and views are kept as T-SQL because what they mean depends on
// the time and the connection that uses them.

/// The statements that keep the declarations of a permanent table or view; empty when
/// the engine's types tell all.
std::vector<std::string> recordingSql(const tsql::TableInfo& table);

/// The statements that keep the columns of its unique indexes; recordingSql has them too.
std::vector<std::string> indexRecordingSql(const tsql::TableInfo& table);

/// The permanent tables and views of the database, objectId 0. A column without a kept
/// declaration takes the T-SQL type nearest to the engine's; one of a type that has no
/// counterpart (lists, binary data) is left out.
TableMap loadTables(Session& session);

}  // namespace velmora::ado::embedded
