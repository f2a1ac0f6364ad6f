#include "platform/tsql/binding/names/find_table.h"

#include "platform/tsql/binding/errors.h"
#include "platform/tsql/binding/names/name_rules.h"

namespace velmora::tsql {

const TableInfo* findTable(Context& context, const QualifiedName& name) {
  const auto& qualifiers = name.qualifiers;
  const bool otherDatabase =
      qualifiers.size() > 1 && !name.isTemporary() && !qualifiers[qualifiers.size() - 2].empty();
  if (otherDatabase) refuse(name.position, "the table '" + name.name + "' of another database");
  if (!qualifiers.empty() && !qualifiers.back().empty() && !sameName(qualifiers.back(), "dbo")) {
    return nullptr;
  }
  return context.scope.catalog.findTable(name.name);
}

const TableInfo& requireTable(Context& context, const QualifiedName& name) {
  const TableInfo* table = findTable(context, name);
  if (table == nullptr) raiseAt(name.position, 208, "Invalid object name '" + name.name + "'.");
  return *table;
}

}  // namespace velmora::tsql
