#include "platform/tsql/binding/bound_query.h"

#include "platform/tsql/binding/errors.h"

namespace velmora::tsql {

const std::vector<OutputColumn>& columnsOf(const BoundQuery& query) {
  return query.body.columns;
}

std::vector<SqlType> typesOf(const BoundQuery& query) {
  std::vector<SqlType> types;
  for (const OutputColumn& column : columnsOf(query)) types.push_back(column.type);
  return types;
}

const OutputColumn& onlyColumn(const BoundQuery& query, Position position) {
  if (query.body.columns.size() != 1) {
    raiseAt(position, 116,
            "Only one expression can be specified in the select list when the subquery is not "
            "introduced with EXISTS; there are " +
                std::to_string(query.body.columns.size()) + ".");
  }
  return query.body.columns.front();
}

}  // namespace velmora::tsql
