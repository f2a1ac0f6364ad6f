#pragma once

#include <optional>
#include <vector>

#include "platform/tsql/binding/names/query_scope.h"
#include "platform/tsql/syntax/ast.h"

namespace velmora::tsql {

// What follows from unique keys: a source whose key equals columns of other sources, or
// constants, has at most one row for each of their rows. Only inner and left joins and
// WHERE are looked at.

/// Whether each row of the target meets at most one row of the other sources.
bool meetsOnce(const QueryScope& scope, const Source& target,
               const std::vector<TableSourcePtr>& from, const ExpressionPtr& where);

/// A source and, of one that is no stored table, the columns that tell its rows apart
/// where the sources before it have one row each.
struct DecidingSource {
  const Source* source;
  std::vector<const SourceColumn*> columns;
};

/// The sources, stored tables first, without those of which the ones before leave at most
/// one row.
std::vector<DecidingSource> decidingSources(const QueryScope& scope,
                                            const std::vector<TableSourcePtr>& from,
                                            const ExpressionPtr& where);

/// The columns that tell all rows of a source apart, those with NULL too; nothing when
/// none are known.
std::optional<std::vector<const SourceColumn*>> rowKey(const Source& source);

}  // namespace velmora::tsql
