#pragma once

#include "platform/tsql/binding/context.h"
#include "platform/tsql/syntax/ast_expression.h"

namespace velmora::tsql {

/// The stored table a name means; nullptr when there is none. Raises for names in other
/// databases.
const TableInfo* findTable(Context& context, const QualifiedName& name);
/// As findTable, raising 208 when there is none.
const TableInfo& requireTable(Context& context, const QualifiedName& name);

}  // namespace velmora::tsql
