#pragma once

#include "platform/tsql/binding/context.h"
#include "platform/tsql/output/action.h"
#include "platform/tsql/syntax/ast.h"

namespace velmora::tsql {

/// `variable`: the table of DECLARE @t TABLE.
CreateTable translateCreateTable(Context& context, const CreateTableStatement& statement,
                                 bool variable = false);
AlterTable translateAlterTable(Context& context, const AlterTableStatement& statement);
CreateTable translateCreateView(Context& context, const CreateViewStatement& statement);
SelectInto translateSelectInto(Context& context, const Query& query, const QualifiedName& into);
DropTables translateDropTable(Context& context, const DropTableStatement& statement);
DropTables translateDropView(Context& context, const DropViewStatement& statement);
IndexChange translateCreateIndex(Context& context, const CreateIndexStatement& statement);
IndexChange translateDropIndex(Context& context, const DropIndexStatement& statement);

}  // namespace velmora::tsql
