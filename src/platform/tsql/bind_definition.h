#pragma once

#include "platform/tsql/bind_query.h"
#include "platform/tsql/translate.h"

namespace velmora::tsql {

CreateTable bindCreateTable(Context& context, const CreateTableStatement& statement);
CreateTable bindCreateView(Context& context, const CreateViewStatement& statement);
SelectInto bindSelectInto(Context& context, const Query& query, const QualifiedName& into);
DropTables bindDropTable(Context& context, const DropTableStatement& statement);
DropTables bindDropView(Context& context, const DropViewStatement& statement);
IndexChange bindCreateIndex(Context& context, const CreateIndexStatement& statement);
IndexChange bindDropIndex(Context& context, const DropIndexStatement& statement);

}  // namespace velmora::tsql
